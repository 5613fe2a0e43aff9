#pragma once

#include "Views/Primitives/Controls/PillStatus.h"

namespace kestrova {

/// One line of the list of what a dictation needs.
struct SetupStep
{
    Q_GADGET
    QML_VALUE_TYPE(setupStep)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString detail MEMBER detail CONSTANT)
    Q_PROPERTY(bool isComplete MEMBER isComplete CONSTANT)
    Q_PROPERTY(kestrova::PillStatus status READ status CONSTANT)

public:
    QString title;
    QString detail;
    bool isComplete = false;

    PillStatus status() const
    {
        return isComplete ? PillStatus::success(QStringLiteral("Ready"))
                          : PillStatus::warning(QStringLiteral("Pending"));
    }

    bool operator==(const SetupStep &) const = default;
};

} // namespace kestrova
