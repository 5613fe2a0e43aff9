#pragma once

#include "ViewModels/AppController.h"
#include "Views/Primitives/Controls/PillStatus.h"
#include "Views/Primitives/Controls/ProgressStatus.h"
#include "Views/Recorder/ShortcutRecorder.h"

namespace kestrova {

/// What the settings window shows and does. Each change is stored and takes effect at once. Main
/// thread.
class SettingsModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")

    Q_PROPERTY(kestrova::PillStatus status READ status NOTIFY statusChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString lastError READ lastError NOTIFY errorChanged)

    // General
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY shortcutChanged)
    /// Why the shortcut does not do what the user expects; empty when it does.
    Q_PROPERTY(QString shortcutHint READ shortcutHint NOTIFY shortcutChanged)
    /// Whether shortcuts are recorded here, or in a dialog of the desktop's that can be opened.
    Q_PROPERTY(bool recordsShortcuts READ recordsShortcuts CONSTANT)
    Q_PROPERTY(bool configuresShortcuts READ configuresShortcuts CONSTANT)
    Q_PROPERTY(QString shortcutTip READ shortcutTip CONSTANT)
    Q_PROPERTY(kestrova::ShortcutRecorder *recorder READ recorder CONSTANT)
    Q_PROPERTY(Theme theme READ theme WRITE setTheme NOTIFY settingsChanged)

    // Whisper.cpp
    Q_PROPERTY(kestrova::PillStatus toolStatus READ toolStatus NOTIFY toolChanged)
    Q_PROPERTY(QString pinnedCommit READ pinnedCommit CONSTANT)
    Q_PROPERTY(QString resolvedWhisperCLIPath READ resolvedWhisperCLIPath NOTIFY toolChanged)
    Q_PROPERTY(
        QString whisperCLIPath READ whisperCLIPath WRITE setWhisperCLIPath NOTIFY settingsChanged)
    Q_PROPERTY(QString transcriptionLanguage READ transcriptionLanguage WRITE
                   setTranscriptionLanguage NOTIFY settingsChanged)
    Q_PROPERTY(DecodingProfile decodingProfile READ decodingProfile WRITE setDecodingProfile NOTIFY
                   settingsChanged)

    // Model
    Q_PROPERTY(QString modelDownloadURL READ modelDownloadURL WRITE setModelDownloadURL NOTIFY
                   settingsChanged)
    Q_PROPERTY(QString modelSHA256 READ modelSHA256 WRITE setModelSHA256 NOTIFY settingsChanged)
    Q_PROPERTY(kestrova::PillStatus modelStatus READ modelStatus NOTIFY modelChanged)
    Q_PROPERTY(bool isPreparingModel READ isPreparingModel NOTIFY modelChanged)
    /// The amount is empty while nothing is downloaded.
    Q_PROPERTY(kestrova::ProgressStatus download READ download NOTIFY downloadChanged)

    // Permissions
    Q_PROPERTY(
        kestrova::PillStatus microphoneStatus READ microphoneStatus NOTIFY permissionsChanged)
    Q_PROPERTY(bool isMicrophoneGranted READ isMicrophoneGranted NOTIFY permissionsChanged)
    /// Why the microphone is not granted, and what helps. The hint is empty where the message says
    /// it all.
    Q_PROPERTY(QString microphoneMessage READ microphoneMessage NOTIFY permissionsChanged)
    Q_PROPERTY(QString microphoneHint READ microphoneHint NOTIFY permissionsChanged)
    /// What keeps a microphone that is granted from hearing the user; empty when nothing does.
    Q_PROPERTY(QString microphoneNotice READ microphoneNotice NOTIFY microphoneChanged)
    Q_PROPERTY(
        kestrova::PillStatus accessibilityStatus READ accessibilityStatus NOTIFY permissionsChanged)
    /// False where no permission would help.
    Q_PROPERTY(
        bool isAccessibilityAvailable READ isAccessibilityAvailable NOTIFY permissionsChanged)
    Q_PROPERTY(
        QString accessibilityExplanation READ accessibilityExplanation NOTIFY permissionsChanged)

    // Diagnostics
    Q_PROPERTY(QString diagnostics READ diagnostics NOTIFY diagnosticsChanged)

public:
    enum Theme { Light, Dark };
    Q_ENUM(Theme)
    enum DecodingProfile { Balanced, Accurate };
    Q_ENUM(DecodingProfile)
    enum ModelPreset { BaseModel, MediumModel, LargeV3Model };
    Q_ENUM(ModelPreset)

    /// The controller outlives this.
    SettingsModel(AppController &controller, const RecorderKeyboard &keyboard);

    PillStatus status() const;
    QString lastError() const;

    QString shortcut() const;
    QString shortcutHint() const;
    bool recordsShortcuts() const;
    bool configuresShortcuts() const;
    QString shortcutTip() const;
    ShortcutRecorder *recorder() { return &m_recorder; }
    Theme theme() const;
    void setTheme(Theme theme);

    PillStatus toolStatus() const;
    bool isWhisperCLIReady() const;
    /// The version of whisper.cpp that the program is made for.
    static QString pinnedCommit();
    QString resolvedWhisperCLIPath() const;
    QString whisperCLIPath() const;
    void setWhisperCLIPath(const QString &path);
    QString transcriptionLanguage() const;
    void setTranscriptionLanguage(const QString &language);
    DecodingProfile decodingProfile() const;
    void setDecodingProfile(DecodingProfile profile);

    QString modelDownloadURL() const;
    void setModelDownloadURL(const QString &address);
    QString modelSHA256() const;
    void setModelSHA256(const QString &digest);
    PillStatus modelStatus() const;
    bool isModelReady() const;
    bool isPreparingModel() const;
    ProgressStatus download() const;

    PillStatus microphoneStatus() const;
    bool isMicrophoneGranted() const;
    QString microphoneMessage() const;
    QString microphoneHint() const;
    QString microphoneNotice() const;
    PillStatus accessibilityStatus() const;
    bool isAccessibilityGranted() const;
    bool isAccessibilityAvailable() const;
    QString accessibilityExplanation() const;

    QString diagnostics() const;

    Q_INVOKABLE void copyError();
    /// Opens the recorder for the main shortcut.
    Q_INVOKABLE void recordShortcut();
    Q_INVOKABLE void resetShortcut();
    Q_INVOKABLE void configureShortcuts();
    Q_INVOKABLE void openDashboard();
    Q_INVOKABLE void installWhisperCpp();
    Q_INVOKABLE void refresh();
    /// The preset's address, and no digest.
    Q_INVOKABLE void usePreset(kestrova::SettingsModel::ModelPreset preset);
    /// Downloads the model anew.
    Q_INVOKABLE void downloadModel();
    Q_INVOKABLE void requestMicrophone();
    Q_INVOKABLE void promptForAccessibility();
    /// To standard output.
    Q_INVOKABLE void printDiagnostics();
    Q_INVOKABLE void copyDiagnostics();

Q_SIGNALS:
    void statusChanged();
    void errorChanged();
    void shortcutChanged();
    void settingsChanged();
    void toolChanged();
    void modelChanged();
    void downloadChanged();
    void permissionsChanged();
    void microphoneChanged();
    void diagnosticsChanged();
    /// "dashboard".
    void openWindowRequested(const QString &identifier);

private:
    AppController &m_controller;
    const AppState &m_state;
    ShortcutRecorder m_recorder;
};

} // namespace kestrova
