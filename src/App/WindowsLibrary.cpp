#include "App/WindowsLibrary.h"

#include "Models/ReadableError.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibrary>

#include <InterfaceStamp.h>
#include <link.h>

#include <cstring>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// The section headers are the last of a file that a linker has written.
bool isWhole(const QByteArray &library)
{
    ElfW(Ehdr) header = {};
    if (library.size() < qsizetype(sizeof header))
        return false;
    std::memcpy(&header, library.constData(), sizeof header);
    const auto end = header.e_shoff + ElfW(Off)(header.e_shnum) * header.e_shentsize;
    return end <= ElfW(Off)(library.size());
}

void check(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw PlatformError(
            u"A part of Kestrova is missing. Install Kestrova again.\n(%1: %2)"_s.arg(
                path, file.errorString()));
    const QByteArray library = file.readAll();
    if (!isWhole(library) || !library.contains(KESTROVA_INTERFACE_STAMP)) {
        throw PlatformError(
            u"Kestrova has been updated since it was started. Quit it and start it "
            "again.\n(%1 is of another version than the program that runs.)"_s.arg(path));
    }
}

} // namespace

std::unique_ptr<Windows> loadWindows(AppController &controller, Platform &platform,
                                     TrayItem &trayItem)
{
    const QString path = QCoreApplication::applicationDirPath() + u"/kestrova-windows.so"_s;
    check(path);
    QLibrary library(path);
    const auto makeWindows = reinterpret_cast<MakeWindows *>(library.resolve(makeWindowsSymbol));
    if (!makeWindows)
        throw PlatformError(library.errorString());
    return std::unique_ptr<Windows>(makeWindows(controller, platform, trayItem));
}

} // namespace kestrova
