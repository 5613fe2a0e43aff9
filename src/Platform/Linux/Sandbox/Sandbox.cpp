#include "Platform/Linux/Sandbox/Sandbox.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <glib.h>

#include <memory>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

struct FreeKeyFile
{
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
};

QString value(GKeyFile *file, const char *group, const char *key)
{
    char *const text = g_key_file_get_string(file, group, key, nullptr);
    const QString result = QString::fromUtf8(text);
    g_free(text);
    return result;
}

std::optional<Sandbox> flatpak(const QString &infoPath)
{
    const std::unique_ptr<GKeyFile, FreeKeyFile> info(g_key_file_new());
    if (!g_key_file_load_from_file(info.get(), QFile::encodeName(infoPath).constData(),
                                   G_KEY_FILE_NONE, nullptr))
        return std::nullopt;
    const QStringList sockets = value(info.get(), "Context", "sockets").split(u';');
    return Sandbox{Sandbox::Kind::flatpak, value(info.get(), "Application", "name"),
                   sockets.contains(u"pulseaudio"_s)};
}

std::optional<Sandbox> snap(const SandboxSigns &signs)
{
    const QString folder = signs.environment.value(u"SNAP"_s);
    if (folder.isEmpty() || !signs.executablePath.startsWith(folder + u'/'))
        return std::nullopt;
    return Sandbox{Sandbox::Kind::snap, signs.environment.value(u"SNAP_INSTANCE_NAME"_s)};
}

} // namespace

SandboxSigns SandboxSigns::ofThisProcess()
{
    return {u"/.flatpak-info"_s, QProcessEnvironment::systemEnvironment(),
            QCoreApplication::applicationFilePath()};
}

std::optional<Sandbox> sandboxOf(const SandboxSigns &signs)
{
    if (const auto sandbox = flatpak(signs.flatpakInfoPath))
        return sandbox;
    return snap(signs);
}

} // namespace kestrova
