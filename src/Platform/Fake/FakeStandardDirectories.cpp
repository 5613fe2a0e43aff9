#include "Platform/Fake/FakeStandardDirectories.h"

#include "Models/ReadableError.h"

#include <QDir>

namespace kestrova {

using namespace Qt::StringLiterals;

FakeStandardDirectories::FakeStandardDirectories()
{
    QDir(m_root.path()).mkdir(u"temporary"_s);
    QDir(m_root.path()).mkdir(u"runtime"_s);
    QDir(m_root.path()).mkdir(u"support"_s);
}

QString FakeStandardDirectories::temporaryDirectory()
{
    return folder(u"temporary"_s);
}

QString FakeStandardDirectories::runtimeDirectory()
{
    return folder(u"runtime"_s);
}

QString FakeStandardDirectories::folder(const QString &name) const
{
    if (!m_problem.isEmpty())
        throw PlatformError(m_problem);
    return m_root.filePath(name);
}

QString FakeStandardDirectories::applicationSupportDirectory()
{
    return m_root.filePath(u"support"_s);
}

} // namespace kestrova
