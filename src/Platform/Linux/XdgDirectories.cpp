#include "Platform/Linux/XdgDirectories.h"

#include <QDir>

namespace kestrova {

QString xdgDirectory(const char *variable, const QString &inHome)
{
    // QStandardPaths takes relative paths, too; the XDG Base Directory Specification has them
    // ignored.
    const QString configured = qEnvironmentVariable(variable);
    return QDir::cleanPath(QDir::isAbsolutePath(configured) ? configured
                                                            : QDir::homePath() + u'/' + inHome);
}

} // namespace kestrova
