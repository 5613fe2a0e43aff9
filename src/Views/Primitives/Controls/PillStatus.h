#pragma once

#include "Views/Primitives/Theme/Tones.h"

#include <QString>

namespace kestrova {

/// What a status pill says, and how severe it is.
struct PillStatus
{
    Q_GADGET
    QML_VALUE_TYPE(pillStatus)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(StatusPillTone::Value tone MEMBER tone)
    Q_PROPERTY(QString icon MEMBER icon)

public:
    QString text;
    StatusPillTone::Value tone = StatusPillTone::Neutral;
    QString icon; ///< name of a symbol; empty for none

    /// Something is as it has to be.
    static PillStatus success(const QString &text)
    {
        return {text, StatusPillTone::Success, QStringLiteral("checkmark")};
    }
    /// Something is missing.
    static PillStatus warning(const QString &text)
    {
        return {text, StatusPillTone::Warning, QStringLiteral("exclamationmark")};
    }
    bool operator==(const PillStatus &) const = default;
};

} // namespace kestrova
