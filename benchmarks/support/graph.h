// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bench
{
/// The graph that every contender builds from its own objects, saves and opens: a document that lists nodes.
///
/// A node has a key, three doubles, a short UTF-8 text and two references to other nodes. Nothing is stored here, nodes
/// are computed from their number, so that the peak memory of a process is that of the contender.
class Graph
{
public:
    enum class Shape
    {
        Rings, ///< The first reference closes rings of 8 nodes, the second leads to any earlier node.
        List   ///< One doubly linked list through all nodes: recursion along the references is as deep as it is long.
    };

    /// Number that stands for a reference to nothing.
    static constexpr uint32_t none = UINT32_MAX;

    struct Node
    {
        double m_x;
        double m_y;
        double m_z;
        std::string m_text;
        uint32_t m_next;
        uint32_t m_other;
    };

    explicit Graph(size_t count, Shape shape = Shape::Rings) : m_count(count), m_shape(shape) {}

    size_t size() const { return m_count; }
    Node getNode(uint32_t number) const;

    /// What `Digest` gives for a contender that holds exactly this graph.
    uint64_t getDigest() const;

private:
    void setReferences(Node& node, uint32_t number) const;

    size_t m_count;
    Shape m_shape;
};

/// A number that differs when nodes, their order or their references differ.
///
/// Nodes are added in the order of the document; a reference is told by the coordinate of the node it leads to.
class Digest
{
public:
    void add(double x, double y, double z, std::string_view text);
    /// Null stands for a reference to nothing.
    void addReference(const double* x);
    uint64_t get() const { return m_value; }

private:
    void mix(uint64_t bits);

    uint64_t m_value = 0;
};
} // namespace bench
