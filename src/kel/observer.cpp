// SPDX-License-Identifier: MIT
// libkel: Change notification
#include <kel/observer.h>

#include <kel/bulletin.h>
#include <kel/observable.h>

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

void Observer::detachAll()
{
    while (!m_observables.empty())
        (*m_observables.begin())->detach(*this);
}

bool Observer::isObserving(Bulletin& bulletin) const
{
    return m_observables.has(&bulletin.getObservable());
}
