// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#pragma once

#include <kel/array.h>

#include <algorithm>

/// One walk over a list of listeners that may change, or be walked again, while they are told.
///
/// A listener that is erased before its turn is passed over; one that is appended is left to the next pass. The running
/// passes over lists of one kind form a chain that starts at `running`, innermost first; whoever erases does it with
/// erase, which adjusts those over the list. Positions are kept, not copies of the list: the address of an erased
/// listener may belong to another one by the time of its turn.
template <class Listener>
class ListenerPass
{
public:
    // Not inlined: g++ 12 takes the link to the pass for a dangling one, although the destructor takes it back.
    [[gnu::noinline]] ListenerPass(const Array<Listener*>& listeners, ListenerPass*& running)
        : m_listeners(listeners),
          m_end(listeners.size()),
          m_running(running),
          m_outer(running)
    {
        m_running = this;
    }
    ~ListenerPass() { m_running = m_outer; }

    ListenerPass(const ListenerPass&) = delete;
    ListenerPass& operator=(const ListenerPass&) = delete;

    /// The listener whose turn it is, or null at the end.
    Listener* next() { return m_next < m_end ? m_listeners[m_next++] : nullptr; }

    /// Erases a listener as Array::erase does: where it is absent, the last one goes, if there is any.
    static void erase(Array<Listener*>& listeners, Listener* listener, ListenerPass* running)
    {
        if (listeners.empty())
            return;
        const auto found = std::find(listeners.begin(), listeners.end(), listener);
        const auto erased = found != listeners.end() ? found : listeners.end() - 1;
        const auto position = static_cast<unsigned int>(erased - listeners.begin());
        listeners.erase(listener);
        for (ListenerPass* pass = running; pass != nullptr; pass = pass->m_outer)
            if (&pass->m_listeners == &listeners)
                pass->closeGap(position);
    }

private:
    void closeGap(unsigned int position)
    {
        if (position < m_next)
            --m_next;
        if (position < m_end)
            --m_end;
    }

    const Array<Listener*>& m_listeners;
    unsigned int m_next = 0;
    unsigned int m_end;
    ListenerPass*& m_running;
    ListenerPass* const m_outer;
};
