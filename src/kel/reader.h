// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/array.h>
#include <kel/bulletinboard.h>
#include <kel/kelapi.h>

#include <cstdint>
#include <deque>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

class IdRuns;
class OrderedBulletins;
class RestoredObjects;
class Serializable;
class SerializableCreator;
class Ztring;

/// Rebuilds the graph of objects that a Writer has put into a stream.
///
///     std::ifstream in("model.x", std::ios::binary);
///     Reader reader(in, "Model", false);
///     auto* const model = dynamic_cast<Model*>(reader.perform());
///     documents.add(model); // a board, which owns it from then on
///
/// Reading comes first: every object is made by the creator of its class and reads its own data; a reference is
/// then only an id, held in the pointer slot itself. Fixing comes second: each object's `fixup` turns its ids into
/// pointers with fix. Objects of a class that this run does not know are skipped with the rest of their line, and
/// references to them become null.
///
/// Reading asks the Status about an interrupt, so there must be one even where no progress is shown.
///
/// Every failure is a Problem: damaged input ends in one of the messages below and takes no more memory than in
/// proportion to the bytes that are there. On a failure the objects made so far are not deleted; nor are, ever,
/// objects that the root does not lead to.
///
/// As a board, the reader keeps bulletins that belong to this one stream: the version table of the stream
/// (Versions), saved lines (SavedLine), and what applications add.
class KEL_API Reader : public BulletinBoard
{
public:
    /// Thrown where an object is to be dropped: by getCreator for an unknown class, and by an object's `read`. The
    /// object is deleted, the rest of its line is skipped and references to it become null. An object must throw it
    /// before it has read the end of its line, for the next line would be skipped otherwise.
    class KEL_API Skip
    {
    };

    /// An object that waits for its fixup, and its id.
    struct Waiting
    {
        Serializable* object;
        std::int64_t id;
    };
    /// Fixed from the back; what has to wait goes to the front.
    using FixingQueue = std::deque<Waiting>;

    /// Reads the header and the version table.
    ///
    /// The stream is not owned, must outlive the reader and is given the classic locale and white-space skipping for
    /// good. With `showStatus`, progress is reported through Status. The expected text may stand anywhere in
    /// the header; an empty one accepts any.
    ///
    /// @throws Problem "Expecting: %1" when the header holds neither the expected text nor "Velkor", which
    ///     every product of the family accepts; what Versions::read throws; the assertion "*m_in" when the stream has
    ///     failed already
    Reader(std::istream& in, const Ztring& expected, bool showStatus);
    ~Reader() override;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Reads and fixes all objects and returns the root, which the caller owns with all that it leads to. Called
    /// once. Reading can be interrupted (Interrupted is thrown), fixing cannot. There is no limit to the fixing: it
    /// ends when every `fixup` has returned true.
    ///
    /// @throws Problem "No root" when the first record yields no object
    Serializable* perform();

    /// @name Reading, for Serializable::read
    /// All of them fail with the messages of checkValid.
    /// @{

    /// Reads a number as formatted extraction does. Provided for every arithmetic type; bool is read as 0 or 1, a
    /// character as its code.
    /// For Ztring, reads a counted string.
    template <class T>
    requires(std::is_arithmetic_v<T> || std::is_same_v<T, Ztring>) Reader& read(T& value);

    /// Reads a reference: the id goes into the slot and must be resolved with fix before the slot is used.
    Reader& read(Bulletin*& slot);

    /// Reads a raw block. `bytes` is a new array of `size` bytes, not terminated, that the caller deletes; it is null
    /// while nothing was read and after a failure.
    Reader& read(unsigned& size, char*& bytes);

    /// Reads a count, then that many elements with the functor. Elements read before a failure stay in the array.
    /// @throws Problem of checkValid() when the stream ends or fails before the last element, which is not checked
    /// itself
    template <class T, class ElementReader>
    Reader& read(Array<T>& elements, const ElementReader& readElement);

    /// Reads a counted string of bytes. A zero byte ends the text; what is counted after it is dropped.
    void readString(std::string& text);

    /// Reads a number in hexadecimal without any check; a failure leaves the stream failed.
    void readHex(unsigned& number);

    /// Reads the members of a collection as ids and keeps them for fixBulletins. An owner has one collection only:
    /// @throws Problem "Already read Bulletins"
    void readBulletins(BulletinBoard& board);
    void readBulletins(OrderedBulletins& list);
    void readBulletinsFor(Bulletin& owner);

    /// Keeps the rest of the line, unless it is empty, as a SavedLine under the key.
    /// @throws Problem "Invalid stream" when the line cannot be read to its end; nothing is kept then
    void saveLine(const BulletinKey& key);

    /// Discards the input up to and including the next line feed, at most 2147483647 bytes.
    void skipLine();

    /// Fails when the input is not ready for more: @throws Problem "Invalid stream" when it is failed or bad, else
    /// "Premature end of file" when it is at its end.
    void checkValid() const;

    /// Throws the text, already translated, as a Problem.
    [[noreturn]] void throwError(const Ztring& message) const;

    /// @}
    /// @name Fixing, for Serializable::fixup
    /// @{

    /// Turns the id in the slot into the object read under it, or into null for the id 0 and for a skipped object.
    /// Provided for Bulletin.
    ///
    /// @throws Problem "Unknown ptr: %1" for an id without a record, "Invalid ptr fix" for an object that is no
    ///     Bulletin
    template <class T>
    Reader& fix(T*& slot);

    /// Puts the members of the collection into the board with its `add`, in stream order. Skipped objects are left
    /// out. @throws Problem "BulletinBoard has no Bulletins" when none was read for this owner
    void fixBulletins(BulletinBoard& board);
    /// Appends the members to the list, likewise.
    void fixBulletins(OrderedBulletins& list);

    /// Whether the `fixup` of the object with that id (as held in an unresolved slot) has returned true. An id without
    /// a record fails with the assertion "findIt != m_restored.end()".
    bool isFixed(void* id) const;

    /// How many times the fixing has come round to an object that had to wait.
    unsigned getPass() const { return m_pass; }

    /// Whether the object being fixed is the only one left.
    bool isLast() const { return m_isLast; }

    /// @}
    /// @name The input
    /// @{

    /// The input stream, for classes that extract their numbers on their own, each followed by checkValid.
    std::istream& getIn() { return *m_in; }

    /// Takes the input from another stream and returns the previous one. The new one is not owned and is given the
    /// classic locale and white-space skipping; null fails with the assertion "valid(in)".
    std::istream* set(std::istream* in);

    /// @}
    /// @name Steps of perform
    /// @{

    /// Reads the next record, making its object wait for its fixup, and enters it under the id; ids are counted up
    /// from 1. Null for a skipped object and when no record is left.
    Serializable* loadObj(FixingQueue& queue, std::int64_t id);

    /// The creator for a class number; 0 reads the name of a new class. Throws Skip for a class that this run does not
    /// know; a number not given yet fails with the assertion "m_creators->size() >= classId".
    SerializableCreator* getCreator(unsigned classId);

    /// @}

private:
    void prepareInput();
    void readHeader(const Ztring& expected);
    SerializableCreator* findCreator(unsigned classId);
    SerializableCreator* readCreator();
    Serializable* loadNext(FixingQueue& outOfTurn, std::int64_t id);
    Serializable* load(FixingQueue* queue, std::int64_t id);
    Serializable* readObject(unsigned classId, FixingQueue* queue, std::int64_t id);
    void discard(Serializable* object);
    bool isNext(std::int64_t id) const;
    void readRecords(FixingQueue& outOfTurn);
    void fixObjects(FixingQueue& queue, std::size_t first, std::size_t total);
    Bulletin* getBulletin(std::uint64_t id) const;
    template <class Add>
    void fixMembers(Bulletin& owner, const Add& add);

    std::istream* m_in;
    Array<SerializableCreator*> m_creators; // by class number - 1; null: unknown
    std::unique_ptr<RestoredObjects> m_restored;
    std::unordered_map<Bulletin*, IdRuns> m_bulletinsFor;
    std::vector<Bulletin*> m_newOwners; // whose collections the record that is being read holds
    std::uint32_t m_pass = 0;
    bool m_isLast = true;
    bool m_showStatus;
};

template <class T, class ElementReader>
Reader& Reader::read(Array<T>& elements, const ElementReader& readElement)
{
    unsigned count = 0;
    read(count);
    elements.clear();
    // Grown as elements arrive, since the count is only a claim.
    for (unsigned i = 0; i < count; ++i)
    {
        checkValid(); // the functor need not
        T element{};
        readElement(*this, element);
        elements.push_back(element);
    }
    return *this;
}
