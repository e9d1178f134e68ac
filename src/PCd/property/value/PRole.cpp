// SPDX-License-Identifier: MIT
#include <PCd/property/value/PRole.h>

#include <cmath>

// Division, where it is one, is exact for the decimal fractions that people know; a multiplication
// with 0.001 is not.
double PRoleBinding::toRole(double number) const {
    switch (unit) {
    case PRoleUnit::Own:
    case PRoleUnit::Milliseconds:
        break;
    case PRoleUnit::Microseconds:
        return number / 1000;
    case PRoleUnit::Seconds:
        return number * 1000;
    case PRoleUnit::Minutes:
        return number * 60'000;
    case PRoleUnit::Percent:
        return number / 100;
    case PRoleUnit::Decibels:
        return std::pow(10, number / 20);
    case PRoleUnit::TenthsOfDegree:
        return number / 10;
    }
    return number;
}
