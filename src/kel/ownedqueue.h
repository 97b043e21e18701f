// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <deque>
#include <memory>

/// Appends an element to a container of raw pointers that owns its elements. The element is deleted if there is no room
/// for it.
template <class Container, class T>
void pushBackOwned(Container& container, std::unique_ptr<T> element)
{
    container.push_back(element.get());
    static_cast<void>(element.release());
}

/// Takes the front element off a queue that owns its elements.
template <class T>
std::unique_ptr<T> popFrontOwned(std::deque<T*>& queue)
{
    std::unique_ptr<T> element(queue.front());
    queue.pop_front();
    return element;
}

/// Takes the back element off a queue that owns its elements.
template <class T>
std::unique_ptr<T> popBackOwned(std::deque<T*>& queue)
{
    std::unique_ptr<T> element(queue.back());
    queue.pop_back();
    return element;
}

/// Deletes the elements from front to back. Each is off the queue by then, so that its destructor finds the queue
/// whole.
template <class T>
void deleteOwned(std::deque<T*>& queue)
{
    while (!queue.empty())
        popFrontOwned(queue).reset();
}
