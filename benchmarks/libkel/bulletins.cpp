// SPDX-License-Identifier: MIT
// libkel: benchmarks
// Making bulletins and destroying them through the deletion protocol.
#include "support/bulletinrows.h"

#include <kel/bulletin.h>

namespace
{
struct Maker
{
    using Object = Bulletin;
    static Bulletin* make() { return new Bulletin; }
    static void destroy(Bulletin* bulletin) { Bulletin::destroy(bulletin, false); }
};

const bool registered = bench::BulletinRows<Maker>::add("libkel");
} // namespace
