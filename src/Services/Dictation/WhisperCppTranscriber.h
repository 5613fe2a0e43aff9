#pragma once

#include "Platform/ProcessRunning.h"
#include "Platform/StandardDirectories.h"
#include "Services/Dictation/DecoderLimits.h"
#include "Services/Dictation/WhisperCppConfig.h"
#include "Services/Protocols.h"

namespace kestrova {

/// Turns a recording into text by running whisper.cpp's whisper-cli once per call. The recording
/// is left where it is; the tool's own output file is removed once it has been read.
class WhisperCppTranscriber final : public Transcribing
{
public:
    using ExecutableResolver = std::function<std::optional<QString>(const QString &configuredPath)>;

    /// What is referred to outlives the transcriber. A running tool is ended when programEnding is
    /// requested to stop; nothing else ends it early.
    WhisperCppTranscriber(WhisperCppConfigProvider configProvider, ProcessRunning &processes,
                          StandardDirectories &directories, std::stop_token programEnding,
                          ExecutableResolver resolver = &resolveExecutablePath);

    /// Throws KestrovaError (configuration, missingModel, processFailed, emptyTranscription),
    /// PlatformError when the tool cannot be started or its output not be read, Cancelled when the
    /// program ends. The stop token is not asked: a tool that runs is waited for.
    TranscriptionResult transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                   const std::stop_token &stop) override;

    /// The first executable whisper-cli or whisper-cpp: the configured path (trimmed), the usual
    /// places, the directories of PATH. None when there is none.
    static std::optional<QString> resolveExecutablePath(const QString &configuredPath);
    /// Every path that is tested, in order. The search path is a PATH variable.
    static QStringList executableCandidates(const QString &configuredPath,
                                            const QString &searchPath);

private:
    ProcessOutcome runTool(const QString &executable, const QStringList &arguments,
                           WhisperDecodingProfile profile);

    const WhisperCppConfigProvider m_configProvider;
    ProcessRunning &m_processes;
    StandardDirectories &m_directories;
    const std::stop_token m_programEnding;
    const ExecutableResolver m_resolver;
    DecoderLimits m_decoderLimits;
};

} // namespace kestrova
