#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>

namespace kestrova {

/// A key with its modifiers, in the numbers in which shortcuts are stored.
struct HotkeyShortcut
{
    /// Modifier bits of the classic Carbon event layout. Other bits are carried along and ignored.
    enum Modifier : quint32 {
        command = 256,
        shift = 512,
        option = 2048,
        control = 4096,
    };
    static constexpr quint32 allModifiers = command | shift | option | control;

    quint32 keyCode = 0; ///< virtual key code of the macOS keyboard (by physical position)
    quint32 modifiers = 0;

    bool has(Modifier modifier) const { return (modifiers & modifier) != 0; }

    /// The signs ⌘ ⇧ ⌥ ⌃ of the modifiers that are set, in this order, then the key's name.
    QString displayText() const;

    /// Command+Shift+Space.
    static HotkeyShortcut defaultMain();
    /// Command+Option+digit for the slots 1 to 9; none for any other number.
    static std::optional<HotkeyShortcut> defaultHotbarNumber(int slotIndex);

    /// Throws JsonDecodingError unless both keys hold whole numbers of 32 bits.
    static HotkeyShortcut fromJson(const QJsonObject &object);
    QJsonObject toJson() const;

    bool operator==(const HotkeyShortcut &) const = default;

private:
    QString keyDisplayName() const;
};

} // namespace kestrova
