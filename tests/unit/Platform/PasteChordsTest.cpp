#include "Platform/Linux/X11/Keys/PasteChords.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

const PasteChord shiftInsert{{XKB_KEY_Shift_L}, XKB_KEY_Insert};
const PasteChord controlV{{XKB_KEY_Control_L}, XKB_KEY_v};
const PasteChord controlShiftV{{XKB_KEY_Control_L, XKB_KEY_Shift_L}, XKB_KEY_v};
const PasteChord controlY{{XKB_KEY_Control_L}, XKB_KEY_y};

TEST(PasteChords, AnApplicationWithoutARowTakesShiftInsertElseControlV)
{
    EXPECT_THAT(pasteChords(u"Mousepad"_s), ElementsAre(shiftInsert, controlV));
    EXPECT_THAT(pasteChords(QString()), ElementsAre(shiftInsert, controlV));
}

TEST(PasteChords, ATerminalNeverGetsControlV)
{
    EXPECT_THAT(pasteChords(u"XTerm"_s), ElementsAre(shiftInsert));
    EXPECT_THAT(pasteChords(u"Xfce4-terminal"_s), ElementsAre(shiftInsert, controlShiftV));
}

TEST(PasteChords, EmacsYanks)
{
    EXPECT_THAT(pasteChords(u"Emacs"_s), ElementsAre(shiftInsert, controlY));
}

} // namespace
} // namespace kestrova
