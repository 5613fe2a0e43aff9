#pragma once

#include <QByteArrayView>

#include <optional>

namespace kestrova {

/// The virtual key code (as in HotkeyShortcut) of the key at a position of the keyboard. XKB names
/// the keys by position, so this holds in every layout. None for positions that a Macintosh
/// keyboard does not have.
std::optional<quint32> virtualKeyCode(QByteArrayView xkbKeyName);

} // namespace kestrova
