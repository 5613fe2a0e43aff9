#include "App/WindowsLibrary.h"

#include <QCoreApplication>
#include <QLibrary>

namespace kestrova {

using namespace Qt::StringLiterals;

std::unique_ptr<Windows> loadWindows(AppController &controller, Platform &platform,
                                     TrayItem &trayItem)
{
    QLibrary library(QCoreApplication::applicationDirPath() + u"/kestrova-windows"_s);
    const auto makeWindows = reinterpret_cast<MakeWindows *>(library.resolve(makeWindowsSymbol));
    if (!makeWindows)
        qFatal("%s", qUtf8Printable(library.errorString()));
    return std::unique_ptr<Windows>(makeWindows(controller, platform, trayItem));
}

} // namespace kestrova
