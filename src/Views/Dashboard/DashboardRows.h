#pragma once

#include <QObject>

namespace kestrova {

/// The totals of one time range, worded.
struct UsageCard
{
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString recordings MEMBER recordings)
    Q_PROPERTY(QString words MEMBER words)
    Q_PROPERTY(QString minutes MEMBER minutes)

public:
    QString title;
    QString recordings;
    QString words;
    QString minutes;
};

/// A name with its count and a bar.
struct UsageRow
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString count MEMBER count)
    Q_PROPERTY(double share MEMBER share)

public:
    QString name;
    QString count;
    double share = 0; ///< length of the bar, of the longest one in the list
};

/// One slot of the hotbar.
struct HotbarSlotRow
{
    Q_GADGET
    Q_PROPERTY(int slotIndex MEMBER slotIndex)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString appName MEMBER appName)
    Q_PROPERTY(QString initial MEMBER initial)
    Q_PROPERTY(QString shortcut MEMBER shortcut)
    Q_PROPERTY(QString shortcutHint MEMBER shortcutHint)
    Q_PROPERTY(bool isAssigned MEMBER isAssigned)

public:
    int slotIndex = 0;
    QString title;
    QString appName;
    QString initial; ///< of the application; empty when there is none
    QString shortcut;
    QString shortcutHint; ///< why it cannot be typed; empty when it can
    bool isAssigned = false;
};

} // namespace kestrova
