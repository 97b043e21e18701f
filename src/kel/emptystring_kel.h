// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

#include <kel/kelapi.h>

#include <string>

namespace Kel
{
/// The shared empty byte string: what a function returns by reference when it has no bytes to give.
KEL_API extern const std::string emptyString;
} // namespace Kel
