// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/zset.h>

class Bulletin;
class ChangedNotifier;
class Notifier;
class Observer;

/// The subject side of change notification: sends the notifications of one object to its observers. A Bulletin makes
/// one when it is first asked for it.
///
/// A pass (notify) calls the observers that were attached when it began, in the order of their addresses. One that
/// detaches or dies meanwhile is not called any more; one attached meanwhile hears the next pass. A notification sent
/// from inside an observer is a pass of its own. If an observer throws, the pass ends; if the observable dies, all its
/// passes end. Memory that runs out stops no pass: then those who are attached
/// meanwhile, or only taken out of the pass, may hear it, too.
class KEL_API Observable
{
public:
    Observable();
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;
    /// Unhooks all observers.
    virtual ~Observable();

    /// Links an observer, on both sides. Attaching it twice fails with the assertion "!has(anObserver)". When memory
    /// runs out nothing is linked.
    void attach(Observer& anObserver);
    /// Breaks the link, on both sides, and takes the observer out of the running passes. An observer that is not
    /// attached fails with the assertion "has(anObservable)".
    void detach(Observer& anObserver);

    bool has(Observer& anObserver) const;
    /// Whether nobody is attached.
    bool empty() const { return m_observers.empty(); }

    /// Calls update on every observer with the notification. Does not touch the observable any more once it was
    /// destroyed by one of them.
    void notify(Notifier& notifier);
    /// Takes an observer out of the running passes; the link stays.
    void fixNotifying(Observer& anObserver);

private:
    friend class Bulletin;

    class NotifyObservers;
    class AnyUpdate;
    class ChangedUpdate;

    /// As notify, of a message that is of exactly this class.
    void notifyChanged(ChangedNotifier& notifier);

    template <class Update, class Message>
    void notifyWith(Message& message);
    template <class Update, class Message>
    void notifyMany(Message& message);

    zset<Observer> m_observers;
    NotifyObservers* m_notifying =
        nullptr; ///< the running passes, innermost first; each lives on the stack of its notify
};
