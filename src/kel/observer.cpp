// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/observer.h>

#include <kel/bulletin.h>
#include <kel/observable.h>
#include <kel/zassert.h>

Observer::Observer() = default;

Observer::Observer(const Observer& /*other*/) {}

Observer& Observer::operator=(const Observer& /*other*/)
{
    return *this;
}

Observer::~Observer()
{
    detachAll();
}

void Observer::attach(Observable& anObservable)
{
    const bool isNew = m_observables.insert(&anObservable);
    KEL_ASSERT(isNew, "!has(anObservable)");
}

void Observer::detach(Observable& anObservable)
{
    const bool wasLinked = m_observables.erase(&anObservable);
    KEL_ASSERT(wasLinked, "has(anObservable)");
}

void Observer::detachAll()
{
    while (!m_observables.empty())
        (*m_observables.begin())->detach(*this);
}

bool Observer::isObserving(Bulletin& bulletin) const
{
    return m_observables.has(&bulletin.getObservable());
}
