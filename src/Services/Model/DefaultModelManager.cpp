#include "Services/Model/DefaultModelManager.h"

#include "Concurrency/Cancelled.h"
#include "Models/KestrovaError.h"
#include "Platform/FileSystem.h"
#include "Services/Model/Sha256.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QUrl parseDownloadURL(const QString &string)
{
    QUrl url(string, QUrl::StrictMode);
    if (!url.isValid()) // An empty one is not valid either.
        throw KestrovaError::configuration(u"Model download URL is not configured."_s);
    return url;
}

/// Whether there is nothing at the path now; errno tells why not.
bool removeFile(const QString &path)
{
    return std::remove(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
}

QString stagingPathFor(const QString &modelPath)
{
    const QFileInfo model(modelPath);
    return model.path() + u'/' + model.completeBaseName() + u".download"_s;
}

} // namespace

DefaultModelManager::DefaultModelManager(StandardDirectories &directories,
                                         ConfigProvider configProvider,
                                         const QString &modelFileName,
                                         DownloadProgressSink progressSink,
                                         const DownloadTimings &timings)
    : m_directories(directories), m_configProvider(std::move(configProvider)),
      m_modelFileName(modelFileName), m_progressSink(std::move(progressSink)),
      m_fileDownload(timings)
{
}

QUrl DefaultModelManager::prepareModelIfNeeded(bool forceDownload, const std::stop_token &stop)
{
    const ModelConfig config = m_configProvider();
    const QUrl downloadURL = parseDownloadURL(config.downloadURLString);
    const QString expectedDigest = config.expectedSHA256.trimmed();
    const QString path = modelPath();
    makePrivateDirectories(QFileInfo(path).path());

    const auto isUsable = [&] {
        return QFileInfo::exists(path) &&
               (expectedDigest.isEmpty() || sha256OfFile(path, stop) == expectedDigest.toLower());
    };
    if (forceDownload || !isUsable()) {
        const QString stagingPath = stagingPathFor(path);
        removeOldStagingFile(stagingPath);
        auto download = m_fileDownload.fetch(downloadURL, path, m_progressSink, stop);
        const QString actualDigest =
            expectedDigest.isEmpty() ? QString() : digestOf(download, downloadURL, stop);
        install(*download, stagingPath, expectedDigest, actualDigest);
    }
    return QUrl::fromLocalFile(path);
}

ModelStatus DefaultModelManager::modelStatus()
{
    const QString path = modelPath();
    return {QFileInfo::exists(path), path, m_configProvider().expectedSHA256};
}

QString DefaultModelManager::modelPath() const
{
    return m_directories.applicationSupportDirectory() + u"/Kestrova/models/"_s + m_modelFileName;
}

// Only gives back its space early: install() insists on it.
void DefaultModelManager::removeOldStagingFile(const QString &stagingPath)
{
    const std::unique_lock lock(m_stagingMutex, std::try_to_lock);
    if (lock.owns_lock())
        removeFile(stagingPath);
}

// What has arrived is not thrown away because nobody waited for its digest.
QString DefaultModelManager::digestOf(std::unique_ptr<PartialFile> &download, const QUrl &url,
                                      const std::stop_token &stop)
{
    try {
        return sha256OfFile(download->path(), stop);
    } catch (const Cancelled &) {
        m_fileDownload.keep(url, std::move(download));
        throw;
    }
}

void DefaultModelManager::install(PartialFile &download, const QString &stagingPath,
                                  const QString &expectedDigest, const QString &actualDigest)
{
    const std::lock_guard lock(m_stagingMutex);
    if (!removeFile(stagingPath))
        throw fileError(stagingPath, errno);
    download.moveTo(stagingPath);
    if (actualDigest != expectedDigest.toLower())
        throw KestrovaError::checksumMismatch(expectedDigest, actualDigest);
    replaceFileDurably(stagingPath, download.destination());
}

} // namespace kestrova
