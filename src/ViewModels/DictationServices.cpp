#include "ViewModels/DictationServices.h"

#include "Services/Dictation/AbandonableTranscriber.h"
#include "Services/Model/DefaultModelManager.h"
#include "Services/Shortcuts/GlobalHotkeyManager.h"
#include "Services/Shortcuts/NamedShortcutManager.h"

namespace kestrova {

using namespace Qt::StringLiterals;

std::unique_ptr<HotkeyManaging> makeHotkeyManager(const Platform &platform)
{
    if (platform.globalShortcuts)
        return std::make_unique<NamedShortcutManager>(*platform.globalShortcuts);
    return std::make_unique<GlobalHotkeyManager>(*platform.keyMonitoring);
}

std::shared_ptr<ModelManaging> makeModelManager(const Platform &platform,
                                                std::shared_ptr<const SettingsStore> settings,
                                                DownloadProgressSink progressSink)
{
    auto config = [settings = std::move(settings)] {
        const AppSettings stored = settings->load();
        return ModelConfig{stored.modelDownloadURL, stored.modelSHA256};
    };
    return std::make_shared<DefaultModelManager>(*platform.directories, config, u"ggml-base.bin"_s,
                                                 std::move(progressSink));
}

std::shared_ptr<Transcribing> makeTranscriber(const Platform &platform,
                                              std::shared_ptr<const SettingsStore> settings,
                                              std::stop_token programEnding,
                                              WhisperCppTranscriber::ExecutableResolver resolveTool,
                                              Executor &tools)
{
    auto config = [settings = std::move(settings)] {
        const AppSettings stored = settings->load();
        return WhisperCppConfig{.cliPath = stored.whisperCLIPath,
                                .language = stored.transcriptionLanguage,
                                .decodingProfile = stored.decodingProfile};
    };
    const auto transcriber =
        std::make_shared<WhisperCppTranscriber>(config, *platform.processes, *platform.directories,
                                                std::move(programEnding), std::move(resolveTool));
    return std::make_shared<AbandonableTranscriber>(transcriber, tools);
}

} // namespace kestrova
