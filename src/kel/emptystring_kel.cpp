// SPDX-License-Identifier: MIT
// libkel: Foundations
#include <kel/emptystring_kel.h>

const std::string Kel::emptyString;
