// SPDX-License-Identifier: MIT
#include <PCd/property/value/PRole.h>

#include <cmath>

// Dividing by 1000 gives the double nearest to the decimal fraction; multiplying by 0.001 does not.
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
