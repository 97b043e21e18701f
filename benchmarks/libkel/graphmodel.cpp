// SPDX-License-Identifier: MIT
// libkel: benchmarks
#include "graphmodel.h"

#include <kel/bulletinkey.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>

#include <limits>
#include <sstream>
#include <vector>

using namespace kelgraph;

namespace
{
Ztring fromUtf8(const std::string& utf8)
{
    Ztring text;
    text.fromUtf8(utf8);
    return text;
}

template <class T>
std::string className(std::string_view base)
{
    return std::string(base) + Text<T>::s_suffix;
}

Ztring headerText()
{
    return fromUtf8(std::string(bench::header));
}

/// Numbers have to come back as they were.
void setPrecision(std::ostream& out)
{
    out.precision(std::numeric_limits<double>::max_digits10);
}
} // namespace

Ztring Text<Ztring>::make(const std::string& utf8)
{
    return fromUtf8(utf8);
}

template <class T>
Creator<Node<T>> Node<T>::s_creator(className<T>(bench::nodeClass));

template <class T>
void Node<T>::write(Writer& writer)
{
    getKey().write(writer);
    writer.write(m_x).write(m_y).write(m_z);
    Text<T>::write(writer, m_text);
    writer.writeObj(static_cast<Node*>(m_next));
    writer.writeObj(static_cast<Node*>(m_other));
}

template <class T>
void Node<T>::read(Reader& reader)
{
    BulletinKey key(getKey());
    key.read(reader);
    setKey(key);
    reader.read(m_x).read(m_y).read(m_z);
    Text<T>::read(reader, m_text);
    reader.read(m_next).read(m_other);
}

template <class T>
bool Node<T>::fixup(Reader& reader)
{
    reader.fix(m_next).fix(m_other);
    return true;
}

template <class T>
Creator<Document<T>> Document<T>::s_creator(className<T>(bench::documentClass));

template <class T>
bool Document<T>::fixup(Reader& reader)
{
    reader.fixBulletins(*this);
    return true;
}

template <class T>
Model<T>::Model(const bench::Graph& graph) : m_document(new Document<T>)
{
    std::vector<Node<T>*> nodes(graph.size());
    for (Node<T>*& node : nodes)
        m_document->add(node = new Node<T>);
    const auto find = [&nodes](uint32_t number) { return number == bench::Graph::none ? nullptr : nodes[number]; };
    for (uint32_t number = 0; number < graph.size(); ++number)
    {
        const bench::Graph::Node from = graph.getNode(number);
        Node<T>& node = *nodes[number];
        node.m_x = from.m_x;
        node.m_y = from.m_y;
        node.m_z = from.m_z;
        node.m_text = Text<T>::make(from.m_text);
        node.m_next = find(from.m_next);
        node.m_other = find(from.m_other);
    }
}

template <class T>
std::string Model<T>::save(bool showStatus) const
{
    std::ostringstream out;
    setPrecision(out);
    Writer(out, headerText(), showStatus).writeObj(m_document.get());
    return std::move(out).str();
}

template <class T>
void Model<T>::save(const std::string& path) const
{
    FileWriter file;
    Writer* const writer = file.open(Kel::File(fromUtf8(path)), false);
    setPrecision(writer->getOut());
    writer->writeObj(m_document.get());
    file.close();
}

template <class T>
std::unique_ptr<Model<T>> Model<T>::open(Source& source, bool showStatus)
{
    // The file writer's header names the product and not the benchmark; the empty text is found in both.
    return std::make_unique<Model>(Reader(source.rewind(), Ztring(), showStatus).perform());
}

template <class T>
std::unique_ptr<Model<T>> Model<T>::openFile(const std::string& path)
{
    return std::make_unique<Model>(FileReader().open(Kel::File(fromUtf8(path)), false)->perform());
}

template <class T>
uint64_t Model<T>::getDigest() const
{
    bench::Digest digest;
    const auto addReference = [&digest](const Bulletin* reference)
    { digest.addReference(reference ? &static_cast<const Node<T>*>(reference)->m_x : nullptr); };
    for (const auto& [key, bulletin] : *m_document)
    {
        const auto& node = static_cast<const Node<T>&>(*bulletin);
        digest.add(node.m_x, node.m_y, node.m_z, Text<T>::toUtf8(node.m_text));
        addReference(node.m_next);
        addReference(node.m_other);
    }
    return digest.get();
}

template class kelgraph::Model<Ztring>;
template class kelgraph::Model<std::string>;

std::string bench::saveWithLibkel(const Graph& graph)
{
    return Model<Ztring>(graph).save();
}
