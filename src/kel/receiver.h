// SPDX-License-Identifier: MIT
// libkel: Change notification
#pragma once

#include <kel/kelapi.h>
#include <kel/observer.h>

/// The observer that applications derive from. It hears the kinds of message whose receiver interfaces its class
/// implements as well, and ignores all others.
///
///     class View : public Receiver, public AddedReceiver, public ChangedReceiver
///     {
///         void added(Bulletin& board, Bulletin& obj) override;
///         void changed(Bulletin& what, const Bulletin& how) override;
///     };
///
///     View view;
///     view.observe(model);
class KEL_API Receiver : public Observer
{
public:
    Receiver() = default;
    Receiver(const Receiver&) = default;
    Receiver& operator=(const Receiver&) = default;
    ~Receiver() override;

    /// Lets the notification find out what this receiver listens to.
    void update(Notifier& notifier) override;

    /// Attaches to a bulletin. Observing it twice fails with the assertion "!has(anObserver)".
    void observe(Bulletin& bulletin);
    /// Detaches from a bulletin. One that is not observed fails with the assertion "has(anObservable)".
    void unobserve(Bulletin& bulletin);
};
