#pragma once

#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/InlineExecutor.h"
#include "Platform/Fake/FakePlatform.h"
#include "Services/CoordinatorServices.h"
#include "Services/TestFiles.h"
#include "ViewModels/AppController.h"
#include "ViewModels/StateTrail.h"
#include "support/DateText.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace kestrova {

/// A controller with all that a dictation needs: model, tool and permissions are there, an editor
/// is in front, and the tool hears "Hello world". Work runs when the test says so.
///
/// With KESTROVA_TEST_DESKTOP=reticent in the environment, the desktop binds shortcuts by name, as
/// soon as one is pressed, and tells nothing about other applications.
class ControllerTest : public testing::Test
{
protected:
    ControllerTest()
    {
        putModel();
        installTool(toolPath());
        AppSettings settings = AppSettings::defaults();
        settings.whisperCLIPath = toolPath();
        settings.modelDownloadURL = u"http://127.0.0.1:1/ggml-base.bin"_s; // nobody answers there
        settingsStore->save(settings);
        fake.desktop->setRunning({editor, browser, ownProgram});
        fake.desktop->bringToFront(editor.processIdentifier);
        hear("Hello world");
        if (isReticent()) {
            useNamedShortcuts();
            fake.desktop->tellNothing();
        }
        launch();
    }

    static bool isReticent()
    {
        return qEnvironmentVariable("KESTROVA_TEST_DESKTOP") == u"reticent"_s;
    }
    /// Takes effect at the next launch.
    FakeGlobalShortcuts &useNamedShortcuts()
    {
        namedShortcuts = &fake.useNamedShortcuts();
        return *namedShortcuts;
    }

    /// Ends the controller, if there is one, and starts a new one.
    void launch()
    {
        end();
        controller = std::make_unique<AppController>(
            AppEnvironment{.platform = fake.platform,
                           .main = main,
                           .background = background,
                           .tools = tools,
                           .storage = storage,
                           .calendar = calendar,
                           .now = [this] { return now; },
                           .resolveTool = [this](const QString &path) { return tool(path); }},
            settingsStore, capture, inserter);
        trail.emplace(state());
    }
    void end()
    {
        trail.reset();
        controller.reset();
    }

    AppState &state() { return controller->appState(); }
    /// The members that changed since the last call, as StateTrail names them.
    QStringList changes() { return trail->take(); }
    QString lastError() { return state().lastError.get().value_or(u"none"_s); }
    /// The message of the error state, which the last error has to repeat.
    QString shownError()
    {
        const DictationState shown = state().state.get();
        return shown == DictationState::error(lastError()) ? lastError() : u"not shown"_s;
    }

    /// Does all the work there is, on both threads.
    void settle()
    {
        do
            main.runAll();
        while (background.runOne());
    }
    void toggle()
    {
        controller->toggleRecordingWithDefaultTarget();
        settle();
    }
    void toggleSlot(int slotIndex)
    {
        controller->toggleRecordingWithHotbarSlot(slotIndex);
        settle();
    }
    /// Goes on until the state shows processing; the processing itself waits.
    void toggleIntoProcessing()
    {
        toggle();
        controller->toggleRecordingWithDefaultTarget();
        main.runAll();
    }
    void press(const HotkeyShortcut &shortcut)
    {
        if (namedShortcuts) {
            pressNamed(shortcut);
            return;
        }
        fake.keyboard.pressGlobally({.keyCode = shortcut.keyCode, .modifiers = shortcut.modifiers});
    }
    bool areShortcutsArmed()
    {
        return namedShortcuts ? !namedShortcuts->requests().isEmpty()
                              : fake.keyboard.globalMonitorCount() > 0;
    }
    /// Where a dictation goes while this application is in front.
    static std::optional<TargetApplication> targetInFront(const RunningApplication &application)
    {
        return isReticent() ? std::nullopt : application.asTarget();
    }
    /// Where that of a slot goes which has this application, running, under this name.
    static TargetApplication targetOfSlot(const RunningApplication &application,
                                          const QString &name)
    {
        return {isReticent() ? 0 : application.processIdentifier, application.bundleIdentifier,
                name};
    }
    void assign(int slotIndex, const std::optional<QString> &identifier,
                const std::optional<QString> &name)
    {
        controller->updateSettings([&](AppSettings &settings) {
            settings.setHotbarAssignment(slotIndex, identifier, name);
        });
    }

    QString modelPath()
    {
        return fake.directories.applicationSupportDirectory() + u"/Kestrova/models/ggml-base.bin"_s;
    }
    void putModel()
    {
        QDir().mkpath(QFileInfo(modelPath()).path());
        writeFile(modelPath(), "model");
    }
    void removeModel() { QFile::remove(modelPath()); }
    QString toolPath() { return fake.directories.temporaryDirectory() + u"/whisper-cli"_s; }
    static void installTool(const QString &path)
    {
        writeFile(path, "#!/bin/sh\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
    }
    /// What the tool prints from now on.
    void hear(const QByteArray &text)
    {
        fake.processes.setBehaviour(
            [text](const FakeProcessCall &) { return ProcessOutcome{.standardOutput = text}; });
    }

    const RunningApplication editor{.processIdentifier = 100,
                                    .bundleIdentifier = u"org.example.Editor"_s,
                                    .localizedName = u"Editor"_s};
    const RunningApplication browser{.processIdentifier = 200,
                                     .bundleIdentifier = u"org.example.Browser"_s,
                                     .localizedName = u"Browser"_s};
    const RunningApplication ownProgram{.processIdentifier =
                                            qint32(QCoreApplication::applicationPid()),
                                        .bundleIdentifier = u"com.kestrova.app"_s,
                                        .localizedName = u"Kestrova"_s};

    FakePlatform fake;
    ManualExecutor main;
    ManualExecutor background;
    BackgroundExecutor tools;
    InlineExecutor storage;
    const Calendar calendar{QTimeZone("Europe/Berlin"), Qt::Monday, QLocale::c()};
    Date now = date("2024-03-15T12:00:00+01:00");
    /// Hides every tool, also one that this machine has.
    bool isToolHidden = false;
    /// Each reading of the environment looks for the tool once.
    int environmentReadings = 0;
    const std::shared_ptr<SettingsStore> settingsStore =
        std::make_shared<SettingsStore>(*fake.platform.userDefaults, storage);
    const std::shared_ptr<SubstituteCapture> capture = std::make_shared<SubstituteCapture>();
    const std::shared_ptr<SubstituteInserter> inserter = std::make_shared<SubstituteInserter>();
    std::unique_ptr<AppController> controller;

private:
    void pressNamed(const HotkeyShortcut &shortcut)
    {
        namedShortcuts->accept();
        for (const NamedShortcut &asked : namedShortcuts->requests().last()) {
            if (asked.preferredTrigger == shortcut)
                namedShortcuts->press(asked.id);
        }
    }
    std::optional<QString> tool(const QString &configuredPath)
    {
        ++environmentReadings;
        return isToolHidden ? std::nullopt
                            : WhisperCppTranscriber::resolveExecutablePath(configuredPath);
    }

    FakeGlobalShortcuts *namedShortcuts = nullptr; // owned by the platform
    std::optional<StateTrail> trail;
};

} // namespace kestrova
