// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <iterator>
#include <list>
#include <memory>
#include <type_traits>

/// An element that is in no queue at the moment. It is deleted at the end of its scope, unless it is put into one.
///
/// Queues of owned elements are lists because an element takes its place with it: once it is here, putting it into any
/// queue needs no memory and cannot fail. So nothing is lost between two queues, and what must be undoable has its room
/// before it is done.
template <class T>
class OwnedElement
{
public:
    using Queue = std::list<T*>;

    /// Takes over an element, which is deleted if there is no memory for its place.
    explicit OwnedElement(T* element)
    {
        std::unique_ptr<T> owned(element);
        m_place.push_back(element);
        static_cast<void>(owned.release());
    }

    OwnedElement(OwnedElement&&) = default;
    OwnedElement& operator=(OwnedElement&&) = delete;
    ~OwnedElement() { reset(); }

    static OwnedElement takeFront(Queue& queue) { return OwnedElement(queue, queue.begin()); }
    static OwnedElement takeBack(Queue& queue) { return OwnedElement(queue, std::prev(queue.end())); }

    T* operator->() const { return m_place.front(); }

    void putFront(Queue& queue) noexcept { queue.splice(queue.begin(), m_place); }
    void putBack(Queue& queue) noexcept { queue.splice(queue.end(), m_place); }

    /// Deletes the element, if there still is one here.
    void reset() { const std::unique_ptr<T> element(release()); }

    /// Gives the element up; null if there is none here any more.
    T* release()
    {
        T* const element = m_place.empty() ? nullptr : m_place.front();
        m_place.clear();
        return element;
    }

private:
    OwnedElement(Queue& queue, typename Queue::iterator place) { m_place.splice(m_place.end(), queue, place); }

    Queue m_place;
};

/// Appends an element to a container of raw pointers that owns its elements. The element is deleted if there is no room
/// for it.
template <class Container, class T>
void pushBackOwned(Container& container, std::unique_ptr<T> element)
{
    container.push_back(element.get());
    static_cast<void>(element.release());
}

/// Deletes the elements of a queue that owns them from front to back. Each is off the queue by then, so that its
/// destructor finds the queue whole.
template <class Queue>
void deleteOwned(Queue& queue)
{
    while (!queue.empty())
    {
        const std::unique_ptr<std::remove_pointer_t<typename Queue::value_type>> element(queue.front());
        queue.pop_front();
    }
}
