// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <ios>

/// Treats an exception of a stream buffer, while it is handled, as the formatted functions do: the stream turns bad,
/// and only a stream that throws on that lets the exception itself out.
inline void setBadOrRethrow(std::ios& stream)
{
    try
    {
        stream.setstate(std::ios_base::badbit);
    }
    catch (const std::ios_base::failure&)
    {
        // The exception being handled says more.
    }
    if (stream.exceptions() & std::ios_base::badbit)
        throw;
}
