#pragma once

#include "Platform/StandardDirectories.h"

#include <QTemporaryDir>

namespace kestrova {

class FakeStandardDirectoriesControl
{
public:
    virtual ~FakeStandardDirectoriesControl() = default;

    /// From now on temporaryDirectory() throws this text; empty: works again.
    virtual void failTemporaryDirectory(const QString &problem) = 0;
};

/// Two real, empty folders that go away with the fake.
class FakeStandardDirectories final : public StandardDirectories,
                                      public FakeStandardDirectoriesControl
{
public:
    FakeStandardDirectories();

    QString temporaryDirectory() override;
    QString applicationSupportDirectory() override;

    void failTemporaryDirectory(const QString &problem) override { m_problem = problem; }

private:
    QTemporaryDir m_root;
    QString m_problem;
};

} // namespace kestrova
