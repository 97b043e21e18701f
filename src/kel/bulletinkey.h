// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

#include <cstddef>
#include <string>

class Pool;
class Reader;
class Writer;

/// Identity under which a Bulletin lives on a BulletinBoard: one number, optionally with a name.
///
/// A name in a stream ends at its first zero byte on reading, so names must have none.
///
/// Names live in the NamedKeys registry and not in the key, so a key is as cheap to copy as its number. Numbers are
/// handed out in increasing order, the first is 1; they differ from run to run and never go into a file as such.
///
///     BulletinKey anonymous;                  // distinct from every other key
///     BulletinKey log("Log");                 // equal to every other key of this name
///     BulletinKey trace("Trace", "Tracing");  // "Tracing", unknown until now, gives this key too
///
/// Heap allocation takes no notice of the size asked for, therefore the class cannot be derived from.
class KEL_API BulletinKey final
{
public:
    /// A fresh number that no other key has.
    BulletinKey();

    /// The key that NamedKeys::getKey gives for a name, made on the first use of that name. The pointer must not be
    /// null.
    BulletinKey(const char* name);
    BulletinKey(const std::string& name);

    /// As above, and a second name for the same key. A name that already has a key keeps it.
    BulletinKey(const char* name, const char* alias);
    BulletinKey(const std::string& name, const std::string& alias);

    BulletinKey(const BulletinKey&) = default;
    BulletinKey& operator=(const BulletinKey&) = default;
    ~BulletinKey() = default;

    /// The number, which is the whole identity of the key and never 0.
    unsigned getNumber() const { return m_number; }

    /// The name that the key was first made with, never an alias; empty for an anonymous key. Lives as long as the
    /// process.
    const std::string& getName() const;

    bool operator==(const BulletinKey&) const = default;
    /// An older key sorts before a newer one.
    bool operator<(const BulletinKey& other) const { return m_number < other.m_number; }

    /// Writes the name; for a key without one, a number that holds within this stream only.
    void write(Writer& writer) const;
    /// Becomes the key that was written: the one of its name in this run or, without a name, a fresh one for each
    /// distinct number of the stream.
    void read(Reader& reader);

    /// Where keys on the heap live: every bulletin owns one.
    static Pool& getPool();
    static void* operator new(std::size_t size);
    static void operator delete(void* key, std::size_t size);

private:
    unsigned m_number;
};
