// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include "truss/model/bulletinptr.h"

#include <vector>

class Bulletin;
class Serializable;

namespace truss
{
class Model;

/// Owns all objects that a reader creates until the document is known to be whole.
///
/// A reader that fails midway leaves the objects it has created to nobody: some are in no collection yet, some are
/// already on the model's board. The creators therefore note each object they make with the guard that is alive, and
/// the guard destroys all of them unless they were released.
///
///     OpeningGuard guard;
///     BulletinPtr<Model> model = guard.release(fileReader.open(file, true)->perform());
///
/// One guard lives at a time.
class OpeningGuard
{
public:
    OpeningGuard();
    OpeningGuard(const OpeningGuard&) = delete;
    OpeningGuard& operator=(const OpeningGuard&) = delete;
    ~OpeningGuard();

    /// Called by the creators. Without a guard the object belongs to whoever reads.
    static void note(Bulletin& object);

    /// Hands the objects over to the model that was read, which the caller owns. Fails with a Problem, and keeps them,
    /// when the root is no model or objects were read that the model does not hold.
    BulletinPtr<Model> release(Serializable* root);

private:
    static OpeningGuard* s_active;

    std::vector<Bulletin*> m_objects;
};
} // namespace truss
