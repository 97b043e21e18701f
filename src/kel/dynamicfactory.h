// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/bulletinboard.h>
#include <kel/kelapi.h>

/// The board of the process-wide services that an application may replace by subclasses of its own.
///
/// Such a service is a Bulletin whose class has a static key, named for the class. The application adds its instance
/// before the first use; without one, some services create the library's default on demand.
///
///     class Greeter : public Bulletin
///     {
///     public:
///         Greeter() : Bulletin(getStaticKey()) {}
///         static const BulletinKey& getStaticKey()
///         {
///             static const BulletinKey key("Greeter");
///             return key;
///         }
///         static Greeter* getSingleton() { return &DynamicFactory::getSingleton().getOrCreate<Greeter>(); }
///     };
///
///     DynamicFactory::getSingleton().add(new PoliteGreeter); // derived from Greeter, before anybody greets
class KEL_API DynamicFactory : public BulletinBoard
{
public:
    DynamicFactory();
    DynamicFactory(const DynamicFactory&) = delete;

    /// The factory, made on first use. At exit it destroys every service left on it.
    static DynamicFactory& getSingleton();
};
