#include "Models/Settings/HotkeyShortcut.h"

#include "Models/Json/JsonObjectReader.h"

#include <array>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 spaceKeyCode = 49;

// Key codes of the digits 1 to 9: their numeric order is not that of the digits.
constexpr std::array<quint32, 9> digitKeyCodes{18, 19, 20, 21, 23, 22, 26, 28, 25};

struct KeyName
{
    quint32 keyCode;
    const char *name;
};

// Punctuation and the key left of Z (10) have no name on purpose: they depend on the layout.
constexpr KeyName keyNames[] = {
    {0, "A"},      {1, "S"},       {2, "D"},      {3, "F"},       {4, "H"},    {5, "G"},
    {6, "Z"},      {7, "X"},       {8, "C"},      {9, "V"},       {11, "B"},   {12, "Q"},
    {13, "W"},     {14, "E"},      {15, "R"},     {16, "Y"},      {17, "T"},   {18, "1"},
    {19, "2"},     {20, "3"},      {21, "4"},     {22, "6"},      {23, "5"},   {25, "9"},
    {26, "7"},     {28, "8"},      {29, "0"},     {31, "O"},      {32, "U"},   {34, "I"},
    {35, "P"},     {36, "Return"}, {37, "L"},     {38, "J"},      {40, "K"},   {45, "N"},
    {46, "M"},     {48, "Tab"},    {49, "Space"}, {51, "Delete"}, {53, "Esc"}, {117, "FnDelete"},
    {123, "Left"}, {124, "Right"}, {125, "Down"}, {126, "Up"},
};

} // namespace

QString HotkeyShortcut::displayText() const
{
    QString text;
    if (has(command))
        text += u'⌘';
    if (has(shift))
        text += u'⇧';
    if (has(option))
        text += u'⌥';
    if (has(control))
        text += u'⌃';
    return text + keyDisplayName();
}

QString HotkeyShortcut::keyDisplayName() const
{
    for (const KeyName &entry : keyNames) {
        if (entry.keyCode == keyCode)
            return QString::fromLatin1(entry.name);
    }
    return u"Key "_s + QString::number(keyCode);
}

HotkeyShortcut HotkeyShortcut::defaultMain()
{
    return {spaceKeyCode, command | shift};
}

std::optional<HotkeyShortcut> HotkeyShortcut::defaultHotbarNumber(int slotIndex)
{
    if (slotIndex < 1 || slotIndex > int(digitKeyCodes.size()))
        return std::nullopt;
    return HotkeyShortcut{digitKeyCodes[std::size_t(slotIndex - 1)], command | option};
}

HotkeyShortcut HotkeyShortcut::fromJson(const QJsonObject &object)
{
    const JsonObjectReader reader(object);
    const quint32 keyCode = reader.uint32("keyCode"_L1);
    return {keyCode, reader.uint32("modifiers"_L1)};
}

QJsonObject HotkeyShortcut::toJson() const
{
    return {{"keyCode"_L1, qint64(keyCode)}, {"modifiers"_L1, qint64(modifiers)}};
}

} // namespace kestrova
