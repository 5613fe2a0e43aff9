#pragma once

#include <QObject>
#include <qqmlregistration.h>

namespace kestrova {

/// The totals of one time range, worded.
struct UsageCard
{
    Q_GADGET
    QML_VALUE_TYPE(usageCard)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString recordings MEMBER recordings CONSTANT)
    Q_PROPERTY(QString words MEMBER words CONSTANT)
    Q_PROPERTY(QString minutes MEMBER minutes CONSTANT)

public:
    QString title;
    QString recordings;
    QString words;
    QString minutes;

    bool operator==(const UsageCard &) const = default;
};

/// A name with its count and a bar.
struct UsageRow
{
    Q_GADGET
    QML_VALUE_TYPE(usageRow)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString count MEMBER count CONSTANT)
    Q_PROPERTY(double share MEMBER share CONSTANT)

public:
    QString name;
    QString count;
    double share = 0; ///< length of the bar, of the longest one in the list

    bool operator==(const UsageRow &) const = default;
};

/// One slot of the hotbar.
struct HotbarSlotRow
{
    Q_GADGET
    QML_VALUE_TYPE(hotbarSlotRow)
    Q_PROPERTY(int slotIndex MEMBER slotIndex CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString appName MEMBER appName CONSTANT)
    Q_PROPERTY(QString initial MEMBER initial CONSTANT)
    Q_PROPERTY(QString shortcut MEMBER shortcut CONSTANT)
    Q_PROPERTY(QString shortcutHint MEMBER shortcutHint CONSTANT)
    Q_PROPERTY(bool isAssigned MEMBER isAssigned CONSTANT)

public:
    int slotIndex = 0;
    QString title;
    QString appName;
    QString initial; ///< of the application; empty when there is none
    QString shortcut;
    QString shortcutHint; ///< why it cannot be typed; empty when it can
    bool isAssigned = false;

    bool operator==(const HotbarSlotRow &) const = default;
};

} // namespace kestrova
