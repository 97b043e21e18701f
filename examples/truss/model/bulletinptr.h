// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <kel/autodelete.h>

#include <memory>

class Bulletin;

namespace truss
{
/// Deletes bulletins the one right way, so that their observers hear of it first.
struct BulletinDeleter
{
    void operator()(Bulletin* bulletin) const { const AutoDelete destroyed(bulletin); }
};

/// Owns a bulletin that is on no board.
template <class T>
using BulletinPtr = std::unique_ptr<T, BulletinDeleter>;
} // namespace truss
