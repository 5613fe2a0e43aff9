#include "Services/Dictation/WhisperCppTranscriber.h"

#include "Concurrency/Cancelled.h"
#include "Models/KestrovaError.h"
#include "Platform/FileSystem.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Beam width and number of candidates of the accurate profile.
constexpr int accurateDecoderCount = 10;

/// In bytes; a day of speech is less than a megabyte.
constexpr qint64 longestTranscript = 32 * 1024 * 1024;

PlatformError tooLong(const QString &origin)
{
    return PlatformError(origin + u": The transcript is too long."_s);
}

QString normalizedLanguage(const QString &language)
{
    const QString trimmed = language.trimmed();
    return trimmed.isEmpty() ? u"auto"_s : trimmed.toLower();
}

/// None when the bytes are not UTF-8, be it only that they end within a character.
std::optional<QString> decodedUtf8(const QByteArray &bytes)
{
    return bytes.isValidUtf8() ? std::optional(QString::fromUtf8(bytes)) : std::nullopt;
}

/// The tool would wait without end for what a named pipe never gives.
void refuseIrregular(const QUrl &url)
{
    const QFileInfo file(url.toLocalFile());
    if (file.exists() && !file.isFile())
        throw notARegularFile(file.filePath());
}

QStringList profileArguments(WhisperDecodingProfile profile, int decoderCount)
{
    if (profile == WhisperDecodingProfile::balanced)
        return {};
    const QString count = QString::number(decoderCount);
    return {u"-bs"_s, count, u"-bo"_s, count, u"-sns"_s};
}

/// The transcript that the tool wrote, which is then removed; what it printed when it wrote none.
QString takeTranscript(const QString &outputPath, const ProcessOutcome &outcome)
{
    const auto file = openRegularFile(outputPath, Links::refuse);
    if (!file) {
        if (!outcome.isStandardOutputWhole)
            throw tooLong(u"whisper-cli"_s);
        return decodedUtf8(outcome.standardOutput).value_or(QString());
    }
    if (file->size() > longestTranscript)
        throw tooLong(outputPath);
    const auto text = decodedUtf8(readToEnd(*file, outputPath));
    if (!text)
        throw PlatformError(outputPath + u": The transcript is not valid UTF-8 text."_s);
    QFile::remove(outputPath);
    return *text;
}

} // namespace

WhisperCppTranscriber::WhisperCppTranscriber(WhisperCppConfigProvider configProvider,
                                             ProcessRunning &processes,
                                             StandardDirectories &directories,
                                             std::stop_token programEnding,
                                             ExecutableResolver resolver)
    : m_configProvider(std::move(configProvider)), m_processes(processes),
      m_directories(directories), m_programEnding(std::move(programEnding)),
      m_resolver(std::move(resolver))
{
}

QStringList WhisperCppTranscriber::executableCandidates(const QString &configuredPath,
                                                        const QString &searchPath)
{
    QStringList candidates;
    if (const QString trimmed = configuredPath.trimmed(); !trimmed.isEmpty())
        candidates.append(trimmed);
    candidates += {u"/opt/homebrew/bin/whisper-cli"_s, u"/usr/local/bin/whisper-cli"_s,
                   u"/opt/homebrew/bin/whisper-cpp"_s, u"/usr/local/bin/whisper-cpp"_s};
    for (const QString &directory : searchPath.split(u':', Qt::SkipEmptyParts))
        candidates += {directory + u"/whisper-cli"_s, directory + u"/whisper-cpp"_s};
    return candidates;
}

std::optional<QString> WhisperCppTranscriber::resolveExecutablePath(const QString &configuredPath)
{
    for (const QString &path : executableCandidates(configuredPath, qEnvironmentVariable("PATH"))) {
        const QFileInfo file(path);
        if (file.isFile() && file.isExecutable())
            return path;
    }
    return std::nullopt;
}

TranscriptionResult WhisperCppTranscriber::transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                                      const std::stop_token &)
{
    const WhisperCppConfig config = m_configProvider();
    const auto executable = m_resolver(config.cliPath);
    if (!executable) {
        throw KestrovaError::configuration(
            u"whisper-cli not found. Install whisper.cpp (for example: `brew install "
            "whisper-cpp`) and set the CLI path in Settings."_s);
    }
    if (!QFileInfo::exists(modelURL.toLocalFile()))
        throw KestrovaError::missingModel(modelURL);
    refuseIrregular(modelURL);
    refuseIrregular(audioURL);

    const QString outputBase = m_directories.temporaryDirectory() + u"/kestrova-transcript-"_s +
                               QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString outputPath = outputBase + u".txt"_s;
    const QStringList arguments{u"-m"_s,    modelURL.toLocalFile(),
                                u"-f"_s,    audioURL.toLocalFile(),
                                u"-of"_s,   outputBase,
                                u"-otxt"_s, u"-nt"_s,
                                u"-l"_s,    normalizedLanguage(config.language)};

    QElapsedTimer timer;
    timer.start();
    const ProcessOutcome outcome = runTool(*executable, arguments, config.decodingProfile);
    if (outcome.wasStopped) {
        QFile::remove(outputPath);
        throw Cancelled();
    }
    if (outcome.terminationStatus != 0) {
        throw KestrovaError::processFailed(
            u"whisper-cli failed with status %1. "_s.arg(outcome.terminationStatus) +
            decodedUtf8(outcome.standardError).value_or(QString()));
    }
    const QString text = takeTranscript(outputPath, outcome).trimmed();
    if (text.isEmpty())
        throw KestrovaError::emptyTranscription();
    return {text, timer.elapsed()};
}

ProcessOutcome WhisperCppTranscriber::runTool(const QString &executable,
                                              const QStringList &arguments,
                                              WhisperDecodingProfile profile)
{
    // A name without a slash would be looked up in PATH, where something else may stand.
    const QString path = QDir::current().absoluteFilePath(executable);
    const int decoderCount = m_decoderLimits.limit(path).value_or(accurateDecoderCount);
    ProcessOutcome outcome =
        m_processes.run(path, arguments + profileArguments(profile, decoderCount), m_programEnding);

    // Versions differ in how many decoders they run, and only say so when asked for too many.
    if (profile != WhisperDecodingProfile::accurate || outcome.wasStopped ||
        outcome.terminationStatus == 0)
        return outcome;
    const auto limit = DecoderLimits::limitNamedIn(outcome.standardError, decoderCount);
    if (!limit)
        return outcome;
    m_decoderLimits.remember(path, *limit);
    return m_processes.run(path, arguments + profileArguments(profile, *limit), m_programEnding);
}

} // namespace kestrova
