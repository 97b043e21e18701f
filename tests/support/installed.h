// SPDX-License-Identifier: MIT
// Services of the application, such as its log or platform, for the time of a test.
#pragma once

#include <kel/dynamicfactory.h>

#include <memory>
#include <utility>

/// A service that is on the DynamicFactory board while this object lives. Its key must be free.
///
///     Installed<TestPlatform> platform;
///     ... platform->calls ...
template <class Service>
class Installed
{
public:
    template <class... Arguments>
    explicit Installed(Arguments&&... arguments)
        : m_service(std::make_unique<Service>(std::forward<Arguments>(arguments)...))
    {
        DynamicFactory::getSingleton().addIgnoreKey(*m_service, m_service->getKey()); // which does not own it
    }
    ~Installed() { DynamicFactory::getSingleton().removeIgnoreKey(m_service->getKey()); }

    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

    Service* operator->() const { return m_service.get(); }
    Service& operator*() const { return *m_service; }

private:
    std::unique_ptr<Service> m_service;
};
