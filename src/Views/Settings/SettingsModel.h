#pragma once

#include "ViewModels/AppController.h"
#include "Views/Primitives/Theme/Tones.h"
#include "Views/Recorder/ShortcutRecorder.h"

namespace kestrova {

/// What the settings window shows and does. Each change is stored and takes effect at once. Main
/// thread.
class SettingsModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")

    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    /// A StatusPillTone.
    Q_PROPERTY(int statusTone READ statusTone NOTIFY changed)
    Q_PROPERTY(QString statusIcon READ statusIcon NOTIFY changed)
    /// Empty when there is none.
    Q_PROPERTY(QString lastError READ lastError NOTIFY changed)

    // General
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY changed)
    /// Why the shortcut does not do what the user expects; empty when it does.
    Q_PROPERTY(QString shortcutHint READ shortcutHint NOTIFY changed)
    /// Whether shortcuts are recorded here, or in a dialog of the desktop's that can be opened.
    Q_PROPERTY(bool recordsShortcuts READ recordsShortcuts CONSTANT)
    Q_PROPERTY(bool configuresShortcuts READ configuresShortcuts CONSTANT)
    Q_PROPERTY(QString shortcutTip READ shortcutTip CONSTANT)
    Q_PROPERTY(kestrova::ShortcutRecorder *recorder READ recorder CONSTANT)
    Q_PROPERTY(Theme theme READ theme WRITE setTheme NOTIFY changed)

    // Whisper.cpp
    Q_PROPERTY(bool isWhisperCLIReady READ isWhisperCLIReady NOTIFY changed)
    Q_PROPERTY(QString pinnedCommit READ pinnedCommit CONSTANT)
    Q_PROPERTY(QString resolvedWhisperCLIPath READ resolvedWhisperCLIPath NOTIFY changed)
    Q_PROPERTY(QString whisperCLIPath READ whisperCLIPath WRITE setWhisperCLIPath NOTIFY changed)
    Q_PROPERTY(QString transcriptionLanguage READ transcriptionLanguage WRITE
                   setTranscriptionLanguage NOTIFY changed)
    Q_PROPERTY(DecodingProfile decodingProfile READ decodingProfile WRITE setDecodingProfile NOTIFY
                   changed)

    // Model
    Q_PROPERTY(
        QString modelDownloadURL READ modelDownloadURL WRITE setModelDownloadURL NOTIFY changed)
    Q_PROPERTY(QString modelSHA256 READ modelSHA256 WRITE setModelSHA256 NOTIFY changed)
    Q_PROPERTY(bool isModelReady READ isModelReady NOTIFY changed)
    Q_PROPERTY(bool isPreparingModel READ isPreparingModel NOTIFY changed)
    /// As ModelDownloadStatus tells it; the amount is empty while nothing is downloaded.
    Q_PROPERTY(QString downloadAmount READ downloadAmount NOTIFY downloadChanged)
    Q_PROPERTY(QString downloadPercentage READ downloadPercentage NOTIFY downloadChanged)
    Q_PROPERTY(double downloadFraction READ downloadFraction NOTIFY downloadChanged)

    // Permissions
    Q_PROPERTY(bool isMicrophoneGranted READ isMicrophoneGranted NOTIFY changed)
    /// Why the microphone is not granted, and what helps. The hint is empty where the message says
    /// it all.
    Q_PROPERTY(QString microphoneMessage READ microphoneMessage NOTIFY changed)
    Q_PROPERTY(QString microphoneHint READ microphoneHint NOTIFY changed)
    /// What keeps a microphone that is granted from hearing the user; empty when nothing does.
    Q_PROPERTY(QString microphoneNotice READ microphoneNotice NOTIFY changed)
    Q_PROPERTY(bool isAccessibilityGranted READ isAccessibilityGranted NOTIFY changed)
    /// False where no permission would help.
    Q_PROPERTY(bool isAccessibilityAvailable READ isAccessibilityAvailable NOTIFY changed)

    // Diagnostics
    Q_PROPERTY(QString diagnostics READ diagnostics NOTIFY changed)

public:
    enum Theme { Light, Dark };
    Q_ENUM(Theme)
    enum DecodingProfile { Balanced, Accurate };
    Q_ENUM(DecodingProfile)
    enum ModelPreset { BaseModel, MediumModel, LargeV3Model };
    Q_ENUM(ModelPreset)

    /// The controller outlives this.
    SettingsModel(AppController &controller, const RecorderKeyboard &keyboard);

    QString statusText() const;
    StatusPillTone::Value statusTone() const;
    QString statusIcon() const;
    QString lastError() const;

    QString shortcut() const;
    QString shortcutHint() const;
    bool recordsShortcuts() const;
    bool configuresShortcuts() const;
    QString shortcutTip() const;
    ShortcutRecorder *recorder() { return &m_recorder; }
    Theme theme() const;
    void setTheme(Theme theme);

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
    bool isModelReady() const;
    bool isPreparingModel() const;
    QString downloadAmount() const;
    QString downloadPercentage() const;
    double downloadFraction() const;

    bool isMicrophoneGranted() const;
    QString microphoneMessage() const;
    QString microphoneHint() const;
    QString microphoneNotice() const;
    bool isAccessibilityGranted() const;
    bool isAccessibilityAvailable() const;

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
    /// Of any property but those of the download.
    void changed();
    void downloadChanged();
    /// "dashboard".
    void openWindowRequested(const QString &identifier);

private:
    AppController &m_controller;
    const AppState &m_state;
    ShortcutRecorder m_recorder;
};

} // namespace kestrova
