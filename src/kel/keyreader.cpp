// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keyreader.h>

#include <kel/reader.h>

#include "streamstate_p.h"

KeyReader::KeyReader() : Bulletin(getStaticKey()) {}

KeyReader::~KeyReader() = default;

const BulletinKey& KeyReader::getStaticKey()
{
    static const BulletinKey s_key("KeyReader");
    return s_key;
}

unsigned KeyReader::read(Reader& reader)
{
    unsigned number = 0;
    reader.readHex(number);
    return getStreamState<KeyReader>(reader).getKeyNumber(number);
}

unsigned KeyReader::getKeyNumber(unsigned streamNumber)
{
    if (streamNumber < m_keyNumbers.size())
        return m_keyNumbers[streamNumber];
    if (streamNumber > m_keyNumbers.size() || !m_outOfTurn.empty())
        return getOutOfTurn(streamNumber);
    m_keyNumbers.push_back(BulletinKey().getNumber());
    return m_keyNumbers.back();
}

unsigned KeyReader::getOutOfTurn(unsigned streamNumber)
{
    const auto [entry, isNew] = m_outOfTurn.try_emplace(streamNumber);
    if (isNew)
        entry->second = BulletinKey().getNumber();
    return entry->second;
}
