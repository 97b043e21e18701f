// SPDX-License-Identifier: MIT
// libkel: Foundations
#pragma once

/// Marks what the shared library exports; everything else in it is hidden.
#define KEL_API __attribute__((visibility("default")))
