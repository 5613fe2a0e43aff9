#pragma once

#include "Models/Dictation/WhisperDecodingProfile.h"
#include "Models/Settings/AppTheme.h"
#include "Models/Settings/HotbarSlotAssignment.h"

#include <QByteArray>
#include <QList>

namespace kestrova {

/// All user settings, always read and written whole.
/// After decoding and after each setter, hotbarAssignments holds exactly the slots 1 to 9 in order.
struct AppSettings
{
    HotkeyShortcut shortcut;
    QString whisperCLIPath;
    QString modelDownloadURL;
    QString modelSHA256; ///< empty: downloads are not checked
    QString transcriptionLanguage;
    WhisperDecodingProfile decodingProfile = WhisperDecodingProfile::balanced;
    AppTheme theme = AppTheme::light;
    QList<HotbarSlotAssignment> hotbarAssignments;

    /// What a new user starts with; built once.
    static const AppSettings &defaults();
    /// Slots 1 to 9, each without application, name and shortcut.
    static QList<HotbarSlotAssignment> defaultHotbarAssignments();
    /// Exactly the slots 1 to 9 in order: the last entry of a number wins, missing ones are empty,
    /// numbers outside 1 to 9 are dropped.
    static QList<HotbarSlotAssignment>
    normalizedHotbarAssignments(const QList<HotbarSlotAssignment> &assignments);

    /// The first entry of this number, else an empty one carrying the number (range not checked).
    HotbarSlotAssignment assignment(qint64 slotIndex) const;
    /// The slot's own shortcut, else its default one. Outside 1 to 9: an entry's own, or none.
    std::optional<HotkeyShortcut> hotbarShortcut(int slotIndex) const;
    /// Empty strings count as none; the slot keeps its shortcut. Outside 1 to 9: no change.
    void setHotbarAssignment(qint64 slotIndex, const std::optional<QString> &bundleIdentifier,
                             const std::optional<QString> &appName);
    /// None restores the default shortcut; the slot keeps its application. Outside 1 to 9: no
    /// change.
    void setHotbarShortcut(qint64 slotIndex, const std::optional<HotkeyShortcut> &shortcut);

    /// Strict: a missing required key, a wrong type or an unknown raw value throws
    /// JsonDecodingError; unknown keys are ignored.
    static AppSettings fromJson(const QByteArray &document);
    /// Compact UTF-8 JSON.
    QByteArray toJson() const;

    bool operator==(const AppSettings &) const = default;

private:
    void replaceSlot(const HotbarSlotAssignment &slot);
};

} // namespace kestrova
