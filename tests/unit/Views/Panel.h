#pragma once

#include "Views/Tray/TrayItem.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>

namespace kestrova {

/// A panel with a tray at the bottom of the screen. Ends with this object.
class Panel
{
public:
    ~Panel()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Whether the panel has come up, in this colour, and has taken the icon in.
    bool start(const TrayItem &trayItem, const QByteArray &color = "#202428")
    {
        QFile usual(qEnvironmentVariable("KESTROVA_TRAY_CONFIG"));
        QFile own(m_folder.filePath(QStringLiteral("tint2rc")));
        if (!usual.open(QIODevice::ReadOnly) || !own.open(QIODevice::WriteOnly))
            return false;
        own.write(usual.readAll().replace("#202428", color));
        own.close();
        m_process.start(QStringLiteral("tint2"), {QStringLiteral("-c"), own.fileName()});
        return waitUntil([&] {
            const QRect workArea = QGuiApplication::primaryScreen()->availableGeometry();
            return trayItem.geometry().top() > workArea.bottom();
        });
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};

} // namespace kestrova
