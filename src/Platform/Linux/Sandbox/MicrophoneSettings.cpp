#include "Platform/Linux/Sandbox/MicrophoneSettings.h"

#include "Platform/Linux/Applications/ApplicationAddress.h"

#include <QStringList>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

struct DesktopPages
{
    QString desktop;
    QStringList identifiers; // of desktop entries, those of other versions too, the best first
};

const QList<DesktopPages> &pagesByDesktop()
{
    static const QList<DesktopPages> pages{
        {u"GNOME"_s,
         {u"gnome-microphone-panel"_s, u"gnome-privacy-panel"_s, u"gnome-sound-panel"_s}},
        {u"KDE"_s, {u"kcm_pulseaudio"_s, u"systemsettings"_s}},
        {u"X-Cinnamon"_s, {u"cinnamon-settings-sound"_s}},
        {u"MATE"_s, {u"mate-volume-control"_s}},
        {u"Budgie"_s, {u"budgie-microphone-panel"_s, u"budgie-sound-panel"_s}},
        {u"LXQt"_s, {u"pavucontrol-qt"_s}},
        // Xfce has no page of its own: its panel opens this mixer, which suits the others too.
        {u"XFCE"_s, {u"org.pulseaudio.pavucontrol"_s, u"pavucontrol"_s}},
    };
    return pages;
}

} // namespace

QList<QUrl> microphoneSettingsPages(const QString &currentDesktop)
{
    QStringList identifiers;
    for (const QString &running : currentDesktop.split(u':')) {
        for (const DesktopPages &pages : pagesByDesktop()) {
            if (running.compare(pages.desktop, Qt::CaseInsensitive) == 0)
                identifiers += pages.identifiers;
        }
    }
    for (const DesktopPages &pages : pagesByDesktop())
        identifiers += pages.identifiers;
    identifiers.removeDuplicates();

    QList<QUrl> addresses;
    for (const QString &identifier : identifiers)
        addresses.append(applicationAddress(identifier));
    return addresses;
}

} // namespace kestrova
