#pragma once

#include <QString>

#include <xkbcommon/xkbcommon.h>

#include <vector>

namespace kestrova {

/// A keystroke by which an application pastes: the modifiers are pressed first, then the key.
struct PasteChord
{
    std::vector<xkb_keysym_t> modifiers;
    xkb_keysym_t key;

    bool operator==(const PasteChord &) const = default;
};

/// The chords that make an application paste CLIPBOARD or, terminals, PRIMARY; the best first,
/// the next for a keyboard that lacks its key. Takes the second part of the focused window's
/// WM_CLASS (its class); upper and lower case are alike. docs/paste-chords.md tells what was
/// measured.
std::vector<PasteChord> pasteChords(const QString &windowClass);

} // namespace kestrova
