#include "Views/Popover/PopoverModel.h"

#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/HotkeyTexts.h"
#include "ViewModels/MicrophoneHints.h"
#include "Views/DictationStatus.h"
#include "Views/ModelDownloadStatus.h"
#include "Views/ShownPart.h"

namespace kestrova {

using namespace Qt::StringLiterals;

using Kind = DictationState::Kind;

PopoverModel::PopoverModel(AppController &controller, QObject *parent)
    : QObject(parent), m_controller(controller), m_state(controller.appState())
{
    for (const auto signal :
         {&AppState::stateChanged, &AppState::sessionWordCountChanged,
          &AppState::lastTranscriptChanged, &AppState::lastDeliveryChanged,
          &AppState::unconfirmedTranscriptsChanged, &AppState::lastErrorChanged,
          &AppState::isModelReadyChanged, &AppState::isPreparingModelChanged,
          &AppState::isWhisperCLIReadyChanged, &AppState::resolvedWhisperCLIPathChanged,
          &AppState::permissionsChanged, &AppState::accessibilityChanged,
          &AppState::microphoneChanged, &AppState::recordingProblemChanged,
          &AppState::hotkeysChanged})
        connect(&m_state, signal, this, &PopoverModel::changed);
    connect(&m_state, &AppState::modelDownloadChanged, this, &PopoverModel::downloadChanged);
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
    if (m_state.accessibility.get() == Access::unavailable)
        return {u"Accessibility"_s, u"Not possible on this desktop"_s, false};
    const bool isAuthorized = m_state.permissions.get().accessibilityAuthorized;
    return {u"Accessibility"_s,
            isAuthorized ? u"Permission granted"_s : u"Permission needed for auto paste"_s,
            isAuthorized};
}

bool PopoverModel::canGrantAccessibility() const
{
    const Access access = m_state.accessibility.get();
    return access == Access::denied || access == Access::notAsked;
}

bool PopoverModel::isPreparingModel() const
{
    return m_state.isPreparingModel.get();
}

QString PopoverModel::modelButtonTitle() const
{
    return isPreparingModel() ? u"Downloading model..."_s : u"Download ggml-base.bin"_s;
}

QString PopoverModel::downloadAmount() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).amount;
}

QString PopoverModel::downloadPercentage() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).percentage;
}

double PopoverModel::downloadFraction() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).fraction;
}

QString PopoverModel::statusText() const
{
    return DictationStatus::of(m_state.state.get()).text;
}

StatusPillTone::Value PopoverModel::statusTone() const
{
    return DictationStatus::of(m_state.state.get()).tone;
}

QString PopoverModel::statusIcon() const
{
    return DictationStatus::of(m_state.state.get()).icon;
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
