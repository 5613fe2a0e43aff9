#pragma once

#include "Concurrency/Executor.h"
#include "Platform/Platform.h"
#include "Services/Dictation/WhisperCppTranscriber.h"
#include "Services/Model/DownloadProgress.h"
#include "Services/Protocols.h"
#include "Services/Settings/SettingsStore.h"

#include <memory>
#include <stop_token>

/// The services as the platform and the stored settings make them. The settings are read anew on
/// each call, on the calling thread. The platform outlives all of them.
namespace kestrova {

/// Over named shortcuts where the desktop has them, else over the observed keys.
std::unique_ptr<HotkeyManaging> makeHotkeyManager(const Platform &platform);

std::shared_ptr<ModelManaging> makeModelManager(const Platform &platform,
                                                std::shared_ptr<const SettingsStore> settings,
                                                DownloadProgressSink progressSink = {});

/// A running tool is ended when programEnding is requested to stop. An abandoned dictation leaves
/// it to its thread of the tools, which outlive the transcriber.
std::shared_ptr<Transcribing> makeTranscriber(const Platform &platform,
                                              std::shared_ptr<const SettingsStore> settings,
                                              std::stop_token programEnding,
                                              WhisperCppTranscriber::ExecutableResolver resolveTool,
                                              Executor &tools);

} // namespace kestrova
