// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/rule.h>

Rule::~Rule() = default;
