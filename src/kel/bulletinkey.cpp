// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/bulletinkey.h>

#include <kel/keyreader.h>
#include <kel/keywriter.h>
#include <kel/namedkeys.h>
#include <kel/pool.h>

// The pool's blocks have the size of the number, and reports name it.
static_assert(sizeof(BulletinKey) == 4);

namespace
{
unsigned createNewId()
{
    static unsigned id = 0;
    return ++id;
}
} // namespace

BulletinKey::BulletinKey() : m_number(createNewId()) {}

BulletinKey::BulletinKey(const char* name) : BulletinKey(std::string(name)) {}

BulletinKey::BulletinKey(const std::string& name) : BulletinKey(name, std::string()) {}

BulletinKey::BulletinKey(const char* name, const char* alias) : BulletinKey(std::string(name), std::string(alias)) {}

BulletinKey::BulletinKey(const std::string& name, const std::string& alias)
    : m_number(NamedKeys::getSingleton().getKey(name, alias))
{
}

const std::string& BulletinKey::getName() const
{
    return NamedKeys::getSingleton().getName(m_number);
}

void BulletinKey::write(Writer& writer) const
{
    if (!NamedKeys::getSingleton().write(writer, m_number))
        KeyWriter::write(writer, *this);
}

void BulletinKey::read(Reader& reader)
{
    if (!NamedKeys::getSingleton().read(reader, *this))
        m_number = KeyReader::read(reader);
}

Pool& BulletinKey::getPool()
{
    static Pool pool("BulletinKey", sizeof(BulletinKey), Pool::Chunk10000);
    return pool;
}

void* BulletinKey::operator new(std::size_t /*size*/)
{
    return getPool().newObject();
}

void BulletinKey::operator delete(void* key, std::size_t /*size*/)
{
    getPool().deleteObject(key);
}
