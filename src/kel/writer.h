// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletinboard.h>
#include <kel/kelapi.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <memory>
#include <set>
#include <type_traits>
#include <utility>

class AddressNumbers;
class OrderedBulletins;
class Serializable;
class SerializableCreator;
class Ztring;
template <class To, class From>
class CrossCast;

/// Writes an object and everything reachable from it as one object stream.
///
/// A writer serves one stream. It writes the header and the version table at once, and the first top-level
/// writeObj writes the whole graph:
///
///     std::ofstream out("model.x", std::ios::binary);
///     Writer writer(out, "Model 1.0", false);
///     out.precision(17); // else doubles keep six digits
///     writer.writeObj(&root);
///
/// Objects write themselves in Serializable::write through the same writer, where writeObj writes a reference:
///
///     writer.write(m_mass).write<Ztring>(m_name);
///     writer.writeObj(m_next);
///
/// Ids are given in the order in which objects are first referred to, and objects leave first in, first out, so
/// that records stand in the order of their ids. There is no recursion: deep and cyclic graphs use no stack.
///
/// The state of the output stream is not tested; the caller who owns the stream looks at it. What an object's
/// `write` or an interrupt throws passes through, leaves the stream incomplete and ends the use of the writer, which
/// has numbered objects whose records are missing: save again with a new one. As a board, the writer keeps
/// bulletins that belong to this one stream.
class KEL_API Writer : public BulletinBoard
{
public:
    /// Stands after every number and every counted string.
    static constexpr char s_separator = ' ';

    /// Writes the header text and the version table of this process. The stream is not owned, is given the
    /// classic locale for good and must outlive the writer. With `showStatus`, progress is reported through
    /// Status, which may throw Interrupted.
    Writer(std::ostream& out, const Ztring& header, bool showStatus);
    /// Neither flushes nor closes the stream.
    ~Writer() override;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// The stream itself, for classes that format their numbers on their own; each ends with s_separator.
    std::ostream& getOut() { return m_out; }

    /// At top level, gives the object the next id and writes it with all that it leads to; null writes nothing.
    /// Inside an object's `write`, writes a reference (the id in hexadecimal, 0 for null) and sees to it that the
    /// object's record follows. Each object is written once.
    void writeObj(Serializable* object);

    /// Writes a number in the stream's default formatting, and the separator. Provided for every arithmetic type;
    /// bool is written as 0 or 1, a character as its code. Real numbers keep six digits unless the stream is given a
    /// higher precision (17 brings back every double). Infinity and NaN are written, but reading them fails with
    /// "Invalid stream".
    /// For Ztring, writes a counted string: the length of its UTF-8 in bytes, the bytes, each with a separator. That it
    /// is shorter than 4 GiB is not checked.
    template <class T>
    requires(std::is_arithmetic_v<T> || std::is_same_v<T, Ztring>) Writer& write(const T& value);

    /// Writes a raw block of bytes of any value, line feeds included.
    Writer& write(unsigned size, const char* bytes);

    /// Writes a number in lower-case hexadecimal, and the separator.
    Writer& writeHex(unsigned number);

    /// Writes how many members are Serializable and writable, then a reference to each, in key order. Keys are not
    /// written: an object that is to be found by its key again writes that itself (BulletinKey::write).
    void writeBulletins(BulletinBoard& board);
    /// The same in the list's order; null entries are left out.
    void writeBulletins(OrderedBulletins& list);

    /// The id of an object, giving it the next one if it has none; 0 for null. Writes and queues nothing: the object
    /// (as its Serializable*) must be written as well, or the records of this stream are numbered wrong.
    unsigned getId(void* object);

    /// @name Steps of writeObj
    /// @{

    /// Writes the class part of the object's record: the number of its class in this stream, or 0 and the creator's
    /// name for a class that is met for the first time.
    void writeCreator(Serializable* object);

    /// Writes queued objects until none is left. Inside itself it fails with the assertion "!m_isWritingObj".
    void processPending();

    /// @}

private:
    /// The id of an object, and whether its record is yet to follow.
    std::pair<unsigned, bool> number(Serializable* object);
    unsigned enter(Serializable* object);
    void writeReference(unsigned id);
    template <class Bulletins>
    void writeMembers(const Bulletins& bulletins);
    template <class Bulletins>
    void writeRoots(const Bulletins& bulletins);
    template <class Bulletins>
    void collect(const Bulletins& bulletins, std::deque<Serializable*>& members);
    /// Writes how many objects are pending from this one on and a reference to each. Those that have to wait are moved
    /// up there, which moves the place behind them.
    void writeReferences(std::size_t& waiting);
    void writeFront();
    void reportProgress();

    std::ostream& m_out;
    std::unique_ptr<CrossCast<Serializable, Bulletin>> m_toSerializable;
    std::unique_ptr<AddressNumbers> m_creatorIds; // class numbers
    std::unique_ptr<AddressNumbers> m_ids;        // by the address of the object
    std::set<unsigned> m_unqueued;                // ids that getId has given and nobody has written
    std::deque<Serializable*> m_pending;          // first in, first out
    bool m_isWritingObj = false;
    bool m_showStatus;
};
