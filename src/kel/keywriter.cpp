// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/keywriter.h>

#include <kel/numbertable.h>
#include <kel/streamstate.h>
#include <kel/writer.h>

KeyWriter::KeyWriter() : Bulletin(getStaticKey()), m_numbers(std::make_unique<NumberTable<unsigned>>(0, 0)) {}

KeyWriter::~KeyWriter() = default;

const BulletinKey& KeyWriter::getStaticKey()
{
    static const BulletinKey s_key("KeyWriter");
    return s_key;
}

void KeyWriter::write(Writer& writer, const BulletinKey& key)
{
    writer.writeHex(getStreamState<KeyWriter>(writer).m_numbers->get(key.getNumber()).number);
}
