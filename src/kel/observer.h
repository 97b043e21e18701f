// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/zassert.h>
#include <kel/zset.h>

class Bulletin;
class Notifier;
class Observable;

/// The watching side of change notification. Receiver is the observer that applications derive from.
///
/// The link between an observer and an observable is kept on both sides: whichever dies first unhooks itself from the
/// other. Links are made and broken with Observable::attach and detach, which call the operations of the same name
/// here.
class KEL_API Observer
{
public:
    Observer();
    /// A copy observes nothing: links belong to the object that attached itself.
    Observer(const Observer& other);
    /// Both sides keep their own links.
    Observer& operator=(const Observer& other);
    /// Detaches from everything.
    virtual ~Observer();

    /// Receives a notification, which lives no longer than this call. The observer may detach or attach itself or
    /// others, and destroy itself, others or the sender. What it throws ends the pass and reaches the sender.
    virtual void update(Notifier& notifier) = 0;

    /// Records a link on this side only; called by Observable::attach. A second link to the same observable fails with
    /// the assertion "!has(anObservable)".
    void attach(Observable& anObservable);
    /// Forgets a link on this side only; called by Observable::detach. A missing link fails with the assertion
    /// "has(anObservable)".
    void detach(Observable& anObservable);
    /// Detaches from everything, on both sides.
    void detachAll();

    /// Whether this observer is attached to a bulletin. Gives the bulletin an observable if it has none.
    bool isObserving(Bulletin& bulletin) const;

private:
    friend class Observable;

    zset<Observable> m_observables;
};

// Inline, since every link that an Observable makes or breaks is made or broken here, too.
inline void Observer::attach(Observable& anObservable)
{
    const bool isNew = m_observables.insert(&anObservable);
    KEL_ASSERT(isNew, "!has(anObservable)");
}

inline void Observer::detach(Observable& anObservable)
{
    const bool wasLinked = m_observables.erase(&anObservable);
    KEL_ASSERT(wasLinked, "has(anObservable)");
}
