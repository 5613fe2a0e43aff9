#include "App/Dictate/DictateSession.h"

#include "App/Dictate/TimedServices.h"
#include "Services/AVAudioCaptureService.h"
#include "Services/DefaultModelManager.h"
#include "Services/TextInsertionService.h"
#include "Services/WhisperCppTranscriber.h"

namespace kestrova {

using namespace Qt::StringLiterals;

DictateSession::DictateSession(MainExecutor &main) : m_main(main) {}

DictateSession::~DictateSession()
{
    m_programEnding.request_stop();
    m_coordinator->cancelProcessing();
    m_main.shutDown();
    m_background.waitUntilIdle(drainLimit);
}

std::shared_ptr<DictationCoordinator> DictateSession::makeCoordinator()
{
    auto whisperConfig = [this] {
        const AppSettings settings = m_settings.load();
        return WhisperCppConfig{.cliPath = settings.whisperCLIPath,
                                .language = settings.transcriptionLanguage,
                                .decodingProfile = settings.decodingProfile};
    };
    auto modelConfig = [this] {
        const AppSettings settings = m_settings.load();
        return ModelConfig{settings.modelDownloadURL, settings.modelSHA256};
    };
    return std::make_shared<DictationCoordinator>(
        m_background,
        std::make_shared<TimedAudioCapture>(std::make_unique<AVAudioCaptureService>(
                                                *m_platform.audioInput, *m_platform.directories),
                                            m_printer),
        std::make_shared<TimedTranscriber>(
            std::make_unique<WhisperCppTranscriber>(whisperConfig, *m_platform.processes,
                                                    *m_platform.directories,
                                                    m_programEnding.get_token()),
            m_printer),
        std::make_shared<TimedTextInserter>(
            std::make_unique<TextInsertionService>(*m_platform.workspace, *m_platform.pasteboard,
                                                   *m_platform.keyEvents, *m_platform.scripts,
                                                   m_main, m_clock),
            m_printer),
        std::make_shared<DefaultModelManager>(*m_platform.directories, modelConfig,
                                              u"ggml-base.bin"_s),
        [this](const DictationCoordinatorEvent &event) { take(event); });
}

void DictateSession::take(const DictationCoordinatorEvent &event)
{
    if (const auto *changed = std::get_if<DictationEvent::StateChanged>(&event)) {
        const bool isRecording = changed->state == DictationState::recording();
        m_main.post([this, isRecording] { m_isRecording = isRecording; });
    }
    m_printer.print(event);
}

void DictateSession::toggle(const QString &bundleIdentifier)
{
    // The destination is that of the start, whatever is in front at the end.
    if (!m_isRecording) {
        m_coordinator->setInsertionContext(
            bundleIdentifier.isEmpty() ? applicationInFront() : application(bundleIdentifier),
            std::nullopt);
    }
    m_coordinator->toggle();
}

void DictateSession::perform(const QString &command)
{
    m_printer.printCommand(command);
    if (command == u"toggle"_s) {
        toggle(QString());
    } else if (command.startsWith(u"toggle "_s)) {
        toggle(command.mid(7).trimmed());
    } else if (command == u"cancel"_s) {
        m_coordinator->cancelProcessing();
    } else {
        m_printer.printMisuse(u"The commands are \"toggle\", \"toggle IDENTIFIER\", \"cancel\" and "
                              "\"quit\"."_s);
    }
}

std::optional<TargetApplication> DictateSession::applicationInFront()
{
    const auto front = m_platform.workspace->frontmostApplication();
    return front ? front->asTarget() : std::nullopt;
}

TargetApplication DictateSession::application(const QString &bundleIdentifier)
{
    TargetApplication target{0, bundleIdentifier, std::nullopt};
    for (const auto &running : m_platform.workspace->runningApplications(bundleIdentifier)) {
        if (!running.isTerminated) {
            target.processIdentifier = running.processIdentifier;
            target.localizedName = running.localizedName;
            break;
        }
    }
    return target;
}

} // namespace kestrova
