#pragma once

#include "Concurrency/Executor.h"
#include "Platform/Platform.h"
#include "Services/Protocols.h"
#include "ViewModels/AppState.h"

#include <QObject>

#include <memory>
#include <stop_token>

namespace kestrova {

/// What the user is helped with before a first dictation: model, tool, microphone, keyboard. Long
/// work and questions go on after a call has returned; their ends are shown in the state. Main
/// thread; nothing throws.
class SetupActions final : public QObject
{
public:
    /// Everything referred to outlives this.
    struct Environment
    {
        Platform &platform;
        Executor &main;
        Executor &background;
        AppState &state;
        PermissionManaging &permissions;
        std::shared_ptr<ModelManaging> models;
        std::stop_token programEnding;
        std::function<void()> refresh; ///< reads permissions, model and tool anew
    };

    explicit SetupActions(Environment environment) : m_environment(std::move(environment)) {}

    /// As the operations of the same names of AppController.
    void prepareModel(bool forceDownload);
    void installWhisperCppViaHomebrew();
    void requestMicrophoneAccess();
    void promptForAccessibility();

private:
    void finishModelPreparation(const std::optional<QString> &failure);
    /// The error of a terminal that cannot be opened.
    void showInstallCommand();
    void finishMicrophoneRequest(bool isGranted);

    const Environment m_environment;
};

} // namespace kestrova
