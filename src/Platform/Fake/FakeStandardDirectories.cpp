#include "Platform/Fake/FakeStandardDirectories.h"

#include "Models/ReadableError.h"

#include <QDir>

namespace kestrova {

using namespace Qt::StringLiterals;

FakeStandardDirectories::FakeStandardDirectories()
{
    QDir(m_root.path()).mkdir(u"temporary"_s);
    QDir(m_root.path()).mkdir(u"support"_s);
}

QString FakeStandardDirectories::temporaryDirectory()
{
    if (!m_problem.isEmpty())
        throw PlatformError(m_problem);
    return m_root.filePath(u"temporary"_s);
}

QString FakeStandardDirectories::applicationSupportDirectory()
{
    return m_root.filePath(u"support"_s);
}

} // namespace kestrova
