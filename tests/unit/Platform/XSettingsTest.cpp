#include "Platform/Linux/X11/Windows/XSettings.h"

#include "support/XSettingsProperty.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using Settings = QHash<QByteArray, QVariant>;

QByteArray sample(QDataStream::ByteOrder order = QDataStream::LittleEndian)
{
    return XSettingsProperty(order)
        .integer("Gtk/EnableAnimations", 0)
        .color("Net/Colour", 0x1234)
        .text("Net/ThemeName", "HighContrast")
        .integer("Xft/DPI", -1)
        .bytes();
}

const Settings sampleSettings = {
    {"Gtk/EnableAnimations", 0}, {"Net/ThemeName", QByteArray("HighContrast")}, {"Xft/DPI", -1}};

TEST(XSettings, NumbersAndTextsAreReadInEitherByteOrder)
{
    EXPECT_EQ(xSettings(sample()), sampleSettings);
    EXPECT_EQ(xSettings(sample(QDataStream::BigEndian)), sampleSettings);
}

TEST(XSettings, AnEmptyTextIsAText)
{
    const Settings settings = xSettings(XSettingsProperty().text("Net/ThemeName", "").bytes());
    EXPECT_EQ(settings, (Settings{{"Net/ThemeName", QByteArray("")}}));
}

TEST(XSettings, APropertyThatIsCutOffAnywhereHoldsNothing)
{
    const QByteArray whole = sample();
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_EQ(xSettings(whole.first(length)), Settings()) << length;
}

TEST(XSettings, AnUnknownTypeOrAnAbsurdLengthSpoilsTheProperty)
{
    QByteArray unknownType = sample();
    unknownType[12] = 3;
    EXPECT_EQ(xSettings(unknownType), Settings());

    QByteArray longName = sample();
    longName[15] = '\xFF';
    EXPECT_EQ(xSettings(longName), Settings());

    QByteArray manySettings = sample();
    manySettings[11] = '\xFF';
    EXPECT_EQ(xSettings(manySettings), Settings());
}

} // namespace
} // namespace kestrova
