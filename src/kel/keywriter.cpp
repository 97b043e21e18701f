// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keywriter.h>

#include <kel/writer.h>

#include "numbertable_p.h"
#include "streamstate_p.h"

KeyWriter::KeyWriter() : Bulletin(getStaticKey()), m_others(std::make_unique<NumberTable>()) {}

KeyWriter::~KeyWriter() = default;

const BulletinKey& KeyWriter::getStaticKey()
{
    static const BulletinKey s_key("KeyWriter");
    return s_key;
}

void KeyWriter::write(Writer& writer, const BulletinKey& key)
{
    writer.writeHex(getStreamState<KeyWriter>(writer).getNumber(key.getNumber()));
}

unsigned KeyWriter::getNumber(unsigned key)
{
    if (m_inTurn == 0)
        m_first = key;
    const unsigned distance = key - m_first;
    if (m_inTurn == 1 && distance != 0)
        m_step = distance;
    const unsigned turn = distance / m_step;
    const bool isOnStep = turn * m_step == distance;
    if (isOnStep && turn < m_inTurn)
        return turn;
    if (isOnStep && turn == m_inTurn && m_others->size() == 0)
        return m_inTurn++;
    return m_others->get(key, m_inTurn + m_others->size()).number;
}
