#include "Views/Settings/SettingsModel.h"

#include "Services/Dictation/WhisperCppConfig.h"
#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/Texts/AccessibilityTexts.h"
#include "ViewModels/Texts/HotkeyTexts.h"
#include "ViewModels/Texts/MicrophoneHints.h"
#include "Views/DictationStatus.h"
#include "Views/ModelDownloadStatus.h"
#include "Views/ShownPart.h"
#include "Views/StateTopics.h"

#include <QTextStream>
#include <QUrl>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString fileName(SettingsModel::ModelPreset preset)
{
    switch (preset) {
    case SettingsModel::BaseModel:
        return u"ggml-base.bin"_s;
    case SettingsModel::MediumModel:
        return u"ggml-medium.bin"_s;
    case SettingsModel::LargeV3Model:
        return u"ggml-large-v3.bin"_s;
    }
    Q_UNREACHABLE();
}

/// All models stand beside the default one.
QString address(SettingsModel::ModelPreset preset)
{
    return QUrl(AppSettings::defaults().modelDownloadURL)
        .resolved(QUrl(fileName(preset)))
        .toString();
}

PillStatus permissionStatus(bool isGranted, bool isAvailable)
{
    if (isGranted)
        return PillStatus::success(u"Granted"_s);
    return PillStatus::warning(isAvailable ? u"Not Granted"_s : u"Not Available"_s);
}

} // namespace

SettingsModel::SettingsModel(AppController &controller, const RecorderKeyboard &keyboard)
    : m_controller(controller), m_state(controller.appState()), m_recorder(controller, keyboard)
{
    announce(*this, &SettingsModel::statusChanged, m_state, {&AppState::stateChanged});
    announce(*this, &SettingsModel::errorChanged, m_state, {&AppState::lastErrorChanged});
    announce(*this, &SettingsModel::shortcutChanged, m_state, {&AppState::hotkeysChanged});
    announce(*this, &SettingsModel::settingsChanged, m_state, {&AppState::settingsChanged});
    announce(*this, &SettingsModel::toolChanged, m_state,
             {&AppState::isWhisperCLIReadyChanged, &AppState::resolvedWhisperCLIPathChanged});
    announce(*this, &SettingsModel::modelChanged, m_state,
             {&AppState::isModelReadyChanged, &AppState::isPreparingModelChanged});
    announce(*this, &SettingsModel::downloadChanged, m_state, {&AppState::modelDownloadChanged});
    announce(*this, &SettingsModel::permissionsChanged, m_state,
             {&AppState::permissionsChanged, &AppState::accessibilityChanged});
    announce(*this, &SettingsModel::microphoneChanged, m_state,
             {&AppState::permissionsChanged, &AppState::microphoneChanged});
    announce(*this, &SettingsModel::diagnosticsChanged, m_state,
             {&AppState::stateChanged, &AppState::settingsChanged, &AppState::isModelReadyChanged,
              &AppState::permissionsChanged});
}

PillStatus SettingsModel::status() const
{
    return dictationStatus(m_state.state.get());
}

QString SettingsModel::lastError() const
{
    return shownError(m_state);
}

void SettingsModel::copyError()
{
    m_controller.copy(m_state.lastError.get().value_or(QString()));
}

QString SettingsModel::shortcut() const
{
    return shownKeys(m_state.hotkeys.get().value(mainHotkeyId()));
}

QString SettingsModel::shortcutHint() const
{
    return hotkeyHint(m_state.hotkeys.get().value(mainHotkeyId()), m_controller.shortcutEditing());
}

bool SettingsModel::recordsShortcuts() const
{
    return m_controller.shortcutEditing() == ShortcutEditing::inProgram;
}

bool SettingsModel::configuresShortcuts() const
{
    return m_controller.shortcutEditing() == ShortcutEditing::inDesktopDialog;
}

QString SettingsModel::shortcutTip() const
{
    return shortcutEditingTip(m_controller.shortcutEditing());
}

void SettingsModel::configureShortcuts()
{
    m_controller.configureShortcuts();
}

void SettingsModel::recordShortcut()
{
    m_recorder.open(
        [this](const HotkeyShortcut &shortcut) { m_controller.setGlobalShortcut(shortcut); });
}

void SettingsModel::resetShortcut()
{
    m_controller.setGlobalShortcut(HotkeyShortcut::defaultMain());
}

SettingsModel::Theme SettingsModel::theme() const
{
    return m_state.settings.get().theme == AppTheme::dark ? Dark : Light;
}

void SettingsModel::setTheme(Theme theme)
{
    m_controller.updateSettings([&](AppSettings &settings) {
        settings.theme = theme == Dark ? AppTheme::dark : AppTheme::light;
    });
}

void SettingsModel::openDashboard()
{
    Q_EMIT openWindowRequested(u"dashboard"_s);
}

PillStatus SettingsModel::toolStatus() const
{
    return isWhisperCLIReady() ? PillStatus::success(u"Ready"_s)
                               : PillStatus::warning(u"Not Found"_s);
}

bool SettingsModel::isWhisperCLIReady() const
{
    return m_state.isWhisperCLIReady.get();
}

QString SettingsModel::pinnedCommit()
{
    return WhisperCppConfig::knownCommit();
}

QString SettingsModel::resolvedWhisperCLIPath() const
{
    return m_state.resolvedWhisperCLIPath.get();
}

QString SettingsModel::whisperCLIPath() const
{
    return m_state.settings.get().whisperCLIPath;
}

void SettingsModel::setWhisperCLIPath(const QString &path)
{
    m_controller.updateSettings([&](AppSettings &settings) { settings.whisperCLIPath = path; });
}

QString SettingsModel::transcriptionLanguage() const
{
    return m_state.settings.get().transcriptionLanguage;
}

void SettingsModel::setTranscriptionLanguage(const QString &language)
{
    m_controller.updateSettings(
        [&](AppSettings &settings) { settings.transcriptionLanguage = language; });
}

SettingsModel::DecodingProfile SettingsModel::decodingProfile() const
{
    return m_state.settings.get().decodingProfile == WhisperDecodingProfile::accurate ? Accurate
                                                                                      : Balanced;
}

void SettingsModel::setDecodingProfile(DecodingProfile profile)
{
    m_controller.updateSettings([&](AppSettings &settings) {
        settings.decodingProfile = profile == Accurate ? WhisperDecodingProfile::accurate
                                                       : WhisperDecodingProfile::balanced;
    });
}

void SettingsModel::installWhisperCpp()
{
    m_controller.installWhisperCppViaHomebrew();
}

void SettingsModel::refresh()
{
    m_controller.refreshEnvironmentSnapshot();
}

QString SettingsModel::modelDownloadURL() const
{
    return m_state.settings.get().modelDownloadURL;
}

void SettingsModel::setModelDownloadURL(const QString &address)
{
    m_controller.updateSettings(
        [&](AppSettings &settings) { settings.modelDownloadURL = address; });
}

QString SettingsModel::modelSHA256() const
{
    return m_state.settings.get().modelSHA256;
}

void SettingsModel::setModelSHA256(const QString &digest)
{
    m_controller.updateSettings([&](AppSettings &settings) { settings.modelSHA256 = digest; });
}

void SettingsModel::usePreset(ModelPreset preset)
{
    m_controller.updateSettings([&](AppSettings &settings) {
        settings.modelDownloadURL = address(preset);
        settings.modelSHA256 = u""_s;
    });
}

PillStatus SettingsModel::modelStatus() const
{
    return isModelReady() ? PillStatus::success(u"Model Ready"_s)
                          : PillStatus::warning(u"Model Missing"_s);
}

bool SettingsModel::isModelReady() const
{
    return m_state.isModelReady.get();
}

bool SettingsModel::isPreparingModel() const
{
    return m_state.isPreparingModel.get();
}

ProgressStatus SettingsModel::download() const
{
    return modelDownloadStatus(m_state.modelDownload.get());
}

void SettingsModel::downloadModel()
{
    m_controller.prepareModel(/*forceDownload=*/true);
}

PillStatus SettingsModel::microphoneStatus() const
{
    return permissionStatus(isMicrophoneGranted(), /*isAvailable=*/true);
}

bool SettingsModel::isMicrophoneGranted() const
{
    return m_state.permissions.get().microphoneAuthorized;
}

QString SettingsModel::microphoneMessage() const
{
    return m_controller.microphoneAdvice().message;
}

QString SettingsModel::microphoneHint() const
{
    return m_controller.microphoneAdvice().hint;
}

QString SettingsModel::microphoneNotice() const
{
    return kestrova::microphoneHint(m_state);
}

PillStatus SettingsModel::accessibilityStatus() const
{
    return permissionStatus(isAccessibilityGranted(), isAccessibilityAvailable());
}

bool SettingsModel::isAccessibilityGranted() const
{
    return m_state.permissions.get().accessibilityAuthorized;
}

bool SettingsModel::isAccessibilityAvailable() const
{
    return kestrova::isAccessibilityAvailable(m_state);
}

QString SettingsModel::accessibilityExplanation() const
{
    return kestrova::accessibilityExplanation(m_state);
}

void SettingsModel::requestMicrophone()
{
    m_controller.requestMicrophoneAccess();
}

void SettingsModel::promptForAccessibility()
{
    m_controller.promptForAccessibility();
}

QString SettingsModel::diagnostics() const
{
    return m_controller.diagnosticsJSON();
}

void SettingsModel::printDiagnostics()
{
    QTextStream(stdout) << diagnostics() << Qt::endl;
}

void SettingsModel::copyDiagnostics()
{
    m_controller.copy(diagnostics());
}

} // namespace kestrova
