#include "Platform/Linux/X11/Keys/VirtualKeyCodes.h"

#include <algorithm>
#include <iterator>

namespace kestrova {

namespace {

struct KeyPosition
{
    const char *xkbName;
    quint32 virtualKeyCode;
};

// Row by row, then the function row, then the blocks to the right. Names as in the "evdev" key
// codes of xkeyboard-config. Keys that a Macintosh keyboard lacks have the code of the one in their
// place: Print Screen is F13, Num Lock is Clear, Insert is Help.
constexpr KeyPosition positions[] = {
    {"TLDE", 50},  {"AE01", 18},  {"AE02", 19},  {"AE03", 20},  {"AE04", 21},  {"AE05", 23},
    {"AE06", 22},  {"AE07", 26},  {"AE08", 28},  {"AE09", 25},  {"AE10", 29},  {"AE11", 27},
    {"AE12", 24},  {"AE13", 93},  {"BKSP", 51},  {"TAB", 48},   {"AD01", 12},  {"AD02", 13},
    {"AD03", 14},  {"AD04", 15},  {"AD05", 17},  {"AD06", 16},  {"AD07", 32},  {"AD08", 34},
    {"AD09", 31},  {"AD10", 35},  {"AD11", 33},  {"AD12", 30},  {"BKSL", 42},  {"CAPS", 57},
    {"AC01", 0},   {"AC02", 1},   {"AC03", 2},   {"AC04", 3},   {"AC05", 5},   {"AC06", 4},
    {"AC07", 38},  {"AC08", 40},  {"AC09", 37},  {"AC10", 41},  {"AC11", 39},  {"AC12", 42},
    {"RTRN", 36},  {"LFSH", 56},  {"LSGT", 10},  {"AB01", 6},   {"AB02", 7},   {"AB03", 8},
    {"AB04", 9},   {"AB05", 11},  {"AB06", 45},  {"AB07", 46},  {"AB08", 43},  {"AB09", 47},
    {"AB10", 44},  {"AB11", 94},  {"RTSH", 60},  {"LCTL", 59},  {"LWIN", 55},  {"LALT", 58},
    {"MUHE", 102}, {"SPCE", 49},  {"HENK", 104}, {"RALT", 61},  {"RWIN", 54},  {"COMP", 110},
    {"MENU", 110}, {"RCTL", 62},  {"ESC", 53},   {"FK01", 122}, {"FK02", 120}, {"FK03", 99},
    {"FK04", 118}, {"FK05", 96},  {"FK06", 97},  {"FK07", 98},  {"FK08", 100}, {"FK09", 101},
    {"FK10", 109}, {"FK11", 103}, {"FK12", 111}, {"FK13", 105}, {"FK14", 107}, {"FK15", 113},
    {"FK16", 106}, {"FK17", 64},  {"FK18", 79},  {"FK19", 80},  {"FK20", 90},  {"PRSC", 105},
    {"SCLK", 107}, {"PAUS", 113}, {"INS", 114},  {"HOME", 115}, {"PGUP", 116}, {"DELE", 117},
    {"END", 119},  {"PGDN", 121}, {"UP", 126},   {"LEFT", 123}, {"DOWN", 125}, {"RGHT", 124},
    {"NMLK", 71},  {"KPDV", 75},  {"KPMU", 67},  {"KPSU", 78},  {"KP7", 89},   {"KP8", 91},
    {"KP9", 92},   {"KPAD", 69},  {"KP4", 86},   {"KP5", 87},   {"KP6", 88},   {"JPCM", 95},
    {"KP1", 83},   {"KP2", 84},   {"KP3", 85},   {"KPEN", 76},  {"KPEQ", 81},  {"KP0", 82},
    {"KPDL", 65},  {"MUTE", 74},  {"VOL-", 73},  {"VOL+", 72},
};

} // namespace

std::optional<quint32> virtualKeyCode(QByteArrayView xkbKeyName)
{
    const auto *const found =
        std::find_if(std::begin(positions), std::end(positions),
                     [&](const KeyPosition &position) { return xkbKeyName == position.xkbName; });
    if (found == std::end(positions))
        return std::nullopt;
    return found->virtualKeyCode;
}

} // namespace kestrova
