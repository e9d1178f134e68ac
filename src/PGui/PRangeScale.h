// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>
#include <PCore/PMinMaxRange.h>

/// The values of a range, and their positions on a slider. Values are minimum + k * step, and the
/// maximum, which is always reachable. Positions are whole numbers from 0; they are spaced
/// logarithmically where the range is positive and spans three decades or more. A value type; any
/// thread.
class PCD_EXPORT PRangeScale {
public:
    /// A maximum below the minimum counts as the minimum, and a step that is not positive as a
    /// hundredth of the range.
    explicit PRangeScale(const PMinMaxRange<double>& range = {0, 100, 1});

    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    /// Decimals needed for the values of the range; at most six.
    int decimals() const { return m_decimals; }
    /// The decimals of any number, at most six: 2 for 0.25.
    static int countDecimals(double number);

    /// The nearest value of the range.
    double snapped(double value) const;
    /// The value some steps up or down (count < 0), limited to the range; a step away from the
    /// range changes nothing. On a logarithmic scale a step is a tenth of the value's decade.
    double stepped(double value, int count) const;

    /// The highest position.
    int lastPosition() const { return m_lastPosition; }
    /// True if there are fewer positions than values.
    bool skipsValues() const;
    /// The value at a position; the first and last positions are exactly the ends.
    double valueAt(int position) const;
    /// The position of a value; the first and last only for the ends and values beyond them.
    int toPosition(double value) const;

    friend bool operator==(const PRangeScale& a, const PRangeScale& b) {
        return a.m_minimum == b.m_minimum && a.m_maximum == b.m_maximum && a.m_step == b.m_step;
    }

private:
    double stepCount() const;
    double stepUp(double value) const;
    double stepDown(double value) const;
    double stepNear(double value) const;
    double rounded(double value) const;

    double m_minimum;
    double m_maximum;
    double m_step;
    bool m_logarithmic;
    int m_decimals;
    int m_lastPosition;
};
