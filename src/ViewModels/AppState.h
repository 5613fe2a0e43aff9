#pragma once

#include "Models/Dictation/Delivery.h"
#include "Models/Dictation/DictationState.h"
#include "Models/PermissionSnapshot.h"
#include "Models/Settings/AppSettings.h"
#include "Models/Usage/UsageRecords.h"
#include "Models/Usage/UsageTrendPeriod.h"
#include "Platform/Audio/AudioRecorder.h"
#include "Platform/SystemAccess.h"
#include "Services/HotkeyStatus.h"
#include "Services/Model/DownloadProgress.h"

#include <QMap>
#include <QObject>

namespace kestrova {

/// Everything that the user interface shows, in one place. Main thread only. The controller writes
/// it; views read it through a const reference and redraw on its signals.
class AppState final : public QObject
{
    Q_OBJECT

public:
    /// One member of the state. Each change of its value is announced by willChange() before and
    /// by the member's own signal after it.
    template <typename T>
    class Published
    {
    public:
        Published(AppState &owner, void (AppState::*changed)(), T initial = {})
            : m_owner(owner), m_changed(changed), m_value(std::move(initial))
        {
        }
        Q_DISABLE_COPY_MOVE(Published)

        const T &get() const { return m_value; }
        /// Setting an equal value is no change.
        void set(const T &value)
        {
            if (value != m_value)
                announce(value);
        }
        /// For what is news also when it is the same once more, such as an error.
        void announce(const T &value)
        {
            Q_EMIT m_owner.willChange();
            m_value = value;
            Q_EMIT(m_owner.*m_changed)();
        }

    private:
        AppState &m_owner;
        void (AppState::*const m_changed)();
        T m_value;
    };

    explicit AppState(const AppSettings &initialSettings);

    Published<DictationState> state{*this, &AppState::stateChanged};
    /// Since the program started; never stored.
    Published<qint64> sessionWordCount{*this, &AppState::sessionWordCountChanged};
    Published<QString> lastTranscript{*this, &AppState::lastTranscriptChanged, QLatin1String("")};
    /// What is known of the last transcript's way into its application.
    Published<Delivery> lastDelivery{
        *this, &AppState::lastDeliveryChanged, {.outcome = DeliveryOutcome::requested}};
    /// Transcripts before the last one of which it is not known that they arrived, newest first.
    Published<QList<UnconfirmedTranscript>> unconfirmedTranscripts{
        *this, &AppState::unconfirmedTranscriptsChanged};
    Published<std::optional<QString>> lastError{*this, &AppState::lastErrorChanged};
    Published<bool> isModelReady{*this, &AppState::isModelReadyChanged};
    Published<bool> isPreparingModel{*this, &AppState::isPreparingModelChanged};
    /// How far the download of the model has come; none while there is no download.
    Published<std::optional<DownloadProgress>> modelDownload{*this,
                                                             &AppState::modelDownloadChanged};
    Published<bool> isWhisperCLIReady{*this, &AppState::isWhisperCLIReadyChanged};
    /// Empty when there is no tool.
    Published<QString> resolvedWhisperCLIPath{*this, &AppState::resolvedWhisperCLIPathChanged,
                                              QLatin1String("")};
    Published<PermissionSnapshot> permissions{*this, &AppState::permissionsChanged};
    /// Of the permissions' accessibility, why it is not authorized.
    Published<Access> accessibility{*this, &AppState::accessibilityChanged, Access::granted};
    Published<MicrophoneCondition> microphone{*this, &AppState::microphoneChanged};
    /// Why the last recording is not all that was said; none when it is.
    Published<std::optional<RecordingProblem>> recordingProblem{*this,
                                                                &AppState::recordingProblemChanged};
    Published<AppSettings> settings;
    /// How the shortcuts of the settings stand, by the identifiers of their bindings.
    Published<QMap<QString, HotkeyStatus>> hotkeys{*this, &AppState::hotkeysChanged};
    Published<UsageDashboardSnapshot> usageSnapshot{*this, &AppState::usageSnapshotChanged,
                                                    UsageDashboardSnapshot::empty()};
    Published<UsageTrendPeriod> usageTrendPeriod{*this, &AppState::usageTrendPeriodChanged,
                                                 UsageTrendPeriod::daily};
    Published<QList<UsageBucket>> usageTrendBuckets{*this, &AppState::usageTrendBucketsChanged};

    /// Whether model and tool are there; what the user allows is told by the permissions.
    bool isSetUp() const { return isModelReady.get() && isWhisperCLIReady.get(); }
    /// Makes the message the last error and the state an error with it.
    void showError(const QString &message);
    /// Leaves the error state for idle, if that is the state, and forgets the last error.
    void clearErrorIfNeeded();

Q_SIGNALS:
    /// Before each change of any member.
    void willChange();

    void stateChanged();
    void sessionWordCountChanged();
    void lastTranscriptChanged();
    void lastDeliveryChanged();
    void unconfirmedTranscriptsChanged();
    void lastErrorChanged();
    void isModelReadyChanged();
    void isPreparingModelChanged();
    void modelDownloadChanged();
    void isWhisperCLIReadyChanged();
    void resolvedWhisperCLIPathChanged();
    void permissionsChanged();
    void accessibilityChanged();
    void microphoneChanged();
    void recordingProblemChanged();
    void settingsChanged();
    void hotkeysChanged();
    void usageSnapshotChanged();
    void usageTrendPeriodChanged();
    void usageTrendBucketsChanged();
};

} // namespace kestrova
