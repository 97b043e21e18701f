// SPDX-License-Identifier: MIT
// libkel: Object model
#include <kel/usecounter.h>

UseCounter::~UseCounter() = default;
