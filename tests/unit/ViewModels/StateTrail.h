#pragma once

#include "ViewModels/AppState.h"

#include <QStringList>

namespace kestrova {

using namespace Qt::StringLiterals;

/// Follows a state: the members that changed, in order. The dictation state comes with its value,
/// "state recording", and the error with its presence, "lastError" or "no lastError".
class StateTrail
{
public:
    explicit StateTrail(AppState &state)
    {
        follow(state, &AppState::stateChanged,
               [&state] { return u"state "_s + rawValue(state.state.get().kind); });
        follow(state, &AppState::lastErrorChanged,
               [&state] { return state.lastError.get() ? u"lastError"_s : u"no lastError"_s; });
        follow(state, &AppState::sessionWordCountChanged, u"sessionWordCount"_s);
        follow(state, &AppState::lastTranscriptChanged, u"lastTranscript"_s);
        follow(state, &AppState::isModelReadyChanged, u"isModelReady"_s);
        follow(state, &AppState::isPreparingModelChanged, u"isPreparingModel"_s);
        follow(state, &AppState::modelDownloadChanged, u"modelDownload"_s);
        follow(state, &AppState::isWhisperCLIReadyChanged, u"isWhisperCLIReady"_s);
        follow(state, &AppState::resolvedWhisperCLIPathChanged, u"resolvedWhisperCLIPath"_s);
        follow(state, &AppState::permissionsChanged, u"permissions"_s);
        follow(state, &AppState::accessibilityChanged, u"accessibility"_s);
        follow(state, &AppState::microphoneChanged, u"microphone"_s);
        follow(state, &AppState::recordingProblemChanged, u"recordingProblem"_s);
        follow(state, &AppState::settingsChanged, u"settings"_s);
        follow(state, &AppState::hotkeysChanged, u"hotkeys"_s);
        follow(state, &AppState::usageSnapshotChanged, u"usageSnapshot"_s);
        follow(state, &AppState::usageTrendPeriodChanged, u"usageTrendPeriod"_s);
        follow(state, &AppState::usageTrendBucketsChanged, u"usageTrendBuckets"_s);
    }

    /// What came since the last call.
    QStringList take() { return std::exchange(m_changes, {}); }

private:
    void follow(AppState &state, void (AppState::*changed)(), std::function<QString()> describe)
    {
        QObject::connect(&state, changed, &m_context,
                         [this, describe = std::move(describe)] { m_changes.append(describe()); });
    }
    void follow(AppState &state, void (AppState::*changed)(), const QString &name)
    {
        follow(state, changed, [name] { return name; });
    }

    QObject m_context;
    QStringList m_changes;
};

} // namespace kestrova
