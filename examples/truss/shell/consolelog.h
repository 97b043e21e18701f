// SPDX-License-Identifier: MIT
// truss: shell
#pragma once

#include <kel/log_kel.h>

namespace truss
{
/// Prints information on standard output, warnings and errors on standard error; an error takes exactly one line.
class ConsoleLog : public Kel::Log
{
public:
    using Kel::Log::append;

    void append(const Ztring& text, Message::Type type) override;
};
} // namespace truss
