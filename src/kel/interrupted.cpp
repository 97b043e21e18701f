// SPDX-License-Identifier: MIT
// libkel: Tasks and progress
#include <kel/interrupted.h>

Interrupted::Interrupted() : Problem(Ztring::emptyZtring) {}
