// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/bulletinboard.h>

#include <typeinfo>

/// What a stream keeps on its board for one class, made when it is first asked for, as BulletinBoard::getOrCreate does.
/// It is asked for with every key, therefore the dynamic type test gives way to a look at the type where that will do.
template <class T>
T& getStreamState(BulletinBoard& stream)
{
    Bulletin* const found = stream.getPtr(T::getStaticKey());
    if (found && typeid(*found) == typeid(T))
        return static_cast<T&>(*found);
    return stream.getOrCreate<T>();
}
