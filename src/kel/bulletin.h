// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletinkey.h>
#include <kel/kelapi.h>
#include <kel/ztring.h>

#include <memory>

class Notifier;
class Observable;

/// Base of every object of the model and of every replaceable service: an identity, observers, and protocols for
/// deleting and cloning.
///
///     class Load : public Bulletin
///     {
///     public:
///         void setForce(double force)
///         {
///             m_force = force;
///             notifyChanged();                        // observers hear changed()
///         }
///         Load* clone() const override { return new Load(*this); }
///     };
///
///     receiver.observe(*load);                        // a Receiver
///     Bulletin::destroy(load, false);                 // observers hear deleted(), then it is gone
///
/// A bulletin is owned by the board that holds it, otherwise by whoever made it, and is deleted only through destroy()
/// or an AutoDelete, so that it can refuse and its observers hear of it.
class KEL_API Bulletin
{
public:
    /// Has a fresh anonymous key.
    Bulletin();
    /// Has a copy of the given key.
    explicit Bulletin(const BulletinKey& key);
    /// Has the same identity, deliberately, but no observers.
    Bulletin(const Bulletin& other);
    virtual ~Bulletin();

    const BulletinKey& getKey() const { return *m_key; }
    /// Overwrites the identity in place. A board that holds the bulletin goes on holding it under the old key.
    void setKey(const BulletinKey& key) { *m_key = key; }

    /// The list of observers, created on the first call; lives as long as the bulletin.
    Observable& getObservable();
    /// Sends a notification to the observers, if there are any. They may destroy this bulletin: nothing of it is
    /// touched after the last was told.
    void notifyObservers(Notifier& notifier);

    /// Asks an object whether it lets itself be deleted, tells its observers (preDelete) and deletes it. An object that
    /// refuses lives on, unless forced; it is asked even then, because asking may give up a use of it. If an observer
    /// throws, the object lives on and the exception passes through; if one deletes the object, that is all right, too.
    /// A missing object is the assertion "valid(&deadObj)". An object on a board is removed first: destroying takes it
    /// off no board, which would go on holding it.
    static void destroy(Bulletin& deadObj, bool force);
    /// The same; does nothing for a null pointer.
    static void destroy(Bulletin* deadObj, bool force);

    /// Whether destroy() may delete the object; asked once by each destroy(). True unless overridden.
    virtual bool canDelete();
    /// Called just before deletion: tells the observers with a DeletedNotifier. Overrides call the base.
    virtual void preDelete();
    /// Tells the observers with a ChangedNotifier. Does nothing without observers.
    virtual void notifyChanged();
    /// A new copy, owned by the caller. A class that does not override it fails with the assertion "false".
    virtual Bulletin* clone() const;
    /// Whether boards clone this bulletin when they are copied. True unless overridden, although clone() has to be
    /// overridden for it to hold: a class that cannot be cloned says so here.
    virtual bool canClone() const;
    /// The text registered under this bulletin's key; empty when there is none.
    virtual Ztring getToolTip();
    /// The same for a const object: calls the one above, which is the one to override, with a using declaration for
    /// this one, which it would hide.
    Ztring getToolTip() const;

    /// Registers a text under this bulletin's key, for all bulletins of that key. The first text stays; an empty one
    /// does nothing.
    void setToolTip(const Ztring& text);

protected:
    /// Lets subclasses be assigned: the identity and the observers of both sides stay what they are.
    Bulletin& operator=(const Bulletin&) { return *this; }

private:
    friend class AutoDelete;
    friend class BulletinBoard;

    /// Does the work of destroy().
    static void tryDestroy(Bulletin& deadObj, bool force);
    /// For destructors: destroys, not forced, and lets nothing out. An object whose canDelete or observers throw is
    /// deleted all the same, since nobody else would.
    static void destroyQuietly(Bulletin& deadObj) noexcept;

    const std::unique_ptr<BulletinKey> m_key;
    std::unique_ptr<Observable> m_observable; ///< null until the first getObservable()
};
