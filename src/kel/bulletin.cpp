// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/bulletin.h>

#include <kel/changednotifier.h>
#include <kel/deletednotifier.h>
#include <kel/observable.h>
#include <kel/tooltips.h>
#include <kel/zassert.h>

#include "lifewatch_p.h"

namespace
{
/// Whether there is an address, which is that of a reference: read so that no compiler can conclude that there must be.
bool valid(const Bulletin* address)
{
    const Bulletin* const volatile asPassed = address;
    return asPassed != nullptr;
}

/// Whether the object is still there after its observers were told: one of them may have destroyed it meanwhile.
bool survivesPreDelete(Bulletin& deadObj)
{
    const LifeWatch watch(deadObj);
    deadObj.preDelete();
    return watch.isAlive();
}
} // namespace

Bulletin::Bulletin() : m_key(new BulletinKey) {}

Bulletin::Bulletin(const BulletinKey& key) : m_key(new BulletinKey(key)) {}

Bulletin::Bulletin(const Bulletin& other) : m_key(new BulletinKey(*other.m_key)) {}

Bulletin::~Bulletin()
{
    LifeWatch::tellOfDeath(*this);
}

Observable& Bulletin::getObservable()
{
    if (!m_observable)
        m_observable = std::make_unique<Observable>();
    return *m_observable;
}

void Bulletin::notifyObservers(Notifier& notifier)
{
    if (m_observable)
        m_observable->notify(notifier);
}

void Bulletin::destroy(Bulletin& deadObj, bool force)
{
    KEL_ASSERT(valid(&deadObj), "valid(&deadObj)");
    tryDestroy(deadObj, force);
}

void Bulletin::destroy(Bulletin* deadObj, bool force)
{
    if (deadObj != nullptr)
        tryDestroy(*deadObj, force);
}

void Bulletin::tryDestroy(Bulletin& deadObj, bool force)
{
    // Asked also when forced: a board gives up one use by it.
    const bool accepts = deadObj.canDelete();
    if (!accepts && !force)
        return;
    if (survivesPreDelete(deadObj))
        delete &deadObj;
}

void Bulletin::destroyQuietly(Bulletin& deadObj) noexcept
{
    const LifeWatch watch(deadObj);
    try
    {
        tryDestroy(deadObj, false);
    }
    catch (...)
    {
        if (watch.isAlive())
            delete &deadObj;
    }
}

bool Bulletin::canDelete()
{
    return true;
}

void Bulletin::preDelete()
{
    if (!m_observable)
        return;
    DeletedNotifier notifier(*this);
    m_observable->notify(notifier);
}

void Bulletin::notifyChanged()
{
    if (!m_observable)
        return;
    ChangedNotifier notifier(*this);
    m_observable->notifyChanged(notifier);
}

Bulletin* Bulletin::clone() const
{
    ZAssert::throwProblem("false", __FILE__, __LINE__);
}

bool Bulletin::canClone() const
{
    return true;
}

Ztring Bulletin::getToolTip()
{
    return ToolTips::getSingleton().get(getKey());
}

Ztring Bulletin::getToolTip() const
{
    return const_cast<Bulletin*>(this)->getToolTip();
}

void Bulletin::setToolTip(const Ztring& text)
{
    if (!text.empty())
        ToolTips::getSingleton().add(getKey(), text);
}
