// SPDX-License-Identifier: MIT
// libkel: benchmarks
#pragma once

#include "support/graph.h"
#include "support/objectstream.h"
#include "support/streamsource.h"

#include <kel/bulletin.h>
#include <kel/bulletinboard.h>
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/writer.h>
#include <kel/ztring.h>

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

/// The graph as an application of libkel has it: a document that is a board of persistable bulletins.
namespace kelgraph
{
/// Registers a class under a name.
template <class T>
class Creator : public SerializableCreator
{
public:
    explicit Creator(const std::string& name) : SerializableCreator(name) {}
    Serializable* create() override { return new T; }
};

/// How a node keeps its text: as the library's text type or as UTF-8. The stream is the same but for the class names,
/// which have to differ since one process knows both.
template <class T>
struct Text;

template <>
struct Text<Ztring>
{
    static constexpr const char* s_suffix = "";
    static Ztring make(const std::string& utf8);
    static std::string toUtf8(const Ztring& text) { return text.toUtf8(); }
    static void write(Writer& writer, const Ztring& text) { writer.write(text); }
    static void read(Reader& reader, Ztring& text) { reader.read(text); }
};

template <>
struct Text<std::string>
{
    static constexpr const char* s_suffix = "8";
    static std::string make(const std::string& utf8) { return utf8; }
    static std::string toUtf8(const std::string& text) { return text; }
    static void write(Writer& writer, const std::string& text)
    {
        writer.write(static_cast<unsigned>(text.size()), text.data());
    }
    static void read(Reader& reader, std::string& text) { reader.readString(text); }
};

template <class T>
class Node : public Bulletin, public Serializable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    void write(Writer& writer) override;
    void read(Reader& reader) override;
    bool fixup(Reader& reader) override;

    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
    T m_text;
    Bulletin* m_next = nullptr;
    Bulletin* m_other = nullptr;

    static Creator<Node> s_creator;
};

template <class T>
class Document : public BulletinBoard, public Serializable
{
public:
    SerializableCreator* getCreator() override { return &s_creator; }
    void write(Writer& writer) override { writer.writeBulletins(*this); }
    void read(Reader& reader) override { reader.readBulletins(*this); }
    bool fixup(Reader& reader) override;

    static Creator<Document> s_creator;
};

/// A document with its nodes, as bench::GraphRows wants it.
template <class T>
class Model
{
public:
    using Source = bench::StreamSource;

    explicit Model(const bench::Graph& graph);
    /// Takes over the root that a reader gave.
    explicit Model(Serializable* root) : m_document(dynamic_cast<Document<T>*>(root)) {}

    std::string save(bool showStatus = false) const;
    void save(const std::string& path) const;
    static std::unique_ptr<Model> open(Source& source, bool showStatus = false);
    static std::unique_ptr<Model> openFile(const std::string& path);
    uint64_t getDigest() const;

private:
    struct Destroy
    {
        void operator()(Bulletin* bulletin) const { Bulletin::destroy(bulletin, false); }
    };

    std::unique_ptr<Document<T>, Destroy> m_document;
};

extern template class Model<Ztring>;
extern template class Model<std::string>;
} // namespace kelgraph
