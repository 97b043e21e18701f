// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The graph with cereal: portable binary archives, polymorphic classes, shared pointers tracked.
#include "support/graphrows.h"
#include "support/streamsource.h"

#include <cereal/archives/portable_binary.hpp>
#include <cereal/types/base_class.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>

#include <fstream>
#include <sstream>

namespace cerealgraph
{
class Object
{
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    template <class Archive>
    void serialize(Archive&)
    {
    }
};

class Node : public Object
{
public:
    uint32_t m_key = 0;
    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
    std::string m_text;
    std::weak_ptr<Object> m_next;
    std::weak_ptr<Object> m_other;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(cereal::base_class<Object>(this), m_key, m_x, m_y, m_z, m_text, m_next, m_other);
    }
};

class Document : public Object
{
public:
    std::vector<std::shared_ptr<Object>> m_nodes;

    template <class Archive>
    void serialize(Archive& archive)
    {
        archive(cereal::base_class<Object>(this), m_nodes);
    }
};
} // namespace cerealgraph

CEREAL_REGISTER_TYPE(cerealgraph::Node)
CEREAL_REGISTER_TYPE(cerealgraph::Document)

namespace
{
using namespace cerealgraph;

class Model
{
public:
    using Source = bench::StreamSource;

    explicit Model(const bench::Graph& graph) : m_root(std::make_shared<Document>())
    {
        for (uint32_t number = 0; number < graph.size(); ++number)
            nodes().push_back(std::make_shared<Node>());
        for (uint32_t number = 0; number < graph.size(); ++number)
            fill(number, graph.getNode(number));
    }

    explicit Model(std::istream& in)
    {
        cereal::PortableBinaryInputArchive archive(in);
        archive(m_root);
    }

    std::string save() const
    {
        std::ostringstream out;
        save(out);
        return std::move(out).str();
    }

    void save(const std::string& path) const
    {
        std::ofstream out(path, std::ios::binary);
        save(out);
    }

    static std::unique_ptr<Model> open(Source& source) { return std::make_unique<Model>(source.rewind()); }

    static std::unique_ptr<Model> openFile(const std::string& path)
    {
        std::ifstream in(path, std::ios::binary);
        return std::make_unique<Model>(in);
    }

    uint64_t getDigest() const
    {
        bench::Digest digest;
        for (const std::shared_ptr<Object>& object : nodes())
        {
            const auto& node = static_cast<const Node&>(*object);
            digest.add(node.m_x, node.m_y, node.m_z, node.m_text);
            addReference(digest, node.m_next);
            addReference(digest, node.m_other);
        }
        return digest.get();
    }

private:
    std::vector<std::shared_ptr<Object>>& nodes() const { return static_cast<Document&>(*m_root).m_nodes; }

    void fill(uint32_t number, const bench::Graph::Node& from)
    {
        auto& node = static_cast<Node&>(*nodes()[number]);
        node.m_key = number + 1;
        node.m_x = from.m_x;
        node.m_y = from.m_y;
        node.m_z = from.m_z;
        node.m_text = from.m_text;
        node.m_next = find(from.m_next);
        node.m_other = find(from.m_other);
    }

    std::shared_ptr<Object> find(uint32_t number) const
    {
        return number == bench::Graph::none ? nullptr : nodes()[number];
    }

    static void addReference(bench::Digest& digest, const std::weak_ptr<Object>& reference)
    {
        const std::shared_ptr<Object> object = reference.lock();
        digest.addReference(object ? &static_cast<const Node&>(*object).m_x : nullptr);
    }

    void save(std::ostream& out) const
    {
        cereal::PortableBinaryOutputArchive archive(out);
        archive(m_root);
    }

    std::shared_ptr<Object> m_root;
};

const bool registered = bench::GraphRows<Model>::add("cereal");
} // namespace
