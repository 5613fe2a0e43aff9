#include "Views/Popover/PopoverModel.h"

#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/Texts/AccessibilityTexts.h"
#include "ViewModels/Texts/HotkeyTexts.h"
#include "ViewModels/Texts/MicrophoneHints.h"
#include "Views/DictationStatus.h"
#include "Views/ModelDownloadStatus.h"
#include "Views/ShownPart.h"
#include "Views/StateTopics.h"

namespace kestrova {

using namespace Qt::StringLiterals;

using Kind = DictationState::Kind;

PopoverModel::PopoverModel(AppController &controller, QObject *parent)
    : QObject(parent), m_controller(controller), m_state(controller.appState())
{
    announce(*this, &PopoverModel::statusChanged, m_state, {&AppState::stateChanged});
    announce(*this, &PopoverModel::wordsProcessedChanged, m_state,
             {&AppState::sessionWordCountChanged});
    announce(*this, &PopoverModel::transcriptChanged, m_state,
             {&AppState::lastTranscriptChanged, &AppState::lastDeliveryChanged,
              &AppState::unconfirmedTranscriptsChanged, &AppState::recordingProblemChanged});
    announce(*this, &PopoverModel::errorChanged, m_state, {&AppState::lastErrorChanged});
    announce(*this, &PopoverModel::setupChanged, m_state,
             {&AppState::isModelReadyChanged, &AppState::isPreparingModelChanged,
              &AppState::isWhisperCLIReadyChanged, &AppState::resolvedWhisperCLIPathChanged});
    announce(*this, &PopoverModel::downloadChanged, m_state, {&AppState::modelDownloadChanged});
    announce(*this, &PopoverModel::permissionsChanged, m_state,
             {&AppState::permissionsChanged, &AppState::accessibilityChanged});
    announce(*this, &PopoverModel::microphoneChanged, m_state,
             {&AppState::permissionsChanged, &AppState::microphoneChanged});
    announce(*this, &PopoverModel::shortcutChanged, m_state, {&AppState::hotkeysChanged});
    announce(*this, &PopoverModel::primaryButtonChanged, m_state,
             {&AppState::stateChanged, &AppState::isModelReadyChanged,
              &AppState::isWhisperCLIReadyChanged, &AppState::permissionsChanged});
}

bool PopoverModel::showsSetupExperience() const
{
    return !m_state.isSetUp();
}

QString PopoverModel::lastError() const
{
    return shownError(m_state);
}

QString PopoverModel::microphoneNotice() const
{
    return microphoneHint(m_state);
}

QString PopoverModel::recordingNotice() const
{
    const auto problem = m_state.recordingProblem.get();
    return problem ? recordingProblemText(*problem) : QString();
}

SetupStep PopoverModel::modelStep() const
{
    const bool isReady = m_state.isModelReady.get();
    return {u"Model"_s, isReady ? u"ggml-base.bin ready"_s : u"Download ggml-base.bin"_s, isReady};
}

SetupStep PopoverModel::toolStep() const
{
    const bool isReady = m_state.isWhisperCLIReady.get();
    return {u"Whisper CLI"_s,
            isReady ? u"Found at "_s + m_state.resolvedWhisperCLIPath.get()
                    : u"Install whisper.cpp and configure whisper-cli"_s,
            isReady};
}

SetupStep PopoverModel::microphoneStep() const
{
    const bool isAuthorized = m_state.permissions.get().microphoneAuthorized;
    return {u"Microphone"_s, isAuthorized ? u"Permission granted"_s : u"Permission required"_s,
            isAuthorized};
}

SetupStep PopoverModel::accessibilityStep() const
{
    return {u"Accessibility"_s, accessibilityDetail(m_state),
            m_state.permissions.get().accessibilityAuthorized};
}

bool PopoverModel::canGrantAccessibility() const
{
    return canAskForAccessibility(m_state);
}

bool PopoverModel::isPreparingModel() const
{
    return m_state.isPreparingModel.get();
}

QString PopoverModel::modelButtonTitle() const
{
    return isPreparingModel() ? u"Downloading model..."_s : u"Download ggml-base.bin"_s;
}

ProgressStatus PopoverModel::download() const
{
    return modelDownloadStatus(m_state.modelDownload.get());
}

PillStatus PopoverModel::status() const
{
    return dictationStatus(m_state.state.get());
}

QString PopoverModel::wordsProcessed() const
{
    return QString::number(m_state.sessionWordCount.get());
}

QString PopoverModel::shortcut() const
{
    return shownKeys(m_state.hotkeys.get().value(mainHotkeyId()));
}

bool PopoverModel::lacksPermission() const
{
    const PermissionSnapshot &permissions = m_state.permissions.get();
    return !permissions.microphoneAuthorized || !permissions.accessibilityAuthorized;
}

QString PopoverModel::primaryButtonTitle() const
{
    switch (m_state.state.get().kind) {
    case Kind::recording:
        return u"Stop & Insert"_s;
    case Kind::processing:
        return u"Cancel"_s;
    case Kind::idle:
    case Kind::error:
        return u"Start Recording"_s;
    }
    Q_UNREACHABLE();
}

QString PopoverModel::primaryButtonIcon() const
{
    switch (m_state.state.get().kind) {
    case Kind::recording:
        return u"stop.fill"_s;
    case Kind::processing:
        return u"xmark"_s;
    case Kind::idle:
    case Kind::error:
        return u"record.circle"_s;
    }
    Q_UNREACHABLE();
}

bool PopoverModel::primaryButtonDisabled() const
{
    const Kind kind = m_state.state.get().kind;
    const bool isUnderWay = kind == Kind::recording || kind == Kind::processing;
    return !isUnderWay && (showsSetupExperience() || lacksPermission());
}

PopoverModel::PrimaryButtonLook PopoverModel::primaryButtonLook() const
{
    if (primaryButtonDisabled())
        return DisabledLook;
    switch (m_state.state.get().kind) {
    case Kind::recording:
        return RecordingLook;
    case Kind::processing:
        return ProcessingLook;
    case Kind::idle:
    case Kind::error:
        return IdleLook;
    }
    Q_UNREACHABLE();
}

QString PopoverModel::lastTranscript() const
{
    return shownPart(m_state.lastTranscript.get());
}

QString PopoverModel::deliveryNotice() const
{
    switch (m_state.lastDelivery.get().outcome) {
    case DeliveryOutcome::requested:
        return QString();
    case DeliveryOutcome::unknown:
        return u"Not confirmed: left on the clipboard."_s;
    case DeliveryOutcome::leftOnClipboard:
        return u"Not pasted: left on the clipboard."_s;
    case DeliveryOutcome::replaced:
        return u"Not confirmed: another program took the clipboard."_s;
    }
    Q_UNREACHABLE();
}

QStringList PopoverModel::unconfirmedTranscripts() const
{
    QStringList texts;
    for (const UnconfirmedTranscript &transcript : m_state.unconfirmedTranscripts.get())
        texts.append(shownPart(transcript.text));
    return texts;
}

void PopoverModel::downloadModel()
{
    m_controller.prepareModel(true);
}

void PopoverModel::installWhisperCpp()
{
    m_controller.installWhisperCppViaHomebrew();
}

void PopoverModel::grantMicrophone()
{
    m_controller.requestMicrophoneAccess();
}

void PopoverModel::grantAccessibility()
{
    m_controller.promptForAccessibility();
}

void PopoverModel::handlePrimaryAction()
{
    switch (m_state.state.get().kind) {
    case Kind::processing:
        m_controller.cancelProcessing();
        break;
    case Kind::idle:
        Q_EMIT dismissRequested();
        m_controller.toggleRecordingWithDefaultTarget();
        break;
    case Kind::recording:
    case Kind::error:
        m_controller.toggleRecordingWithDefaultTarget();
        break;
    }
}

void PopoverModel::copyError()
{
    m_controller.copy(m_state.lastError.get().value_or(QString()));
}

void PopoverModel::copyTranscript()
{
    m_controller.copy(m_state.lastTranscript.get());
}

void PopoverModel::copyUnconfirmedTranscript(qsizetype place)
{
    const QList<UnconfirmedTranscript> transcripts = m_state.unconfirmedTranscripts.get();
    if (place >= 0 && place < transcripts.size())
        m_controller.copyUnconfirmed(transcripts[place]);
}

void PopoverModel::refresh()
{
    m_controller.refreshEnvironmentSnapshot();
}

void PopoverModel::openDashboard()
{
    openWindow(u"dashboard"_s);
}

void PopoverModel::openSettings()
{
    openWindow(u"settings"_s);
}

void PopoverModel::openWindow(const QString &identifier)
{
    Q_EMIT openWindowRequested(identifier);
    Q_EMIT dismissRequested();
}

} // namespace kestrova
