#include "Platform/Linux/Sandbox/MicrophoneSettings.h"

#include "Platform/Linux/Applications/ApplicationAddress.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

QStringList pages(const QString &currentDesktop)
{
    QStringList identifiers;
    for (const QUrl &page : microphoneSettingsPages(currentDesktop)) {
        EXPECT_TRUE(page.isValid());
        identifiers.append(applicationAt(page).value_or(u"not an application"_s));
    }
    return identifiers;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

TEST(MicrophoneSettings, ThePagesOfTheRunningDesktopComeFirst)
{
    EXPECT_EQ(pages(u"GNOME"_s).first(), u"gnome-microphone-panel"_s);
    EXPECT_EQ(pages(u"ubuntu:GNOME"_s).first(), u"gnome-microphone-panel"_s);
    EXPECT_EQ(pages(u"KDE"_s).first(), u"kcm_pulseaudio"_s);
    EXPECT_EQ(pages(u"X-Cinnamon"_s).first(), u"cinnamon-settings-sound"_s);
    EXPECT_EQ(pages(u"MATE"_s).first(), u"mate-volume-control"_s);
    EXPECT_EQ(pages(u"lxqt"_s).first(), u"pavucontrol-qt"_s);
    EXPECT_EQ(pages(u"XFCE"_s).mid(0, 2), pages(QString()).last(2));
}

TEST(MicrophoneSettings, ADesktopThatBuildsOnAnotherHasItsOwnPagesBeforeThose)
{
    EXPECT_EQ(pages(u"Budgie:GNOME"_s).mid(0, 5),
              QStringList({u"budgie-microphone-panel"_s, u"budgie-sound-panel"_s,
                           u"gnome-microphone-panel"_s, u"gnome-privacy-panel"_s,
                           u"gnome-sound-panel"_s}));
}

TEST(MicrophoneSettings, EveryPageIsThereOnceAndTheMixerForAllDesktopsIsLast)
{
    const QStringList everywhere = pages(QString());
    EXPECT_EQ(everywhere.last(), u"pavucontrol"_s);
    EXPECT_EQ(QStringList(everywhere.begin(), everywhere.end()).removeDuplicates(), 0);
    for (const QString &desktop : {u"GNOME"_s, u"KDE"_s, u"Budgie:GNOME"_s, u"unheard of"_s}) {
        EXPECT_EQ(pages(desktop).last(), u"pavucontrol"_s);
        EXPECT_EQ(sorted(pages(desktop)), sorted(everywhere));
    }
}

TEST(ApplicationAddress, NamesAnApplicationAndNothingElse)
{
    EXPECT_EQ(applicationAt(applicationAddress(u"org.example.Two words"_s)),
              u"org.example.Two words"_s);
    for (const QString &other : {u"application:"_s, u"https://example.org"_s, u"x"_s, QString()})
        EXPECT_EQ(applicationAt(QUrl(other)), std::nullopt) << qPrintable(other);
}

} // namespace
} // namespace kestrova
