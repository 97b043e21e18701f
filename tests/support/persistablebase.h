// SPDX-License-Identifier: MIT
// The base of classes that can be stored in an object stream.
#pragma once

#include <kel/serializable.h>
#include <kel/serializablecreator.h>

#include <algorithm>
#include <cstddef>
#include <vector>

/// A creator of `T`s under any name.
template <class T>
class CreatorOf : public SerializableCreator
{
public:
    using SerializableCreator::SerializableCreator;
    Serializable* create() override { return new T(); }
};

/// Knows all objects of the classes below that are alive, so that a test can delete what a failed reading left behind.
class Persistable : public Serializable
{
public:
    Persistable() : m_next(s_first)
    {
        if (m_next)
            m_next->m_previous = this;
        s_first = this;
        ++s_count;
    }
    Persistable(const Persistable&) = delete;
    Persistable& operator=(const Persistable&) = delete;

    ~Persistable() override
    {
        (m_previous ? m_previous->m_next : s_first) = m_next;
        if (m_next)
            m_next->m_previous = m_previous;
        --s_count;
    }

    static std::size_t getCount() { return s_count; }

    /// All objects, the oldest first.
    static std::vector<Persistable*> getAll()
    {
        std::vector<Persistable*> objects;
        objects.reserve(s_count);
        for (Persistable* object = s_first; object; object = object->m_next)
            objects.push_back(object);
        std::reverse(objects.begin(), objects.end());
        return objects;
    }

    static void deleteAll()
    {
        // Damaged input may have put one object on two boards.
        for (Persistable* object = s_first; object; object = object->m_next)
            object->disown();
        while (s_first)
            delete s_first;
    }

private:
    virtual void disown() {}

    static inline Persistable* s_first = nullptr;
    static inline std::size_t s_count = 0;

    Persistable* m_next;
    Persistable* m_previous = nullptr;
};

/// Deletes at the end of a test what it has made and read.
class PersistableGuard
{
public:
    PersistableGuard() = default;
    PersistableGuard(const PersistableGuard&) = delete;
    PersistableGuard& operator=(const PersistableGuard&) = delete;
    ~PersistableGuard() { Persistable::deleteAll(); }
};
