#pragma once

#include "Concurrency/Executor.h"
#include "Models/Usage/Calendar.h"
#include "Platform/Platform.h"
#include "Services/Dictation/DictationCoordinator.h"
#include "Services/Dictation/WhisperCppTranscriber.h"
#include "Services/Settings/SettingsStore.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "ViewModels/AppState.h"
#include "ViewModels/DictationEventHandler.h"
#include "ViewModels/InsertionTargets.h"
#include "ViewModels/SettingsEditor.h"
#include "ViewModels/SetupActions.h"
#include "ViewModels/Texts/MicrophonePermissionMessages.h"

#include <QObject>

namespace kestrova {

/// What the controller is built over. Everything referred to outlives it.
struct AppEnvironment
{
    Platform &platform;
    Executor &main;
    Executor &background;
    /// Has a thread for each transcription tool, however many hang.
    Executor &tools;
    /// Has a thread for each stored document: settings and usage log.
    Executor &storage;
    Calendar calendar = Calendar::current();
    UsageAnalyticsService::NowProvider now = &UsageAnalyticsService::wallClockNow;
    WhisperCppTranscriber::ExecutableResolver resolveTool =
        &WhisperCppTranscriber::resolveExecutablePath;
};

/// Ties the program together: owns the services and the state, turns shortcuts and buttons into
/// dictations with a destination, and hands changes of the settings and what is to be set up to
/// their owners. Main thread only.
/// No command throws; what goes wrong is shown in the state. Commands that start long work return
/// at once.
class AppController final : public QObject
{
public:
    /// Loads settings and usage log, arms the shortcuts and reads permissions, model and tool.
    AppController(const AppEnvironment &environment, std::shared_ptr<SettingsStore> settingsStore,
                  std::shared_ptr<AudioCapturing> audioCapture,
                  std::shared_ptr<TextInserting> textInserter);
    /// Abandons what is under way. The background executor may still be ending it afterwards.
    ~AppController() override;

    AppState &appState() { return *m_appState; }
    /// In which usage is counted.
    const Calendar &calendar() const { return m_environment.calendar; }

    // Dictation

    /// Starts a dictation into the application in front, or ends the recording of the running one.
    /// Nothing while one is being processed.
    void toggleRecordingWithDefaultTarget();
    /// The same into the slot's application.
    void toggleRecordingWithHotbarSlot(int slotIndex);
    /// Abandons a dictation that is being processed.
    void cancelProcessing();

    /// Arms the shortcuts of the settings, in place of those armed before, unless they are
    /// suspended.
    void registerHotkeys();
    void unregisterHotkeys();
    /// Disarms them for as long as the result lives, whatever is changed meanwhile: a new shortcut
    /// is being recorded. The result may outlive the controller.
    [[nodiscard]] std::shared_ptr<void> suspendHotkeys();
    ShortcutEditing shortcutEditing() const { return m_hotkeyManager->editing(); }
    /// Opens the desktop's dialog for them, where there is one.
    void configureShortcuts() { m_hotkeyManager->configure(); }

    /// What can be known of other applications here, and done with them.
    WorkspaceCapabilities workspaceCapabilities() const
    {
        return m_environment.platform.workspace->capabilities();
    }

    // What the state shows

    /// Reads permissions, model and tool anew.
    void refreshEnvironmentSnapshot();
    /// Drops what is past its retention and computes the dashboard anew.
    void refreshUsageAnalytics();
    void setUsageTrendPeriod(UsageTrendPeriod period);
    /// DiagnosticsReporter::renderJSON() of this moment.
    QString diagnosticsJSON();
    /// Puts a text that is shown, such as an error, on the clipboard. False when that failed, which
    /// is then the last error.
    bool copy(const QString &text);
    /// The same for one of the unconfirmed transcripts, which then is no longer one of them.
    void copyUnconfirmed(const UnconfirmedTranscript &transcript);

    // Setup

    /// Downloads the model where needed, or in any case when forced.
    void prepareModel(bool forceDownload) { m_setup.prepareModel(forceDownload); }
    /// Opens a terminal that installs the transcription tool.
    void installWhisperCppViaHomebrew() { m_setup.installWhisperCppViaHomebrew(); }
    void requestMicrophoneAccess() { m_setup.requestMicrophoneAccess(); }
    void promptForAccessibility() { m_setup.promptForAccessibility(); }
    /// What can be done about a microphone that is not granted.
    MicrophoneAdvice microphoneAdvice() const;

    // Settings: each change is stored and takes effect at once

    /// Refused when a hotbar slot has this shortcut.
    void setGlobalShortcut(const HotkeyShortcut &shortcut) { m_editor.setGlobalShortcut(shortcut); }
    /// Refused when it is the main one or another slot's. Slots outside 1 to 9 are ignored.
    void setHotbarShortcut(int slotIndex, const HotkeyShortcut &shortcut)
    {
        m_editor.setHotbarShortcut(slotIndex, shortcut);
    }
    /// Assigns the application in front. Slots outside 1 to 9 are ignored.
    void assignHotbarSlotFromFrontmost(int slotIndex)
    {
        m_editor.assignHotbarSlotFromFrontmost(slotIndex);
    }
    /// "Unavailable" for a slot that has none.
    QString hotbarShortcutDisplay(int slotIndex) const;
    /// Any other change; conflicts of shortcuts are not looked for.
    void updateSettings(const std::function<void(AppSettings &)> &change)
    {
        m_editor.update(change);
    }

private:
    void toggleRecording(const std::function<void()> &startWithTarget);
    bool canStartRecording();
    void start(const std::optional<TargetApplication> &target, std::optional<int> slotIndex);
    /// Does the work in a main-thread task, unless the controller is gone by then.
    void postTask(std::function<void()> work);
    void listenToMicrophone();
    void readHotkeys();
    DownloadProgressSink progressSink();

    const AppEnvironment m_environment;
    std::stop_source m_programEnding;
    const std::shared_ptr<SettingsStore> m_settingsStore;
    const std::shared_ptr<UsageAnalyticsManaging> m_analyticsService;
    const std::unique_ptr<HotkeyManaging> m_hotkeyManager;
    const std::unique_ptr<PermissionManaging> m_permissionService;
    const std::shared_ptr<AppState> m_appState;
    const std::shared_ptr<ModelManaging> m_modelManager;
    const std::shared_ptr<DictationCoordinator> m_coordinator;
    std::weak_ptr<void> m_suspension; ///< of the shortcuts
    InsertionTargets m_targets;
    SettingsEditor m_editor;
    SetupActions m_setup;
};

} // namespace kestrova
