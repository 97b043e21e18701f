// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/reader.h>

#include <kel/nativereader.h>
#include <kel/orderedbulletins.h>
#include <kel/problem.h>
#include <kel/savedline.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/serializablecreators.h>
#include <kel/status.h>
#include <kel/translator.h>
#include <kel/versions.h>
#include <kel/zassert.h>
#include <kel/ztring.h>

#include "idruns_p.h"
#include "lending_p.h"
#include "restoredobjects_p.h"
#include "streaminput_p.h"

#include <algorithm>
#include <bit>
#include <istream>
#include <locale>
#include <memory>
#include <utility>

namespace
{
/// Stands in the header of every product that shares the format.
constexpr const char* magicWord = "Velkor";

/// A line that is skipped is no longer than this.
constexpr std::streamsize longestLine = 2147483647;

/// Bytes that are taken on trust; beyond them, memory is taken for what has arrived.
constexpr std::size_t trustedSize = 16384;

std::uint64_t toId(const void* slot)
{
    return reinterpret_cast<std::uintptr_t>(slot);
}

Bulletin* toSlot(std::uint64_t id)
{
    return std::bit_cast<Bulletin*>(static_cast<std::uintptr_t>(id));
}

/// Takes bytes as they are. Where fewer are left, the stream is at its end but not failed, so that the failure is
/// reported as what it is.
std::size_t takeBytes(std::istream& in, char* bytes, std::size_t count)
{
    in.read(bytes, static_cast<std::streamsize>(count));
    if (in.eof() && !in.bad())
        in.clear(std::ios_base::eofbit);
    return static_cast<std::size_t>(in.gcount());
}

void readBytes(std::istream& in, std::size_t size, std::string& bytes)
{
    bytes.clear();
    while (bytes.size() < size && in.good())
    {
        const std::size_t arrived = bytes.size();
        const std::size_t next = std::min(size - arrived, std::max(arrived, trustedSize));
        bytes.resize(arrived + next);
        bytes.resize(arrived + takeBytes(in, bytes.data() + arrived, next));
    }
}

std::unique_ptr<char[]> readBlock(std::istream& in, std::size_t size)
{
    if (size <= trustedSize)
    {
        auto block = std::make_unique_for_overwrite<char[]>(size);
        takeBytes(in, block.get(), size);
        return block;
    }
    std::string bytes;
    readBytes(in, size, bytes);
    auto block = std::make_unique_for_overwrite<char[]>(bytes.size());
    bytes.copy(block.get(), bytes.size());
    return block;
}

[[noreturn]] void throwUnknown(std::uint64_t id)
{
    Ztring number;
    Ztring::append(id, number);
    Ztring message = Translator::tr("Unknown ptr: %1");
    message.argReplace(number);
    Problem::throwProblem(message);
}

void reportFixed(std::size_t fixed, std::size_t total)
{
    // Reading has brought the progress to 10 per cent; after the fixing it stands at 40.
    const float percent =
        fixed == total ? 40.0F : 10.0F + 30.0F * static_cast<float>(fixed) / static_cast<float>(total);
    Status::getSingleton().updateProgress(static_cast<int>(percent));
}
} // namespace

Reader::Reader(std::istream& in, const Ztring& expected, bool showStatus)
    : m_in(&in),
      m_restored(std::make_unique<RestoredObjects>()),
      m_showStatus(showStatus)
{
    KEL_ASSERT(!m_in->fail(), "*m_in");
    m_creators.reserve(100);
    prepareInput();
    readHeader(expected);
    adopt(std::make_unique<Versions>()).read(*this);
}

Reader::~Reader() = default;

void Reader::prepareInput()
{
    m_in->setf(std::ios_base::skipws);
    if (m_in->getloc() != std::locale::classic())
        m_in->imbue(std::locale::classic());
}

void Reader::readHeader(const Ztring& expected)
{
    std::string header;
    readString(header);
    if (header.find(expected.toUtf8()) != std::string::npos || header.find(magicWord) != std::string::npos)
        return;
    Ztring message = Translator::tr("Expecting: %1");
    message.argReplace(expected);
    Problem::throwProblem(message);
}

Serializable* Reader::perform()
{
    const std::size_t earlierIds = m_restored->size();
    const std::size_t earlierObjects = m_restored->getObjectCount();
    FixingQueue outOfTurn;
    Serializable* const root = loadNext(outOfTurn, 1);
    if (!root)
        throwError(Translator::tr("No root"));
    if (m_showStatus)
        Status::getSingleton().setStatus(Translator::tr("Reading objects"));
    readRecords(outOfTurn);
    if (m_showStatus)
        Status::getSingleton().setStatus(Translator::tr("Restore objects"));
    fixObjects(outOfTurn, earlierIds + 1, m_restored->getObjectCount() - earlierObjects + outOfTurn.size());
    m_restored->clear();
    return root;
}

void Reader::readRecords(FixingQueue& outOfTurn)
{
    for (std::int64_t id = 2; m_in->good(); ++id)
    {
        Status::getSingleton().checkInterrupt(-1);
        loadNext(outOfTurn, id);
    }
}

/// Objects are fixed in the order in which they stand in the table of all, so that only those that have to wait take
/// part in a queue.
void Reader::fixObjects(FixingQueue& queue, std::size_t first, std::size_t total)
{
    std::size_t fixed = 0;
    const Serializable* firstOfCycle = nullptr;
    const auto fixNext = [&](const Waiting& next)
    {
        m_isLast = fixed + 1 == total;
        if (!next.object->fixup(*this)) // NOLINT(clang-analyzer-core.CallAndMessage): no null is ever queued
        {
            queue.push_front(next);
            if (!firstOfCycle)
                firstOfCycle = next.object;
            return;
        }
        ++fixed;
        m_restored->setFixed(static_cast<std::uint64_t>(next.id));
        if (m_showStatus)
            reportFixed(fixed, total);
    };
    for (std::size_t id = m_restored->size(); id >= first; --id)
    {
        if (!m_restored->isSkipped(id))
            fixNext({m_restored->getObject(id), static_cast<std::int64_t>(id)});
    }
    while (!queue.empty())
    {
        const Waiting next = queue.back();
        queue.pop_back();
        if (next.object == firstOfCycle)
        {
            ++m_pass;
            firstOfCycle = nullptr;
        }
        fixNext(next);
    }
}

void Reader::checkValid() const
{
    if (m_in->good()) [[likely]]
        return;
    if (m_in->fail())
        throwError(Translator::tr("Invalid stream"));
    throwError(Translator::tr("Premature end of file"));
}

void Reader::throwError(const Ztring& message) const
{
    Problem::throwProblem(message);
}

template <class T>
requires(std::is_arithmetic_v<T> || std::is_same_v<T, Ztring>) Reader& Reader::read(T& value)
{
    if constexpr (std::is_same_v<T, Ztring>)
    {
        std::string utf8;
        readString(utf8);
        value.fromUtf8(utf8);
    }
    else
    {
        StreamInput::extract(*m_in, value);
        checkValid();
    }
    return *this;
}

template KEL_API Reader& Reader::read(bool&);
template KEL_API Reader& Reader::read(char&);
template KEL_API Reader& Reader::read(signed char&);
template KEL_API Reader& Reader::read(unsigned char&);
template KEL_API Reader& Reader::read(wchar_t&);
template KEL_API Reader& Reader::read(char8_t&);
template KEL_API Reader& Reader::read(char16_t&);
template KEL_API Reader& Reader::read(char32_t&);
template KEL_API Reader& Reader::read(short&);
template KEL_API Reader& Reader::read(unsigned short&);
template KEL_API Reader& Reader::read(int&);
template KEL_API Reader& Reader::read(unsigned&);
template KEL_API Reader& Reader::read(long&);
template KEL_API Reader& Reader::read(unsigned long&);
template KEL_API Reader& Reader::read(long long&);
template KEL_API Reader& Reader::read(unsigned long long&);
template KEL_API Reader& Reader::read(float&);
template KEL_API Reader& Reader::read(double&);
template KEL_API Reader& Reader::read(long double&);
template KEL_API Reader& Reader::read(Ztring&);

Reader& Reader::read(Bulletin*& slot)
{
    std::uint64_t id = 0;
    StreamInput::extractHex(*m_in, id);
    slot = toSlot(id);
    checkValid();
    return *this;
}

Reader& Reader::read(unsigned& size, char*& bytes)
{
    bytes = nullptr;
    read(size);
    m_in->ignore(); // the separator
    std::unique_ptr<char[]> block = readBlock(*m_in, size);
    checkValid();
    bytes = block.release();
    return *this;
}

void Reader::readString(std::string& text)
{
    unsigned size = 0;
    read(size);
    if (!StreamInput::takeReadyText(*m_in, size, text))
    {
        m_in->ignore(); // the separator
        readBytes(*m_in, size, text);
        checkValid();
    }
    text.resize(std::min(text.size(), text.find('\0')));
}

void Reader::readHex(unsigned& number)
{
    StreamInput::extractHex(*m_in, number);
}

void Reader::readBulletins(BulletinBoard& board)
{
    readBulletinsFor(board);
}

void Reader::readBulletins(OrderedBulletins& list)
{
    readBulletinsFor(list);
}

void Reader::readBulletinsFor(Bulletin& owner)
{
    const auto [entry, isNew] = m_bulletinsFor.try_emplace(&owner);
    if (!isNew)
        throwError(Translator::tr("Already read Bulletins"));
    m_newOwners.push_back(&owner);
    unsigned count = 0;
    read(count);
    for (unsigned i = 0; i < count; ++i)
    {
        Bulletin* slot = nullptr;
        NativeReader()(*this, slot);
        entry->second.append(toId(slot));
    }
}

void Reader::saveLine(const BulletinKey& key)
{
    std::string line;
    std::getline(*m_in, line);
    // A line that was read only in part, be it for want of memory, must not be taken for the whole.
    if (m_in->bad())
        checkValid();
    if (!line.empty())
        adopt(std::make_unique<SavedLine>(line, key));
}

void Reader::skipLine()
{
    m_in->ignore(longestLine, '\n');
}

template <class T>
Reader& Reader::fix(T*& slot)
{
    slot = getBulletin(toId(slot));
    return *this;
}

template KEL_API Reader& Reader::fix(Bulletin*&);

void Reader::fixBulletins(BulletinBoard& board)
{
    const auto add = [&board](Bulletin* member)
    {
        const Lending lending(*member); // whoever opens the file destroys the objects of one that fails
        board.add(member);
    };
    fixMembers(board, add);
}

void Reader::fixBulletins(OrderedBulletins& list)
{
    fixMembers(list, [&list](Bulletin* member) { list.append(member); });
}

bool Reader::isFixed(void* id) const
{
    KEL_ASSERT(m_restored->has(toId(id)), "findIt != m_restored.end()");
    return m_restored->isFixed(toId(id));
}

std::istream* Reader::set(std::istream* in)
{
    KEL_ASSERT(in, "valid(in)");
    std::istream* const previous = std::exchange(m_in, in);
    prepareInput();
    return previous;
}

Serializable* Reader::loadObj(FixingQueue& queue, std::int64_t id)
{
    return load(&queue, id);
}

Serializable* Reader::loadNext(FixingQueue& outOfTurn, std::int64_t id)
{
    return load(isNext(id) ? nullptr : &outOfTurn, id);
}

Serializable* Reader::load(FixingQueue* queue, std::int64_t id)
{
    unsigned classId = 0;
    StreamInput::extract(*m_in, classId);
    if (!m_in->good())
        return nullptr;
    Serializable* const object = readObject(classId, queue, id);
    if (!object)
        skipLine();
    if (isNext(id))
        m_restored->add(object);
    return object;
}

bool Reader::isNext(std::int64_t id) const
{
    return static_cast<std::uint64_t>(id) == m_restored->size() + 1;
}

SerializableCreator* Reader::getCreator(unsigned classId)
{
    SerializableCreator* const creator = findCreator(classId);
    if (!creator)
        throw Skip();
    return creator;
}

SerializableCreator* Reader::findCreator(unsigned classId)
{
    if (classId == 0)
        return readCreator();
    KEL_ASSERT(m_creators.size() >= classId, "m_creators->size() >= classId");
    return m_creators[classId - 1];
}

SerializableCreator* Reader::readCreator()
{
    std::string name;
    readString(name);
    m_creators.push_back(SerializableCreators::getSingleton().getCreator(name));
    return m_creators[m_creators.size() - 1];
}

Serializable* Reader::readObject(unsigned classId, FixingQueue* queue, std::int64_t id)
{
    // No exception for a class that is unknown, since a stream may hold a great many objects of it.
    SerializableCreator* const creator = findCreator(classId);
    if (!creator)
        return nullptr;
    m_newOwners.clear();
    Serializable* object = nullptr;
    try
    {
        std::unique_ptr<Serializable> created(creator->create());
        if (queue)
            queue->push_back({created.get(), id});
        object = created.release();
        object->read(*this);
        return object;
    }
    catch (const Skip&)
    {
        if (object && queue)
            queue->pop_back();
        // A later owner may get the address of one that is deleted here.
        for (Bulletin* const owner : m_newOwners)
            m_bulletinsFor.erase(owner);
        discard(object);
        return nullptr;
    }
}

// A bulletin may be observed already.
void Reader::discard(Serializable* object)
{
    if (auto* const bulletin = dynamic_cast<Bulletin*>(object))
        Bulletin::destroy(bulletin, true);
    else
        delete object;
}

Bulletin* Reader::getBulletin(std::uint64_t id) const
{
    if (id == 0)
        return nullptr;
    if (!m_restored->has(id))
        throwUnknown(id);
    Bulletin* const bulletin = m_restored->getBulletin(id);
    if (!bulletin && !m_restored->isSkipped(id))
        throwError(Translator::tr("Invalid ptr fix"));
    return bulletin;
}

template <class Add>
void Reader::fixMembers(Bulletin& owner, const Add& add)
{
    const auto found = m_bulletinsFor.find(&owner);
    if (found == m_bulletinsFor.end())
        throwError(Translator::tr("BulletinBoard has no Bulletins"));
    found->second.forEach(
        [&](std::uint64_t id)
        {
            if (Bulletin* const member = getBulletin(id))
                add(member);
        });
    m_bulletinsFor.erase(&owner);
}
