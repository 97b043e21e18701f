// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <kel/kelapi.h>

class Bulletin;
class Reader;

/// Reads one object reference of a collection into its pointer slot, for Reader::read of an array.
class KEL_API NativeReader
{
public:
    void operator()(Reader& reader, Bulletin*& slot) const;
};
