#pragma once

#include "Platform/Fake/FakeStandardDirectories.h"
#include "Services/TestFiles.h"

namespace kestrova {

/// Where the model manager keeps a model named "ggml-base.bin" when it is given these directories.
/// Nothing is there at first.
struct ModelFolder
{
    FakeStandardDirectories directories;

    QString path()
    {
        return directories.applicationSupportDirectory() + QStringLiteral("/Kestrova/models");
    }
    QString modelPath() { return path() + QStringLiteral("/ggml-base.bin"); }
    QString stagingPath() { return path() + QStringLiteral("/ggml-base.download"); }
    QStringList names() { return namesIn(path()); }
    bool putModel(const QByteArray &bytes)
    {
        return QDir().mkpath(path()) && writeFile(modelPath(), bytes);
    }
};

} // namespace kestrova
