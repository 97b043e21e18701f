// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

namespace truss
{
/// Tells the library who this program is and gives it the program's own services.
class Services
{
public:
    Services() = delete;

    /// To be called once at start-up, before anything logs, saves or runs.
    static void install();
};
} // namespace truss
