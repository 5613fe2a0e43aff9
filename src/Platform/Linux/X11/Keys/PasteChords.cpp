#include "Platform/Linux/X11/Keys/PasteChords.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

const PasteChord shiftInsert{{XKB_KEY_Shift_L}, XKB_KEY_Insert};
const PasteChord controlV{{XKB_KEY_Control_L}, XKB_KEY_v};
const PasteChord controlShiftV{{XKB_KEY_Control_L, XKB_KEY_Shift_L}, XKB_KEY_v};
const PasteChord controlY{{XKB_KEY_Control_L}, XKB_KEY_y};

struct Row
{
    QLatin1StringView windowClass;
    std::vector<PasteChord> chords;
};

// Who takes Ctrl+V for something else: terminals hand it to the program inside, Emacs scrolls.
const std::array rows{
    Row{"xterm"_L1, {shiftInsert}},
    Row{"uxterm"_L1, {shiftInsert}},
    // Asks before it pastes several lines by its second chord.
    Row{"xfce4-terminal"_L1, {shiftInsert, controlShiftV}},
    Row{"gnome-terminal"_L1, {shiftInsert, controlShiftV}},
    Row{"konsole"_L1, {shiftInsert, controlShiftV}},
    Row{"emacs"_L1, {shiftInsert, controlY}},
};

} // namespace

std::vector<PasteChord> pasteChords(const QString &windowClass)
{
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row &candidate) {
        return windowClass.compare(candidate.windowClass, Qt::CaseInsensitive) == 0;
    });
    return row == rows.end() ? std::vector{shiftInsert, controlV} : row->chords;
}

} // namespace kestrova
