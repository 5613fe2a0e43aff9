#pragma once

#include "ViewModels/AppController.h"
#include "Views/Popover/SetupStep.h"
#include "Views/Primitives/Controls/PillStatus.h"
#include "Views/Primitives/Controls/ProgressStatus.h"

namespace kestrova {

/// What the menu bar popover shows and does. Main thread.
class PopoverModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")

    /// The setup face, in place of the dictation face.
    Q_PROPERTY(bool showsSetupExperience READ showsSetupExperience NOTIFY setupChanged)
    /// The face's last error; empty when there is none.
    Q_PROPERTY(QString lastError READ lastError NOTIFY errorChanged)

    /// What keeps the microphone from hearing the user; empty when nothing does.
    Q_PROPERTY(QString microphoneNotice READ microphoneNotice NOTIFY microphoneChanged)
    /// Why the last recording is not all that was said; empty when it is.
    Q_PROPERTY(QString recordingNotice READ recordingNotice NOTIFY transcriptChanged)

    // Setup face
    Q_PROPERTY(kestrova::SetupStep modelStep READ modelStep NOTIFY setupChanged)
    Q_PROPERTY(kestrova::SetupStep toolStep READ toolStep NOTIFY setupChanged)
    Q_PROPERTY(kestrova::SetupStep microphoneStep READ microphoneStep NOTIFY permissionsChanged)
    Q_PROPERTY(
        kestrova::SetupStep accessibilityStep READ accessibilityStep NOTIFY permissionsChanged)
    /// Whether the user can be asked for it.
    Q_PROPERTY(bool canGrantAccessibility READ canGrantAccessibility NOTIFY permissionsChanged)
    Q_PROPERTY(bool isPreparingModel READ isPreparingModel NOTIFY setupChanged)
    Q_PROPERTY(QString modelButtonTitle READ modelButtonTitle NOTIFY setupChanged)
    /// The amount is empty while nothing is downloaded.
    Q_PROPERTY(kestrova::ProgressStatus download READ download NOTIFY downloadChanged)

    // Dictation face
    Q_PROPERTY(kestrova::PillStatus status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString wordsProcessed READ wordsProcessed NOTIFY wordsProcessedChanged)
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY shortcutChanged)
    Q_PROPERTY(bool lacksPermission READ lacksPermission NOTIFY permissionsChanged)
    Q_PROPERTY(QString primaryButtonTitle READ primaryButtonTitle NOTIFY primaryButtonChanged)
    Q_PROPERTY(QString primaryButtonIcon READ primaryButtonIcon NOTIFY primaryButtonChanged)
    Q_PROPERTY(bool primaryButtonDisabled READ primaryButtonDisabled NOTIFY primaryButtonChanged)
    Q_PROPERTY(
        PrimaryButtonLook primaryButtonLook READ primaryButtonLook NOTIFY primaryButtonChanged)
    Q_PROPERTY(QString lastTranscript READ lastTranscript NOTIFY transcriptChanged)
    /// Why the last transcript may not have arrived; empty when its application asked for it.
    Q_PROPERTY(QString deliveryNotice READ deliveryNotice NOTIFY transcriptChanged)
    /// Those before it of which it is not known either, newest first.
    Q_PROPERTY(
        QList<QString> unconfirmedTranscripts READ unconfirmedTranscripts NOTIFY transcriptChanged)

public:
    /// Which colours the primary button has.
    enum PrimaryButtonLook { DisabledLook, RecordingLook, ProcessingLook, IdleLook };
    Q_ENUM(PrimaryButtonLook)

    /// The controller outlives this.
    explicit PopoverModel(AppController &controller, QObject *parent = nullptr);

    bool showsSetupExperience() const;
    QString lastError() const;
    QString microphoneNotice() const;
    QString recordingNotice() const;

    SetupStep modelStep() const;
    SetupStep toolStep() const;
    SetupStep microphoneStep() const;
    SetupStep accessibilityStep() const;
    bool canGrantAccessibility() const;
    bool isPreparingModel() const;
    QString modelButtonTitle() const;
    ProgressStatus download() const;

    PillStatus status() const;
    QString wordsProcessed() const;
    QString shortcut() const;
    bool lacksPermission() const;
    QString primaryButtonTitle() const;
    QString primaryButtonIcon() const;
    bool primaryButtonDisabled() const;
    PrimaryButtonLook primaryButtonLook() const;
    QString lastTranscript() const;
    QString deliveryNotice() const;
    QStringList unconfirmedTranscripts() const;

    /// Downloads the model anew.
    Q_INVOKABLE void downloadModel();
    Q_INVOKABLE void installWhisperCpp();
    Q_INVOKABLE void grantMicrophone();
    Q_INVOKABLE void grantAccessibility();
    /// Starts, ends or cancels a dictation. Before a start it asks for the popover to be dismissed,
    /// so that the dictation goes to the application behind it.
    Q_INVOKABLE void handlePrimaryAction();
    Q_INVOKABLE void copyError();
    Q_INVOKABLE void copyTranscript();
    /// By its place among the unconfirmed ones, of which it is none afterwards.
    Q_INVOKABLE void copyUnconfirmedTranscript(qsizetype place);
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void openDashboard();
    Q_INVOKABLE void openSettings();

Q_SIGNALS:
    void statusChanged();
    void wordsProcessedChanged();
    /// Also of what became of the transcript, and of those before it.
    void transcriptChanged();
    void errorChanged();
    /// Model and tool.
    void setupChanged();
    void downloadChanged();
    void permissionsChanged();
    void microphoneChanged();
    void shortcutChanged();
    void primaryButtonChanged();
    void dismissRequested();
    /// "dashboard" or "settings". The popover's dismissal is asked for afterwards.
    void openWindowRequested(const QString &identifier);
    void quitRequested();

private:
    void openWindow(const QString &identifier);

    AppController &m_controller;
    const AppState &m_state;
};

} // namespace kestrova
