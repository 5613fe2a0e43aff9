#pragma once

#include "App/Dictate/EventPrinter.h"
#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Platform/Platform.h"
#include "Services/DictationCoordinator.h"
#include "Services/SettingsStore.h"

#include <memory>

namespace kestrova {

/// One run of kestrova-dictate: the dictation services over the real platform, driven by command
/// lines. Main thread.
class DictateSession
{
public:
    /// The executor outlives the session.
    explicit DictateSession(MainExecutor &main);
    /// Ends a running transcription and everything else, and waits for it.
    ~DictateSession();
    Q_DISABLE_COPY_MOVE(DictateSession)

    /// Carries out "toggle", "toggle IDENTIFIER" or "cancel"; anything else is reported.
    void perform(const QString &command);

private:
    /// How long the end of the program waits for its workers.
    static constexpr std::chrono::seconds drainLimit{3};

    std::shared_ptr<DictationCoordinator> makeCoordinator();
    void take(const DictationCoordinatorEvent &event);
    void toggle(const QString &bundleIdentifier);
    std::optional<TargetApplication> applicationInFront();
    TargetApplication application(const QString &bundleIdentifier);

    MainExecutor &m_main;
    EventPrinter m_printer{m_main};
    Platform m_platform = makePlatform();
    SettingsStore m_settings{*m_platform.userDefaults};
    SystemClock m_clock;
    std::stop_source m_programEnding;
    BackgroundExecutor m_background;
    bool m_isRecording = false; // as reported; main thread
    const std::shared_ptr<DictationCoordinator> m_coordinator = makeCoordinator();
};

} // namespace kestrova
