// SPDX-License-Identifier: MIT
// truss: picture
#include "truss/picture/roundnumber.h"

#include <cmath>

namespace truss
{
namespace
{
double powerOfTenBelow(double value)
{
    return std::pow(10, std::floor(std::log10(value)));
}
} // namespace

double RoundNumber::below(double value)
{
    const double power = powerOfTenBelow(value);
    const double digits = value / power;
    return power * (digits >= 5 ? 5 : digits >= 2 ? 2 : 1);
}

double RoundNumber::above(double value)
{
    const double power = powerOfTenBelow(value);
    const double digits = value / power;
    return power * (digits > 5 ? 10 : digits > 2 ? 5 : digits > 1 ? 2 : 1);
}
} // namespace truss
