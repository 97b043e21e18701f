// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The graph with Boost.Serialization: text archives, polymorphic classes, pointers tracked.
#include "support/graphrows.h"
#include "support/streamsource.h"

#include <boost/archive/text_iarchive.hpp>
#include <boost/archive/text_oarchive.hpp>
#include <boost/serialization/base_object.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>

#include <fstream>
#include <sstream>

namespace boostgraph
{
class Object
{
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    template <class Archive>
    void serialize(Archive&, unsigned)
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
    Object* m_next = nullptr;
    Object* m_other = nullptr;

    template <class Archive>
    void serialize(Archive& archive, unsigned)
    {
        archive& boost::serialization::base_object<Object>(*this);
        archive& m_key& m_x& m_y& m_z& m_text& m_next& m_other;
    }
};

class Document : public Object
{
public:
    ~Document() override
    {
        for (const Object* node : m_nodes)
            delete node;
    }

    template <class Archive>
    void serialize(Archive& archive, unsigned)
    {
        archive& boost::serialization::base_object<Object>(*this);
        archive& m_nodes;
    }

    std::vector<Object*> m_nodes;
};
} // namespace boostgraph

BOOST_CLASS_EXPORT(boostgraph::Node)
BOOST_CLASS_EXPORT(boostgraph::Document)

namespace
{
using namespace boostgraph;

const double* coordinateOf(const Object* reference)
{
    return reference ? &static_cast<const Node*>(reference)->m_x : nullptr;
}

class Model
{
public:
    using Source = bench::StreamSource;

    explicit Model(const bench::Graph& graph) : m_document(new Document)
    {
        for (uint32_t number = 0; number < graph.size(); ++number)
            m_document->m_nodes.push_back(new Node);
        for (uint32_t number = 0; number < graph.size(); ++number)
            fill(number, graph.getNode(number));
    }

    explicit Model(std::istream& in)
    {
        boost::archive::text_iarchive archive(in);
        Object* root = nullptr;
        archive >> root;
        m_document.reset(dynamic_cast<Document*>(root));
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
        for (const Object* object : m_document->m_nodes)
        {
            const auto& node = static_cast<const Node&>(*object);
            digest.add(node.m_x, node.m_y, node.m_z, node.m_text);
            digest.addReference(coordinateOf(node.m_next));
            digest.addReference(coordinateOf(node.m_other));
        }
        return digest.get();
    }

private:
    void fill(uint32_t number, const bench::Graph::Node& from)
    {
        auto& node = static_cast<Node&>(*m_document->m_nodes[number]);
        node.m_key = number + 1;
        node.m_x = from.m_x;
        node.m_y = from.m_y;
        node.m_z = from.m_z;
        node.m_text = from.m_text;
        node.m_next = find(from.m_next);
        node.m_other = find(from.m_other);
    }

    Object* find(uint32_t number) const { return number == bench::Graph::none ? nullptr : m_document->m_nodes[number]; }

    void save(std::ostream& out) const
    {
        boost::archive::text_oarchive archive(out);
        const Object* root = m_document.get();
        archive << root;
    }

    std::unique_ptr<Document> m_document;
};

const bool registered = bench::GraphRows<Model>::add("boost");
} // namespace
