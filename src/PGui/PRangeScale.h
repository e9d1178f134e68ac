// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PMinMaxRange.h>

/// The values of a range, and where they lie on a slider. Values are minimum + k * step, and the
/// maximum, which is always reachable. Positions are whole numbers from 0; they are spaced
/// logarithmically where the range is positive and spans three decades or more. A value; any
/// thread.
class PRangeScale {
public:
    /// A maximum below the minimum counts as the minimum; a step that is not positive as a
    /// hundredth of the range.
    explicit PRangeScale(const PMinMaxRange<double>& range = {0, 100, 1});

    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    /// Decimals that values of the range need; six at most.
    int decimals() const { return m_decimals; }
    /// The decimals of any number, six at most: 2 for 0.25.
    static int countDecimals(double number);

    /// The value of the range that is nearest.
    double snapped(double value) const;
    /// The value some steps up or down (count < 0), staying inside; never back into the range when
    /// going away from it. On a logarithmic scale a step is a tenth of the value's decade.
    double stepped(double value, int count) const;

    /// The last position.
    int lastPosition() const { return m_lastPosition; }
    /// True if positions are too few for all values.
    bool skipsValues() const;
    /// The value at a position; the first and last positions are exactly the ends.
    double valueAt(int position) const;
    /// The position of a value; the first and last only for the ends and what is beyond.
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
