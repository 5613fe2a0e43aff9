#include "ViewModels/AppController.h"

#include "Models/ReadableError.h"
#include "Services/Dictation/RestartingCapture.h"
#include "Services/PermissionService.h"
#include "ViewModels/DiagnosticsReporter.h"
#include "ViewModels/DictationServices.h"
#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/Texts/HotkeyTexts.h"

#include <QPointer>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// The inserter, whose late news are carried over to the state.
std::shared_ptr<TextInserting> followed(std::shared_ptr<TextInserting> inserter,
                                        const std::weak_ptr<AppState> &state)
{
    inserter->observeLateRequests([state](quint64 number) {
        if (const auto living = state.lock())
            confirmDelivery(*living, number);
    });
    return inserter;
}

/// Arms the controller's shortcuts again when it ends.
struct Suspension
{
    explicit Suspension(AppController *suspended) : controller(suspended) {}
    ~Suspension()
    {
        if (controller)
            controller->registerHotkeys();
    }
    Q_DISABLE_COPY_MOVE(Suspension)

    const QPointer<AppController> controller;
};

} // namespace

AppController::AppController(const AppEnvironment &environment,
                             std::shared_ptr<SettingsStore> settingsStore,
                             std::shared_ptr<AudioCapturing> audioCapture,
                             std::shared_ptr<TextInserting> textInserter)
    : m_environment(environment), m_settingsStore(std::move(settingsStore)),
      m_analyticsService(std::make_shared<UsageAnalyticsService>(
          *environment.platform.userDefaults, environment.storage,
          UsageAnalyticsService::standardKey(), UsageAnalyticsService::standardRetentionMonths,
          environment.calendar, environment.now)),
      m_hotkeyManager(makeHotkeyManager(environment.platform)),
      m_permissionService(std::make_unique<PermissionService>(*environment.platform.systemAccess,
                                                              *environment.platform.workspace)),
      m_appState(std::make_shared<AppState>(m_settingsStore->loadToEdit())),
      m_modelManager(makeModelManager(environment.platform, m_settingsStore, progressSink())),
      m_coordinator(std::make_shared<DictationCoordinator>(
          environment.background, std::make_shared<RestartingCapture>(std::move(audioCapture)),
          makeTranscriber(environment.platform, m_settingsStore, m_programEnding.get_token(),
                          environment.resolveTool, environment.tools),
          followed(std::move(textInserter), m_appState), m_modelManager,
          makeDictationEventSink(environment.main, m_appState, m_analyticsService, environment.now,
                                 [this] { return m_coordinator->resume(); }))),
      m_targets(*environment.platform.workspace), m_editor(*m_appState, m_settingsStore, m_targets,
                                                           [this] {
                                                               registerHotkeys();
                                                               refreshEnvironmentSnapshot();
                                                           }),
      m_setup({.platform = environment.platform,
               .main = environment.main,
               .background = environment.background,
               .state = *m_appState,
               .permissions = *m_permissionService,
               .models = m_modelManager,
               .programEnding = m_programEnding.get_token(),
               .refresh = [this] { refreshEnvironmentSnapshot(); }})
{
    listenToMicrophone();
    m_hotkeyManager->observeStatus([this] { readHotkeys(); });
    environment.platform.systemAccess->observe([this] { refreshEnvironmentSnapshot(); });
    refreshEnvironmentSnapshot();
    refreshUsageAnalytics();
    registerHotkeys();
    // Again, because observing the keyboard can change what the system reports.
    refreshEnvironmentSnapshot();
    refreshUsageAnalytics();
}

AppController::~AppController()
{
    m_environment.platform.audioInput->listen({});
    m_environment.platform.systemAccess->observe({});
    m_programEnding.request_stop();
    m_coordinator->cancelProcessing();
}

void AppController::listenToMicrophone()
{
    const auto tell = [this](auto member, auto value) {
        postTask([this, member, value] { ((*m_appState).*member).set(value); });
    };
    m_appState->microphone.set(m_environment.platform.audioInput->listen({
        .conditionChanged =
            [tell](MicrophoneCondition condition) { tell(&AppState::microphone, condition); },
        .recordingFailed =
            [tell](RecordingProblem problem) { tell(&AppState::recordingProblem, problem); },
    }));
}

void AppController::toggleRecordingWithDefaultTarget()
{
    toggleRecording([this] { start(m_targets.preferred(), std::nullopt); });
}

void AppController::toggleRecordingWithHotbarSlot(int slotIndex)
{
    toggleRecording([this, slotIndex] {
        if (const auto target = m_targets.forHotbarSlot(m_appState->settings.get(), slotIndex)) {
            start(target, slotIndex);
            return;
        }
        m_appState->showError(
            u"Hotbar slot %1 is unassigned. Assign an app in Dashboard > Hotbar Apps."_s.arg(
                slotIndex));
    });
}

void AppController::toggleRecording(const std::function<void()> &startWithTarget)
{
    refreshEnvironmentSnapshot();
    switch (m_appState->state.get().kind) {
    case DictationState::Kind::processing:
        return;
    case DictationState::Kind::recording:
        postTask([this] {
            m_coordinator->resume();
            m_coordinator->toggle();
        });
        return;
    case DictationState::Kind::idle:
    case DictationState::Kind::error:
        if (canStartRecording())
            startWithTarget();
        return;
    }
}

bool AppController::canStartRecording()
{
    const PermissionSnapshot permissions = m_appState->permissions.get();
    if (!m_appState->isModelReady.get()) {
        m_appState->showError(u"Model is not ready. Download ggml-base.bin before recording."_s);
        return false;
    }
    if (!m_appState->isWhisperCLIReady.get()) {
        m_appState->showError(u"whisper-cli not found. Install whisper.cpp and update Settings."_s);
        return false;
    }
    if (!permissions.microphoneAuthorized) {
        m_appState->showError(u"Microphone permission is required."_s);
        requestMicrophoneAccess();
        return false;
    }
    if (!permissions.accessibilityAuthorized) {
        m_appState->showError(u"Accessibility permission is required for text insertion."_s);
        promptForAccessibility();
        return false;
    }
    return true;
}

void AppController::start(const std::optional<TargetApplication> &target,
                          std::optional<int> slotIndex)
{
    m_appState->recordingProblem.set(std::nullopt);
    postTask([this, target, slotIndex] {
        m_coordinator->setInsertionContext(target, slotIndex);
        m_coordinator->toggle();
    });
}

void AppController::cancelProcessing()
{
    postTask([this] {
        m_coordinator->resume();
        m_coordinator->cancelProcessing();
    });
}

void AppController::registerHotkeys()
{
    const auto toggleMain = [this] { postTask([this] { toggleRecordingWithDefaultTarget(); }); };
    const auto toggleSlot = [this](int slotIndex) {
        postTask([this, slotIndex] { toggleRecordingWithHotbarSlot(slotIndex); });
    };
    try {
        if (m_suspension.expired())
            m_hotkeyManager->registerBindings(
                hotkeyBindings(m_appState->settings.get(), toggleMain, toggleSlot));
    } catch (const std::exception &error) {
        m_appState->showError(u"Failed to register hotkeys: "_s + userFacingDescription(error));
    }
    readHotkeys();
}

void AppController::readHotkeys()
{
    QMap<QString, HotkeyStatus> statuses;
    for (const HotkeyBinding &binding : hotkeyBindings(m_appState->settings.get(), {}, {}))
        statuses.insert(binding.id, m_hotkeyManager->status(binding));
    m_appState->hotkeys.set(statuses);
}

void AppController::unregisterHotkeys()
{
    m_hotkeyManager->unregister();
}

std::shared_ptr<void> AppController::suspendHotkeys()
{
    if (auto suspension = m_suspension.lock())
        return suspension;
    unregisterHotkeys();
    const auto suspension = std::make_shared<Suspension>(this);
    m_suspension = suspension;
    return suspension;
}

void AppController::refreshEnvironmentSnapshot()
{
    m_appState->permissions.set(m_permissionService->currentPermissions());
    m_appState->isModelReady.set(m_modelManager->modelStatus().isReady);
    const auto tool = m_environment.resolveTool(m_appState->settings.get().whisperCLIPath);
    m_appState->isWhisperCLIReady.set(tool.has_value());
    m_appState->resolvedWhisperCLIPath.set(tool.value_or(u""_s));
    m_appState->accessibility.set(m_environment.platform.systemAccess->accessibility());
    if (m_appState->microphone.get() == MicrophoneCondition::noServer)
        m_environment.background.post(
            [&input = *m_environment.platform.audioInput] { input.reconnect(); });
}

void AppController::refreshUsageAnalytics()
{
    m_analyticsService->refreshRetention();
    recomputeUsage(*m_appState, *m_analyticsService, m_environment.now());
}

void AppController::setUsageTrendPeriod(UsageTrendPeriod period)
{
    m_appState->usageTrendPeriod.set(period);
    m_appState->usageTrendBuckets.set(
        m_analyticsService->trendBuckets(period, m_environment.now()));
}

QString AppController::diagnosticsJSON()
{
    return DiagnosticsReporter{.permissions = m_permissionService->currentPermissions(),
                               .modelStatus = m_modelManager->modelStatus(),
                               .settings = m_appState->settings.get(),
                               .state = m_appState->state.get(),
                               .bundle = m_environment.platform.bundle}
        .renderJSON();
}

bool AppController::copy(const QString &text)
{
    try {
        m_environment.platform.pasteboard->setString(text);
        return true;
    } catch (const PlatformError &error) {
        m_appState->lastError.set(error.errorDescription());
        return false;
    }
}

void AppController::copyUnconfirmed(const UnconfirmedTranscript &transcript)
{
    if (copy(transcript.text))
        forgetUnconfirmed(*m_appState, transcript.number);
}

MicrophoneAdvice AppController::microphoneAdvice() const
{
    return kestrova::microphoneAdvice(m_environment.platform,
                                      m_appState->permissions.get().microphoneStatus);
}

QString AppController::hotbarShortcutDisplay(int slotIndex) const
{
    const auto &hotkeys = m_appState->hotkeys.get();
    const auto hotkey = hotkeys.find(hotbarHotkeyId(slotIndex));
    return hotkey == hotkeys.end() ? u"Unavailable"_s : shownKeys(*hotkey);
}

DownloadProgressSink AppController::progressSink()
{
    return [&main = m_environment.main,
            state = std::weak_ptr(m_appState)](const DownloadProgress &progress) {
        main.post([state, progress] {
            const auto living = state.lock();
            // An abandoned dictation may still report on its download.
            if (living && (living->isPreparingModel.get() ||
                           living->state.get() == DictationState::processing()))
                living->modelDownload.set(progress);
        });
    };
}

void AppController::postTask(std::function<void()> work)
{
    m_environment.main.post([controller = QPointer(this), work = std::move(work)] {
        if (controller)
            work();
    });
}

} // namespace kestrova
