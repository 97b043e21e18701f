// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/writer.h>

#include <kel/orderedbulletins.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/status.h>
#include <kel/translator.h>
#include <kel/versions.h>
#include <kel/zassert.h>
#include <kel/ztring.h>

#include "addressnumbers_p.h"
#include "crosscast_p.h"
#include "flagguard_p.h"
#include "streamoutput_p.h"

#include <locale>
#include <string>
#include <utility>

namespace
{
Bulletin* getBulletin(Bulletin* entry)
{
    return entry;
}

Bulletin* getBulletin(const BulletinBoard::value_type& entry)
{
    return entry.second;
}
} // namespace

Writer::Writer(std::ostream& out, const Ztring& header, bool showStatus)
    : m_out(out),
      m_toSerializable(std::make_unique<CrossCast<Serializable, Bulletin>>()),
      m_creatorIds(std::make_unique<AddressNumbers>()),
      m_ids(std::make_unique<AddressNumbers>()),
      m_showStatus(showStatus)
{
    m_out.imbue(std::locale::classic());
    if (m_showStatus)
        Status::getSingleton().setStatus(Translator::tr("Writing objects"));
    write<Ztring>(header);
    StreamOutput::putChar(m_out, '\n');
    Versions::getSingleton().write(*this);
    StreamOutput::putChar(m_out, '\n');
}

Writer::~Writer() = default;

void Writer::writeObj(Serializable* object)
{
    writeReference(object ? enter(object) : 0);
    if (object && !m_isWritingObj)
        processPending();
}

unsigned Writer::enter(Serializable* object)
{
    const auto [id, isFirst] = number(object);
    if (isFirst)
        m_pending.push_back(object);
    return id;
}

std::pair<unsigned, bool> Writer::number(Serializable* object)
{
    const auto [id, isNew] = m_ids->get(object);
    return {id, isNew || (!m_unqueued.empty() && m_unqueued.erase(id) > 0)};
}

void Writer::writeReference(unsigned id)
{
    if (m_isWritingObj)
        writeHex(id);
}

template <class T>
requires(std::is_arithmetic_v<T> || std::is_same_v<T, Ztring>) Writer& Writer::write(const T& value)
{
    if constexpr (std::is_same_v<T, Ztring>)
    {
        if (StreamOutput::putText(m_out, value.wx().ToStdWstring(), s_separator))
            return *this;
        const std::string utf8 = value.toUtf8();
        write(static_cast<unsigned>(utf8.size()), utf8.data());
    }
    else
        StreamOutput::putNumber(m_out, value, s_separator);
    return *this;
}

template KEL_API Writer& Writer::write(const bool&);
template KEL_API Writer& Writer::write(const char&);
template KEL_API Writer& Writer::write(const signed char&);
template KEL_API Writer& Writer::write(const unsigned char&);
template KEL_API Writer& Writer::write(const wchar_t&);
template KEL_API Writer& Writer::write(const char8_t&);
template KEL_API Writer& Writer::write(const char16_t&);
template KEL_API Writer& Writer::write(const char32_t&);
template KEL_API Writer& Writer::write(const short&);
template KEL_API Writer& Writer::write(const unsigned short&);
template KEL_API Writer& Writer::write(const int&);
template KEL_API Writer& Writer::write(const unsigned&);
template KEL_API Writer& Writer::write(const long&);
template KEL_API Writer& Writer::write(const unsigned long&);
template KEL_API Writer& Writer::write(const long long&);
template KEL_API Writer& Writer::write(const unsigned long long&);
template KEL_API Writer& Writer::write(const float&);
template KEL_API Writer& Writer::write(const double&);
template KEL_API Writer& Writer::write(const long double&);
template KEL_API Writer& Writer::write(const Ztring&);

Writer& Writer::write(unsigned size, const char* bytes)
{
    StreamOutput::putCounted(m_out, bytes, size, s_separator);
    return *this;
}

Writer& Writer::writeHex(unsigned number)
{
    StreamOutput::putHex(m_out, number, s_separator);
    return *this;
}

void Writer::writeBulletins(BulletinBoard& board)
{
    writeMembers(board);
}

void Writer::writeBulletins(OrderedBulletins& list)
{
    writeMembers(list);
}

template <class Bulletins>
void Writer::writeMembers(const Bulletins& bulletins)
{
    if (!m_isWritingObj)
        return writeRoots(bulletins);
    // Collected where most of them will have to wait.
    std::size_t waiting = m_pending.size();
    try
    {
        collect(bulletins, m_pending);
        writeReferences(waiting);
    }
    catch (...)
    {
        m_pending.resize(waiting);
        throw;
    }
    m_pending.resize(waiting);
}

template <class Bulletins>
void Writer::collect(const Bulletins& bulletins, std::deque<Serializable*>& members)
{
    for (const auto& entry : bulletins)
    {
        Bulletin* const bulletin = getBulletin(entry);
        Serializable* const member = bulletin ? (*m_toSerializable)(*bulletin) : nullptr;
        if (member && member->isWritable())
            members.push_back(member);
    }
}

template <class Bulletins>
void Writer::writeRoots(const Bulletins& bulletins)
{
    std::deque<Serializable*> roots;
    collect(bulletins, roots);
    write(static_cast<unsigned>(roots.size()));
    for (Serializable* root : roots)
        writeObj(root);
}

void Writer::writeReferences(std::size_t& waiting)
{
    const std::size_t count = m_pending.size() - waiting;
    write(static_cast<unsigned>(count));
    if (count > 0)
        m_ids->expect(m_pending[waiting], count);
    for (std::size_t i = waiting; i < m_pending.size(); ++i)
    {
        const auto [id, isFirst] = number(m_pending[i]);
        if (isFirst)
            m_pending[waiting++] = m_pending[i];
        writeReference(id);
    }
}

unsigned Writer::getId(void* object)
{
    if (!object)
        return 0;
    const auto [id, isNew] = m_ids->get(object);
    if (isNew)
        m_unqueued.insert(id);
    return id;
}

void Writer::writeCreator(Serializable* object)
{
    SerializableCreator* const creator = object->getCreator();
    const auto [id, isNew] = m_creatorIds->get(creator);
    if (!isNew)
    {
        write(id);
        return;
    }
    const std::string& name = creator->getName();
    write(0u).write(static_cast<unsigned>(name.size()), name.data());
}

void Writer::processPending()
{
    KEL_ASSERT(!m_isWritingObj, "!m_isWritingObj");
    const FlagGuard guard(m_isWritingObj);
    while (!m_pending.empty())
    {
        writeFront();
        if (m_showStatus)
            reportProgress();
    }
}

void Writer::writeFront()
{
    Serializable* const object = m_pending.front();
    m_pending.pop_front();
    writeCreator(object);
    object->write(*this);
    StreamOutput::putChar(m_out, '\n');
}

void Writer::reportProgress()
{
    // The number of ids given, that of null included.
    const std::uint64_t assigned = m_ids->getNext();
    const std::uint64_t percent = (assigned - m_pending.size()) * 100 / assigned;
    // The first figures jump about while the graph is still being discovered.
    constexpr std::uint64_t firstShown = 30;
    Status::getSingleton().checkInterrupt(percent < firstShown ? -1 : static_cast<int>(percent));
}
