// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

template <class T>
class OwnedElement;

/// A queue of pointers, for the classes here that own the elements of their queues. What is still in it when it is
/// destroyed is not deleted.
///
/// An element takes its place with it when it leaves the queue, as an OwnedElement: putting it into any queue again
/// needs no memory and cannot fail. So nothing is lost between two queues, and what must be undoable has its room
/// before it is done. Other than with std::list, moving a place is a few instructions without a call, which is what a
/// step of a task queue consists of.
template <class T>
class OwnedQueue
{
public:
    using value_type = T*;

    OwnedQueue() = default;
    OwnedQueue(const OwnedQueue&) = delete;
    OwnedQueue& operator=(const OwnedQueue&) = delete;
    ~OwnedQueue()
    {
        while (!empty())
            pop_front();
    }

    bool empty() const { return m_first == nullptr; }
    std::size_t size() const { return m_size; }
    T* front() const { return m_first->element; }
    T* back() const { return m_last->element; }

    void push_back(T* element) { linkBack(new Place{element}); }
    void pop_front() { delete unlinkFront(); }

private:
    friend class OwnedElement<T>;

    struct Place
    {
        T* element;
        Place* previous = nullptr;
        Place* next = nullptr;
    };

    void linkFront(Place* place) noexcept
    {
        place->previous = nullptr;
        place->next = m_first;
        (m_first == nullptr ? m_last : m_first->previous) = place;
        m_first = place;
        ++m_size;
    }

    void linkBack(Place* place) noexcept
    {
        place->previous = m_last;
        place->next = nullptr;
        (m_last == nullptr ? m_first : m_last->next) = place;
        m_last = place;
        ++m_size;
    }

    Place* unlinkFront() noexcept
    {
        Place* const place = std::exchange(m_first, m_first->next);
        (m_first == nullptr ? m_last : m_first->previous) = nullptr;
        --m_size;
        return place;
    }

    Place* unlinkBack() noexcept
    {
        Place* const place = std::exchange(m_last, m_last->previous);
        (m_last == nullptr ? m_first : m_last->next) = nullptr;
        --m_size;
        return place;
    }

    Place* m_first = nullptr;
    Place* m_last = nullptr;
    std::size_t m_size = 0;
};

/// An element that is in no queue at the moment. It is deleted at the end of its scope, unless it is put into one.
template <class T>
class OwnedElement
{
public:
    using Queue = OwnedQueue<T>;

    /// Takes over an element, which is deleted if there is no memory for its place.
    explicit OwnedElement(T* element)
    {
        std::unique_ptr<T> owned(element);
        m_place = new Place{element};
        static_cast<void>(owned.release());
    }

    OwnedElement(OwnedElement&& other) noexcept : m_place(std::exchange(other.m_place, nullptr)) {}
    OwnedElement& operator=(OwnedElement&&) = delete;
    ~OwnedElement() { reset(); }

    static OwnedElement takeFront(Queue& queue) { return OwnedElement(queue.unlinkFront()); }
    static OwnedElement takeBack(Queue& queue) { return OwnedElement(queue.unlinkBack()); }

    T* operator->() const { return m_place->element; }

    void putFront(Queue& queue) noexcept { queue.linkFront(std::exchange(m_place, nullptr)); }
    void putBack(Queue& queue) noexcept { queue.linkBack(std::exchange(m_place, nullptr)); }

    /// Deletes the element, if there still is one here.
    void reset()
    {
        if (m_place != nullptr)
            delete release();
    }

    /// Gives the element up, which must still be here.
    T* release()
    {
        const std::unique_ptr<Place> place(std::exchange(m_place, nullptr));
        return place->element;
    }

private:
    using Place = typename Queue::Place;

    explicit OwnedElement(Place* place) : m_place(place) {}

    Place* m_place;
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
