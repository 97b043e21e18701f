// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The graph with code written for it by hand: the very bytes that libkel writes, but no library underneath. Ids come
// out of one flat hash, everything is formatted into one buffer, digits are made and read by std::to_chars and
// std::from_chars.
#include "support/flathash.h"
#include "support/graphrows.h"
#include "support/objectstream.h"

#include <charconv>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

namespace
{
struct Node
{
    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
    std::string m_text;
    Node* m_next = nullptr;
    Node* m_other = nullptr;
    uint32_t m_key = 0;
};

using Nodes = std::vector<std::unique_ptr<Node>>;

constexpr std::string_view s_versions = "2 10 AppVersion 5 0 0 10 KelVersion 5 1 3 ";

/// Formats into one buffer, which is not cleared before it is filled.
class Output
{
public:
    /// `expected` bytes are made room for.
    explicit Output(size_t expected) : m_bytes(std::make_unique_for_overwrite<char[]>(expected)), m_capacity(expected)
    {
    }

    size_t size() const { return m_size; }
    std::string_view view() const { return {m_bytes.get(), m_size}; }

    void text(std::string_view text)
    {
        makeRoom(text.size());
        m_size += text.copy(at(), text.size());
    }

    void number(uint64_t number, int base = 10)
    {
        makeRoom(s_longestNumber);
        finish(std::to_chars(at(), end(), number, base).ptr);
    }

    void number(double number)
    {
        makeRoom(s_longestNumber);
        finish(std::to_chars(at(), end(), number, std::chars_format::general, 17).ptr);
    }

    void countedText(std::string_view bytes)
    {
        number(bytes.size());
        text(bytes);
        text(" ");
    }

private:
    static constexpr size_t s_longestNumber = 32;

    char* at() { return m_bytes.get() + m_size; }
    char* end() { return m_bytes.get() + m_capacity; }

    void makeRoom(size_t count)
    {
        if (m_capacity - m_size < count)
            grow((m_capacity + count) * 2);
    }

    void grow(size_t capacity)
    {
        std::unique_ptr<char[]> bytes = std::make_unique_for_overwrite<char[]>(capacity);
        view().copy(bytes.get(), m_size);
        m_bytes = std::move(bytes);
        m_capacity = capacity;
    }

    void finish(char* past)
    {
        *past = ' ';
        m_size = static_cast<size_t>(past - m_bytes.get()) + 1;
    }

    std::unique_ptr<char[]> m_bytes;
    size_t m_capacity;
    size_t m_size = 0;
};

/// Reads what `Output` writes; throws where something else stands.
class Input
{
public:
    explicit Input(std::string_view bytes) : m_at(bytes.data()), m_end(bytes.data() + bytes.size()) {}

    template <class T>
    T number(int base = 10)
    {
        T value = 0;
        const std::from_chars_result result = convert(value, base);
        if (result.ec != std::errc() || result.ptr == m_end)
            fail();
        m_at = result.ptr + 1;
        return value;
    }

    std::string_view countedText()
    {
        const auto size = number<size_t>();
        if (size >= static_cast<size_t>(m_end - m_at))
            fail();
        const std::string_view text(m_at, size);
        m_at += size + 1;
        return text;
    }

    void endOfLine()
    {
        if (m_at == m_end || *m_at != '\n')
            fail();
        ++m_at;
    }

    void skipLine()
    {
        while (m_at != m_end && *m_at != '\n')
            ++m_at;
        endOfLine();
    }

private:
    std::from_chars_result convert(double& value, int) const { return std::from_chars(m_at, m_end, value); }
    template <class T>
    std::from_chars_result convert(T& value, int base) const
    {
        return std::from_chars(m_at, m_end, value, base);
    }

    [[noreturn]] static void fail() { throw std::runtime_error("the stream is damaged"); }

    const char* m_at;
    const char* m_end;
};

class GraphWriter
{
public:
    explicit GraphWriter(const Nodes& nodes) : m_nodes(nodes), m_ids(nodes.size() + 1), m_out(nodes.size() * 128 + 256)
    {
    }

    Output write()
    {
        m_out.countedText(bench::header);
        m_out.text("\n");
        m_out.text(s_versions);
        m_out.text("\n");
        writeDocument();
        for (uint32_t number = 0; number < m_nodes.size(); ++number)
            writeNode(*m_nodes[number], number);
        return std::move(m_out);
    }

private:
    void writeDocument()
    {
        m_out.text("0 ");
        m_out.countedText(bench::documentClass);
        m_out.number(m_nodes.size());
        uint32_t id = 1;
        for (const std::unique_ptr<Node>& node : m_nodes)
        {
            m_ids.insert(node.get(), ++id);
            m_out.number(uint64_t{id}, 16);
        }
        m_out.text("\n");
    }

    void writeNode(const Node& node, uint32_t number)
    {
        if (number == 0)
        {
            m_out.text("0 ");
            m_out.countedText(bench::nodeClass);
        }
        else
            m_out.text("2 ");
        // Every node has a key of its own and no name, so its number in the stream is its place in the document.
        m_out.text("0  ");
        m_out.number(uint64_t{number}, 16);
        m_out.number(node.m_x);
        m_out.number(node.m_y);
        m_out.number(node.m_z);
        m_out.countedText(node.m_text);
        m_out.number(uint64_t{m_ids.get(node.m_next)}, 16);
        m_out.number(uint64_t{m_ids.get(node.m_other)}, 16);
        m_out.text("\n");
    }

    const Nodes& m_nodes;
    bench::FlatHash m_ids;
    Output m_out;
};

class GraphReader
{
public:
    explicit GraphReader(std::string_view bytes) : m_in(bytes) {}

    Nodes read()
    {
        m_in.countedText();
        m_in.endOfLine();
        m_in.skipLine();
        readDocument();
        for (size_t number = 0; number < m_nodes.size(); ++number)
            readNode(*m_nodes[number]);
        return std::move(m_nodes);
    }

private:
    void readClass()
    {
        if (m_in.number<uint32_t>() == 0)
            m_in.countedText();
    }

    void readDocument()
    {
        readClass();
        const auto count = m_in.number<size_t>();
        m_nodes.reserve(count);
        for (size_t number = 0; number < count; ++number)
        {
            if (m_in.number<uint32_t>(16) != number + 2)
                throw std::runtime_error("the nodes are not in order");
            m_nodes.push_back(std::make_unique<Node>());
        }
        m_in.endOfLine();
    }

    void readNode(Node& node)
    {
        readClass();
        m_in.countedText();
        node.m_key = m_in.number<uint32_t>(16) + 1;
        node.m_x = m_in.number<double>();
        node.m_y = m_in.number<double>();
        node.m_z = m_in.number<double>();
        node.m_text = m_in.countedText();
        node.m_next = find(m_in.number<uint32_t>(16));
        node.m_other = find(m_in.number<uint32_t>(16));
        m_in.endOfLine();
    }

    Node* find(uint32_t id) const
    {
        if (id == 0)
            return nullptr;
        if (id < 2 || id - 2 >= m_nodes.size())
            throw std::runtime_error("a reference leads nowhere");
        return m_nodes[id - 2].get();
    }

    Input m_in;
    Nodes m_nodes;
};

class Model
{
public:
    using Source = std::string;

    explicit Model(const bench::Graph& graph)
    {
        for (uint32_t number = 0; number < graph.size(); ++number)
            m_nodes.push_back(std::make_unique<Node>());
        for (uint32_t number = 0; number < graph.size(); ++number)
            fill(number, graph.getNode(number));
    }

    explicit Model(Nodes nodes) : m_nodes(std::move(nodes)) {}

    Output save() const { return GraphWriter(m_nodes).write(); }

    void save(const std::string& path) const
    {
        const Output bytes = save();
        std::ofstream(path, std::ios::binary).write(bytes.view().data(), static_cast<std::streamsize>(bytes.size()));
    }

    static std::unique_ptr<Model> open(const Source& source)
    {
        return std::make_unique<Model>(GraphReader(source).read());
    }

    static std::unique_ptr<Model> openFile(const std::string& path) { return open(bench::contents(path)); }

    uint64_t getDigest() const
    {
        bench::Digest digest;
        for (const std::unique_ptr<Node>& node : m_nodes)
        {
            digest.add(node->m_x, node->m_y, node->m_z, node->m_text);
            digest.addReference(node->m_next ? &node->m_next->m_x : nullptr);
            digest.addReference(node->m_other ? &node->m_other->m_x : nullptr);
        }
        return digest.get();
    }

private:
    void fill(uint32_t number, const bench::Graph::Node& from)
    {
        Node& node = *m_nodes[number];
        node.m_key = number + 1;
        node.m_x = from.m_x;
        node.m_y = from.m_y;
        node.m_z = from.m_z;
        node.m_text = from.m_text;
        node.m_next = find(from.m_next);
        node.m_other = find(from.m_other);
    }

    Node* find(uint32_t number) const { return number == bench::Graph::none ? nullptr : m_nodes[number].get(); }

    Nodes m_nodes;
};

void checkBytes()
{
    const bench::Graph graph(1000);
    if (Model(graph).save().view() != bench::saveWithLibkel(graph))
        throw std::runtime_error("libkel writes other bytes");
}

const bool registered = bench::GraphRows<Model>::add("handwritten");
const bool checked = bench::addCheck("bytes written by hand", checkBytes);
} // namespace
