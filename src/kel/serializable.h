// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

class Reader;
class SerializableCreator;
class Writer;

/// Base of every object that can be stored in an object stream.
///
/// A stream names the class of an object by its creator, and the object writes and reads its own data. What
/// `write` puts into the stream, `read` takes out again in the same order. References are written with
/// Writer::writeObj; after reading they are held as ids, which `fixup` turns into pointers:
///
///     SerializableCreator* Node::getCreator() { return &s_creator; }
///     void Node::write(Writer& writer)
///     {
///         writer.write(m_mass);
///         writer.writeObj(dynamic_cast<Serializable*>(m_next));
///     }
///     void Node::read(Reader& reader) { reader.read(m_mass).read(m_next); }
///     bool Node::fixup(Reader& reader)
///     {
///         reader.fix(m_next);
///         return true;
///     }
///
/// A persistable bulletin derives from both Bulletin and Serializable; writer and reader go from the one to the
/// other by a dynamic cast. A bulletin that is not Serializable is not stored.
class KEL_API Serializable
{
public:
    virtual ~Serializable();

    /// Whether collections that hold this object store it. True unless overridden.
    virtual bool isWritable();

    /// The creator under whose name this object is stored; not owned by the caller. Every persistable class
    /// overrides it: the base fails with the assertion "false".
    virtual SerializableCreator* getCreator();

    /// Writes the object's own data. Called once for each stream, whatever the number of references. Settings of the
    /// stream that it changes (std::hex) are put back before it returns: the next object's ids follow them, too.
    virtual void write(Writer& writer);

    /// Reads what `write` wrote, into an object that its creator has just made. References are only ids as yet
    /// and must not be followed. May throw Reader::Skip to have the object dropped.
    virtual void read(Reader& reader);

    /// Resolves the references after all objects were read. Returns false to be called again after the other
    /// waiting objects, for example while Reader::isFixed is false for an object that is needed first.
    virtual bool fixup(Reader& reader);

protected:
    Serializable() = default;
    Serializable(const Serializable&) = default;
    Serializable& operator=(const Serializable&) = default;
};
