// SPDX-License-Identifier: MIT
// libkel: benchmarks
#include "graph.h"

#include <array>
#include <bit>
#include <functional>

using bench::Digest;
using bench::Graph;

namespace
{
constexpr uint32_t s_ringSize = 8;
constexpr std::array<const char*, 8> s_words = {"Knoten", "Träger", "Stütze", "Balken",
                                                "Öse",    "Gelenk", "Lager",  "Strebe"};

/// The mixing step of the splitmix64 generator: numbers that look random, computed without a state.
uint64_t scramble(uint64_t number)
{
    number += 0x9e3779b97f4a7c15u;
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9u;
    number = (number ^ (number >> 27)) * 0x94d049bb133111ebu;
    return number ^ (number >> 31);
}

/// Between -1000 and 1000 with all bits of the fraction in use.
double coordinate(uint64_t seed)
{
    return static_cast<double>(scramble(seed) >> 11) * 0x1p-53 * 2000 - 1000;
}
} // namespace

Graph::Node Graph::getNode(uint32_t number) const
{
    const uint64_t seed = uint64_t{number} * 4;
    Node node{
        coordinate(seed), coordinate(seed + 1), coordinate(seed + 2), s_words[number % s_words.size()], none, none};
    node.m_text += ' ';
    node.m_text += std::to_string(number % 1000);
    setReferences(node, number);
    return node;
}

void Graph::setReferences(Node& node, uint32_t number) const
{
    const auto count = static_cast<uint32_t>(m_count);
    if (m_shape == Shape::List)
    {
        node.m_next = number + 1 < count ? number + 1 : none;
        node.m_other = number > 0 ? number - 1 : none;
        return;
    }
    const uint32_t ring = number - number % s_ringSize;
    const uint32_t next = ring + (number + 1) % s_ringSize;
    node.m_next = next < count ? next : ring;
    node.m_other = number > 0 ? static_cast<uint32_t>(scramble(uint64_t{number} * 4 + 3) % number) : none;
}

uint64_t Graph::getDigest() const
{
    Digest digest;
    for (uint32_t number = 0; number < m_count; ++number)
    {
        const Node node = getNode(number);
        digest.add(node.m_x, node.m_y, node.m_z, node.m_text);
        for (const uint32_t reference : {node.m_next, node.m_other})
        {
            const double x = reference == none ? 0 : coordinate(uint64_t{reference} * 4);
            digest.addReference(reference == none ? nullptr : &x);
        }
    }
    return digest.get();
}

void Digest::add(double x, double y, double z, std::string_view text)
{
    mix(std::bit_cast<uint64_t>(x));
    mix(std::bit_cast<uint64_t>(y));
    mix(std::bit_cast<uint64_t>(z));
    mix(std::hash<std::string_view>()(text));
}

void Digest::addReference(const double* x)
{
    mix(x ? std::bit_cast<uint64_t>(*x) : 1);
}

void Digest::mix(uint64_t bits)
{
    m_value = scramble(m_value ^ bits);
}
