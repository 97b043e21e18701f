// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keyreader.h>

#include <kel/numbertable.h>
#include <kel/reader.h>

KeyReader::KeyReader() : Bulletin(getStaticKey()), m_met(std::make_unique<NumberTable>(0)) {}

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
    return reader.getOrCreate<KeyReader>().getKeyNumber(number);
}

unsigned KeyReader::getKeyNumber(unsigned streamNumber)
{
    // Stream numbers start at 0, which the table keeps for itself.
    const unsigned index = m_met->get(std::uint64_t(streamNumber) + 1).number;
    if (index == m_keyNumbers.size())
        m_keyNumbers.push_back(BulletinKey().getNumber());
    return m_keyNumbers[index];
}
