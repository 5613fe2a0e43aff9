#pragma once

#include "Platform/StandardDirectories.h"

#include <QTemporaryDir>

namespace kestrova {

class FakeStandardDirectoriesControl
{
public:
    virtual ~FakeStandardDirectoriesControl() = default;

    /// From now on temporaryDirectory() and runtimeDirectory() throw this text; empty: they work
    /// again.
    virtual void failTemporaryDirectory(const QString &problem) = 0;
};

/// Three real, empty folders that go away with the fake.
class FakeStandardDirectories final : public StandardDirectories,
                                      public FakeStandardDirectoriesControl
{
public:
    FakeStandardDirectories();

    QString temporaryDirectory() override;
    QString runtimeDirectory() override;
    QString applicationSupportDirectory() override;

    void failTemporaryDirectory(const QString &problem) override { m_problem = problem; }

private:
    QString folder(const QString &name) const;

    QTemporaryDir m_root;
    QString m_problem;
};

} // namespace kestrova
