#include "Views/Settings/SettingsModel.h"

#include "Services/Dictation/WhisperCppConfig.h"
#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/HotkeyTexts.h"
#include "ViewModels/MicrophoneHints.h"
#include "Views/DictationStatus.h"
#include "Views/ModelDownloadStatus.h"
#include "Views/ShownPart.h"

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

} // namespace

SettingsModel::SettingsModel(AppController &controller, const RecorderKeyboard &keyboard)
    : m_controller(controller), m_state(controller.appState()), m_recorder(controller, keyboard)
{
    for (const auto signal :
         {&AppState::stateChanged, &AppState::lastErrorChanged, &AppState::isModelReadyChanged,
          &AppState::isPreparingModelChanged, &AppState::isWhisperCLIReadyChanged,
          &AppState::resolvedWhisperCLIPathChanged, &AppState::permissionsChanged,
          &AppState::accessibilityChanged, &AppState::microphoneChanged, &AppState::settingsChanged,
          &AppState::hotkeysChanged})
        connect(&m_state, signal, this, &SettingsModel::changed);
    connect(&m_state, &AppState::modelDownloadChanged, this, &SettingsModel::downloadChanged);
}

QString SettingsModel::statusText() const
{
    return DictationStatus::of(m_state.state.get()).text;
}

StatusPillTone::Value SettingsModel::statusTone() const
{
    return DictationStatus::of(m_state.state.get()).tone;
}

QString SettingsModel::statusIcon() const
{
    return DictationStatus::of(m_state.state.get()).icon;
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

bool SettingsModel::isModelReady() const
{
    return m_state.isModelReady.get();
}

bool SettingsModel::isPreparingModel() const
{
    return m_state.isPreparingModel.get();
}

QString SettingsModel::downloadAmount() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).amount;
}

QString SettingsModel::downloadPercentage() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).percentage;
}

double SettingsModel::downloadFraction() const
{
    return ModelDownloadStatus::of(m_state.modelDownload.get()).fraction;
}

void SettingsModel::downloadModel()
{
    m_controller.prepareModel(/*forceDownload=*/true);
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

bool SettingsModel::isAccessibilityGranted() const
{
    return m_state.permissions.get().accessibilityAuthorized;
}

bool SettingsModel::isAccessibilityAvailable() const
{
    return m_state.accessibility.get() != Access::unavailable;
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
