#pragma once

#include <QStringList>

namespace kestrova {

/// The y axis of a chart of counts: from 0 in equal steps of 1, 2, 2.5 or 5 times a power of ten,
/// always whole numbers.
struct ValueAxis
{
    double step = 1;
    int stepCount = 1;

    /// Three to five steps that reach the value; 0 and 1 alone when it is 0 or less.
    static ValueAxis reaching(double most);

    double top() const { return step * stepCount; }
    /// The text of each line, from 0 to the top.
    QStringList labels() const;

    bool operator==(const ValueAxis &) const = default;
};

} // namespace kestrova
