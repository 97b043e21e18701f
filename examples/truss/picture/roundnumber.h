// SPDX-License-Identifier: MIT
// truss: picture
#pragma once

namespace truss
{
/// The numbers that are easy to read off a drawing: 1, 2 and 5 times powers of ten.
class RoundNumber
{
public:
    RoundNumber() = delete;

    /// The largest that is not above the value, which is positive and finite; here and below.
    static double below(double value);
    /// The smallest that is not below the value.
    static double above(double value);
};
} // namespace truss
