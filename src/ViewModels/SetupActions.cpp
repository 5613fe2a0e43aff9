#include "ViewModels/SetupActions.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "ViewModels/Texts/MicrophonePermissionMessages.h"

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

void SetupActions::prepareModel(bool forceDownload)
{
    m_environment.state.isPreparingModel.set(true);
    m_environment.background.post([actions = QPointer(this), models = m_environment.models,
                                   &main = m_environment.main, stop = m_environment.programEnding,
                                   forceDownload] {
        std::optional<QString> failure;
        try {
            models->prepareModelIfNeeded(forceDownload, stop);
        } catch (const Cancelled &) {
            return;
        } catch (const std::exception &error) {
            failure = userFacingDescription(error);
        }
        main.post([actions, failure] {
            if (actions)
                actions->finishModelPreparation(failure);
        });
    });
}

void SetupActions::finishModelPreparation(const std::optional<QString> &failure)
{
    AppState &state = m_environment.state;
    state.modelDownload.set(std::nullopt);
    if (failure) {
        state.isPreparingModel.set(false);
        state.showError(*failure);
        return;
    }
    state.isModelReady.set(true);
    state.isPreparingModel.set(false);
    state.clearErrorIfNeeded();
}

void SetupActions::installWhisperCppViaHomebrew()
{
    const auto failed = [actions = QPointer(this)] {
        if (actions)
            actions->showInstallCommand();
    };
    try {
        m_environment.platform.terminal->openTerminalAndRun(installCommand, failed);
        m_environment.state.lastError.set(std::nullopt);
    } catch (const ReadableError &) {
        showInstallCommand();
    }
}

void SetupActions::showInstallCommand()
{
    const bool isCopied = copyToPasteboard(*m_environment.platform.pasteboard, installCommand);
    m_environment.state.showError(
        u"Could not open Terminal automatically. Run `%1` manually%2."_s.arg(
            installCommand, isCopied ? u" (command copied to clipboard)"_s : u""_s));
}

void SetupActions::requestMicrophoneAccess()
{
    m_environment.main.post([actions = QPointer(this)] {
        if (!actions)
            return;
        actions->m_environment.permissions.requestMicrophonePermission([actions](bool isGranted) {
            if (actions)
                actions->finishMicrophoneRequest(isGranted);
        });
    });
}

void SetupActions::finishMicrophoneRequest(bool isGranted)
{
    m_environment.refresh();
    AppState &state = m_environment.state;
    if (isGranted) {
        state.clearErrorIfNeeded();
        return;
    }
    state.lastError.set(microphoneRecoveryMessage(m_environment.platform,
                                                  state.permissions.get().microphoneStatus));
}

void SetupActions::promptForAccessibility()
{
    m_environment.permissions.promptForAccessibility();
    m_environment.refresh();
}

} // namespace kestrova
