#include "ViewModels/AppController.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "ViewModels/DictationEventHandler.h"
#include "ViewModels/HotkeyBindings.h"
#include "ViewModels/HotkeyTexts.h"
#include "ViewModels/MicrophonePermissionMessages.h"

#include <QPointer>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

const QString installCommand = u"brew install whisper-cpp"_s;

bool copyToPasteboard(Pasteboard &pasteboard, const QString &text)
{
    try {
        pasteboard.setString(text);
        return true;
    } catch (const PlatformError &) {
        return false;
    }
}

} // namespace

void AppController::prepareModel(bool forceDownload)
{
    m_appState->isPreparingModel.set(true);
    m_environment.background.post([controller = QPointer(this), manager = m_modelManager,
                                   &main = m_environment.main, stop = m_programEnding.get_token(),
                                   forceDownload] {
        std::optional<QString> failure;
        try {
            manager->prepareModelIfNeeded(forceDownload, stop);
        } catch (const Cancelled &) {
            return;
        } catch (const std::exception &error) {
            failure = userFacingDescription(error);
        }
        main.post([controller, failure] {
            if (controller)
                controller->finishModelPreparation(failure);
        });
    });
}

void AppController::finishModelPreparation(const std::optional<QString> &failure)
{
    m_appState->modelDownload.set(std::nullopt);
    if (failure) {
        m_appState->isPreparingModel.set(false);
        showError(*failure);
        return;
    }
    m_appState->isModelReady.set(true);
    m_appState->isPreparingModel.set(false);
    m_appState->clearErrorIfNeeded();
}

void AppController::installWhisperCppViaHomebrew()
{
    const auto failed = [controller = QPointer(this)] {
        if (controller)
            controller->showInstallCommand();
    };
    try {
        m_environment.platform.terminal->openTerminalAndRun(installCommand, failed);
        m_appState->lastError.set(std::nullopt);
    } catch (const ReadableError &) {
        showInstallCommand();
    }
}

void AppController::showInstallCommand()
{
    const bool isCopied = copyToPasteboard(*m_environment.platform.pasteboard, installCommand);
    showError(u"Could not open Terminal automatically. Run `%1` manually%2."_s.arg(
        installCommand, isCopied ? u" (command copied to clipboard)"_s : u""_s));
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

void AppController::requestMicrophoneAccess()
{
    later([this] {
        m_permissionService->requestMicrophonePermission(
            [controller = QPointer(this)](bool isGranted) {
                if (controller)
                    controller->finishMicrophoneRequest(isGranted);
            });
    });
}

void AppController::finishMicrophoneRequest(bool isGranted)
{
    refreshEnvironmentSnapshot();
    if (isGranted) {
        m_appState->clearErrorIfNeeded();
        return;
    }
    const Platform &platform = m_environment.platform;
    const MicrophoneAuthorizationState status = m_appState->permissions.get().microphoneStatus;
    const auto advice = platform.systemAccess->microphoneAdvice(status);
    m_appState->lastError.set(
        advice ? *advice : microphonePermissionRecoveryMessage(status, platform.bundle.identifier));
}

void AppController::promptForAccessibility()
{
    m_permissionService->promptForAccessibility();
    refreshEnvironmentSnapshot();
}

void AppController::setGlobalShortcut(const HotkeyShortcut &shortcut)
{
    AppSettings settings = m_appState->settings.get();
    if (const auto conflict = mainShortcutConflict(settings, shortcut)) {
        showError(*conflict);
        return;
    }
    settings.shortcut = shortcut;
    commit(settings);
    m_appState->clearErrorIfNeeded();
}

void AppController::setHotbarShortcut(int slotIndex, const HotkeyShortcut &shortcut)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    AppSettings settings = m_appState->settings.get();
    if (const auto conflict = hotbarShortcutConflict(settings, slotIndex, shortcut)) {
        showError(*conflict);
        return;
    }
    settings.setHotbarShortcut(slotIndex, shortcut);
    commit(settings);
    m_appState->clearErrorIfNeeded();
}

void AppController::assignHotbarSlotFromFrontmost(int slotIndex)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    const auto candidate = m_targets.preferred();
    if (!candidate) {
        showError(u"Switch to the app you want, then try assigning the slot again."_s);
        return;
    }
    const QString identifier = candidate->bundleIdentifier.value_or(QString());
    if (identifier.isEmpty()) {
        showError(u"Could not resolve a bundle identifier for the selected application."_s);
        return;
    }
    AppSettings settings = m_appState->settings.get();
    settings.setHotbarAssignment(slotIndex, identifier,
                                 candidate->localizedName.value_or(identifier));
    commit(settings);
    m_appState->clearErrorIfNeeded();
}

QString AppController::hotbarShortcutDisplay(int slotIndex) const
{
    const auto &hotkeys = m_appState->hotkeys.get();
    const auto hotkey = hotkeys.find(hotbarHotkeyId(slotIndex));
    return hotkey == hotkeys.end() ? u"Unavailable"_s : shownKeys(*hotkey);
}

void AppController::updateSettings(const std::function<void(AppSettings &)> &change)
{
    AppSettings settings = m_appState->settings.get();
    change(settings);
    commit(settings);
}

void AppController::commit(const AppSettings &settings)
{
    AppSettings normalized = settings;
    normalized.hotbarAssignments =
        AppSettings::normalizedHotbarAssignments(settings.hotbarAssignments);
    m_appState->settings.set(normalized);
    m_settingsStore->save(normalized);
    registerHotkeys();
    refreshEnvironmentSnapshot();
}

} // namespace kestrova
