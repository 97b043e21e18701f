// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/ztring.h>

/// A value as Ztring::append formats it.
template <class T>
Ztring toText(const T& value)
{
    Ztring text;
    Ztring::append(value, text);
    return text;
}
