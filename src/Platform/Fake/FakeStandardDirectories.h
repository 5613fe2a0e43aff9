#pragma once

#include "Platform/StandardDirectories.h"

#include <QTemporaryDir>

namespace kestrova {

/// Three real, empty folders that go away with the fake.
class FakeStandardDirectories final : public StandardDirectories
{
public:
    FakeStandardDirectories();

    QString temporaryDirectory() override;
    QString runtimeDirectory() override;
    QString applicationSupportDirectory() override;

    /// From now on temporaryDirectory() and runtimeDirectory() throw this text; empty: they work
    /// again.
    void failTemporaryDirectory(const QString &problem) { m_problem = problem; }

private:
    QString folder(const QString &name) const;

    QTemporaryDir m_root;
    QString m_problem;
};

} // namespace kestrova
