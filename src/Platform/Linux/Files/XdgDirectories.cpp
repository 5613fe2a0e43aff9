#include "Platform/Linux/Files/XdgDirectories.h"

#include <QDir>

namespace kestrova {

using namespace Qt::StringLiterals;

QString xdgDirectory(const char *variable, const QString &inHome)
{
    // QStandardPaths takes relative paths, too; the XDG Base Directory Specification has them
    // ignored.
    const QString configured = qEnvironmentVariable(variable);
    return QDir::cleanPath(QDir::isAbsolutePath(configured) ? configured
                                                            : QDir::homePath() + u'/' + inHome);
}

QString documentDirectory()
{
    return xdgDirectory("XDG_CONFIG_HOME", u".config"_s) + u"/kestrova"_s;
}

} // namespace kestrova
