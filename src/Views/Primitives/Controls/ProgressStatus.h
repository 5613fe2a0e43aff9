#pragma once

#include <QObject>
#include <qqmlregistration.h>

namespace kestrova {

/// How far long work has come, worded. The default: nothing is known.
struct ProgressStatus
{
    Q_GADGET
    QML_VALUE_TYPE(progressStatus)
    Q_PROPERTY(QString amount MEMBER amount)
    Q_PROPERTY(QString percentage MEMBER percentage)
    Q_PROPERTY(double fraction MEMBER fraction)

public:
    QString amount;       ///< "62 MB of 148 MB"; the size alone while the total is not known
    QString percentage;   ///< "42%"; empty while the total is not known
    double fraction = -1; ///< 0 to 1; below 0 while the total is not known

    bool operator==(const ProgressStatus &) const = default;
};

} // namespace kestrova
