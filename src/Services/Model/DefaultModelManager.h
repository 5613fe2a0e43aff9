#pragma once

#include "Platform/StandardDirectories.h"
#include "Services/Model/FileDownload.h"
#include "Services/Protocols.h"

#include <functional>
#include <mutex>

namespace kestrova {

/// What the settings say about the model.
struct ModelConfig
{
    QString downloadURLString;
    QString expectedSHA256; ///< hexadecimal, any letter case, may be empty
};

/// Keeps the transcription model at APPLICATION-SUPPORT/Kestrova/models/NAME, downloading it when
/// it is missing, does not match the configured digest, or a new copy is asked for. Usable from any
/// thread. Whatever interrupts it, the model file is the whole old or the whole new one.
class DefaultModelManager final : public ModelManaging
{
public:
    /// Asked anew on every call, on the calling thread.
    using ConfigProvider = std::function<ModelConfig()>;

    /// The directories outlive the manager. The progress sink may be empty.
    DefaultModelManager(StandardDirectories &directories, ConfigProvider configProvider,
                        const QString &modelFileName, DownloadProgressSink progressSink = {},
                        const DownloadTimings &timings = {});

    /// Blocks while it downloads and hashes. An existing file is hashed only when a digest is
    /// configured. A download with the wrong digest stays beside the model, under its name with the
    /// extension "download", until the next one. Throws KestrovaError (no usable URL, wrong
    /// digest), PlatformError, and Cancelled; the model file is then as it was. The next call goes
    /// on where a cancelled one was, also if only the digest was left to do.
    QUrl prepareModelIfNeeded(bool forceDownload, const std::stop_token &stop) override;
    /// Ready means that the file exists; a damaged one is found by prepareModelIfNeeded().
    ModelStatus modelStatus() override;

private:
    QString modelPath() const;
    void removeOldStagingFile(const QString &stagingPath);
    QString digestOf(std::unique_ptr<PartialFile> &download, const QUrl &url,
                     const std::stop_token &stop);
    void install(PartialFile &download, const QString &stagingPath, const QString &expectedDigest,
                 const QString &actualDigest);

    StandardDirectories &m_directories;
    const ConfigProvider m_configProvider;
    const QString m_modelFileName;
    const DownloadProgressSink m_progressSink;
    FileDownload m_fileDownload;
    /// Overlapping calls share the staging path: from there to the model path one goes at a time,
    /// so that none installs what the other has put there.
    std::mutex m_stagingMutex;
};

} // namespace kestrova
