// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/orderedbulletins.h>

#include "lifewatch_p.h"

OrderedBulletins::OrderedBulletins(const BulletinKey& key) : Bulletin(key)
{
    m_list.reserve(5);
}

OrderedBulletins::OrderedBulletins(const OrderedBulletins& other) = default;

OrderedBulletins& OrderedBulletins::operator=(const OrderedBulletins& other)
{
    if (this == &other)
        return *this;
    m_list.clear();
    if (m_list.capacity() < other.size())
        m_list.reserve(other.size());
    for (Bulletin* const bulletin : other)
        m_list.push_back(bulletin);
    return *this;
}

OrderedBulletins::~OrderedBulletins() = default;

const BulletinKey& OrderedBulletins::getStaticKey()
{
    static const BulletinKey key("OrderedBulletins");
    return key;
}

void OrderedBulletins::append(Bulletin* bulletin)
{
    m_list.push_back(bulletin);
}

void OrderedBulletins::add(const OrderedBulletins& other)
{
    const unsigned added = other.size();
    if (m_list.size() + added > m_list.capacity())
        m_list.reserve(m_list.size() + added);
    // By index: the other list may be this one.
    for (unsigned i = 0; i < added; ++i)
        m_list.push_back(other[i]);
}

Bulletin* OrderedBulletins::getBulletin(const BulletinKey& key) const
{
    for (Bulletin* const bulletin : *this)
    {
        if (bulletin != nullptr && bulletin->getKey() == key)
            return bulletin;
    }
    return nullptr;
}

void OrderedBulletins::clear()
{
    m_list.clear();
}

void OrderedBulletins::cleanOut()
{
    const LifeWatch list(*this);
    unsigned done = 0;
    try
    {
        for (; list.isAlive() && done < m_list.size(); ++done)
            destroy(m_list[done], false);
    }
    catch (...)
    {
        if (list.isAlive())
            dropFront(done);
        throw;
    }
    if (list.isAlive())
        m_list.clear();
}

void OrderedBulletins::dropFront(unsigned count)
{
    // The block stays, so that what is kept finds its room there.
    const unsigned size = m_list.size();
    m_list.clear();
    for (unsigned i = count; i < size; ++i)
        m_list.push_back(m_list[i]);
}
