// SPDX-License-Identifier: MIT
// libkel: benchmarks
// The graph written by hand for QDataStream: binary, one record for each node, references as numbers.
#include "support/graphrows.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QHash>
#include <QString>

#include <vector>

namespace
{
struct Node
{
    quint32 m_key = 0;
    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
    QString m_text;
    Node* m_next = nullptr;
    Node* m_other = nullptr;
};

/// Bytes in Qt's own array.
class QtSource
{
public:
    explicit QtSource(const std::string& bytes) : m_bytes(QByteArray::fromStdString(bytes)) {}

    QByteArray m_bytes;
};

class Model
{
public:
    using Source = QtSource;

    explicit Model(const bench::Graph& graph)
    {
        makeNodes(graph.size());
        for (uint32_t number = 0; number < graph.size(); ++number)
            fill(number, graph.getNode(number));
    }

    explicit Model(QIODevice& device)
    {
        QDataStream in(&device);
        quint32 count = 0;
        in >> count;
        makeNodes(count);
        for (const std::unique_ptr<Node>& node : m_nodes)
            read(in, *node);
    }

    QByteArray save() const
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        save(buffer);
        return bytes;
    }

    void save(const std::string& path) const
    {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::WriteOnly);
        save(file);
    }

    static std::unique_ptr<Model> open(Source& source)
    {
        QBuffer buffer(&source.m_bytes);
        buffer.open(QIODevice::ReadOnly);
        return std::make_unique<Model>(buffer);
    }

    static std::unique_ptr<Model> openFile(const std::string& path)
    {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::ReadOnly);
        return std::make_unique<Model>(file);
    }

    uint64_t getDigest() const
    {
        bench::Digest digest;
        for (const std::unique_ptr<Node>& node : m_nodes)
        {
            digest.add(node->m_x, node->m_y, node->m_z, node->m_text.toStdString());
            digest.addReference(node->m_next ? &node->m_next->m_x : nullptr);
            digest.addReference(node->m_other ? &node->m_other->m_x : nullptr);
        }
        return digest.get();
    }

private:
    void makeNodes(size_t count)
    {
        m_nodes.reserve(count);
        for (size_t number = 0; number < count; ++number)
            m_nodes.push_back(std::make_unique<Node>());
    }

    void fill(uint32_t number, const bench::Graph::Node& from)
    {
        Node& node = *m_nodes[number];
        node.m_key = number + 1;
        node.m_x = from.m_x;
        node.m_y = from.m_y;
        node.m_z = from.m_z;
        node.m_text = QString::fromStdString(from.m_text);
        node.m_next = find(from.m_next);
        node.m_other = find(from.m_other);
    }

    Node* find(uint32_t number) const { return number == bench::Graph::none ? nullptr : m_nodes[number].get(); }

    void save(QIODevice& device) const
    {
        QHash<const Node*, quint32> ids;
        ids.reserve(static_cast<qsizetype>(m_nodes.size()));
        for (const std::unique_ptr<Node>& node : m_nodes)
            ids.insert(node.get(), static_cast<quint32>(ids.size()) + 1);

        QDataStream out(&device);
        out << static_cast<quint32>(m_nodes.size());
        for (const std::unique_ptr<Node>& node : m_nodes)
            out << node->m_key << node->m_x << node->m_y << node->m_z << node->m_text << ids.value(node->m_next)
                << ids.value(node->m_other);
    }

    void read(QDataStream& in, Node& node) const
    {
        quint32 next = 0;
        quint32 other = 0;
        in >> node.m_key >> node.m_x >> node.m_y >> node.m_z >> node.m_text >> next >> other;
        node.m_next = find(next - 1);
        node.m_other = find(other - 1);
    }

    std::vector<std::unique_ptr<Node>> m_nodes;
};

const bool registered = bench::GraphRows<Model>::add("qdatastream");
} // namespace
