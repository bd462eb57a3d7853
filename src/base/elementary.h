// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Exponential and power whose last digit does not depend on the machine: plain IEEE double operations
/// without contraction, no call of the C library's versions, which differ between processors with and without
/// FMA. They assume rounding to nearest. Ordinary arguments raise no overflow, divide-by-zero or invalid
/// flag.
namespace torvik::base {

/// e^x, within 0.51 ulp. Overflow gives +infinity and raises the overflow flag; far below, 0.
double exponential(double x);

/// base^exponent, within 0.51 ulp, with the special cases of the C standard's pow and their flags:
/// divide-by-zero for 0 to a negative power, invalid for a negative base with an exponent that is no integer,
/// overflow. An integer exponent of 0, 1 or 2 gives 1, base and base * base exactly as rounded once; 3 the
/// cube, too, where base lies between 2^-300 and 2^300.
double power(double base, double exponent);

}  // namespace torvik::base
