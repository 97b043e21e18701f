// SPDX-License-Identifier: MIT
// libkel: Object model
#pragma once

#include <kel/kelapi.h>

class Bulletin;

/// Destroys a bulletin at the end of a scope, unless it is released before.
///
///     AutoDelete guard(bulletin);
///     mayThrow(*bulletin);
///     guard.release();
///     board.add(bulletin); // which owns it from here on, unless its key is taken
class KEL_API AutoDelete
{
public:
    explicit AutoDelete(Bulletin& bulletin);
    /// Null is allowed and guards nothing.
    explicit AutoDelete(Bulletin* bulletin);
    AutoDelete(const AutoDelete&) = delete;
    AutoDelete& operator=(const AutoDelete&) = delete;
    /// Bulletin::destroy, not forced. What an observer throws is dropped, and the bulletin deleted all the same.
    ~AutoDelete();

    /// Lets go of the bulletin, which then is not destroyed.
    void release();

private:
    Bulletin* m_bulletin;
};
