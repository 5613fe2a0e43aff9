#include "ViewModels/DiagnosticsReporter.h"

#include "ViewModels/ControllerTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {
namespace {

DiagnosticsReporter fullReport()
{
    DiagnosticsReporter report{
        .permissions = {true, MicrophoneAuthorizationState::authorized, false},
        .modelStatus = {true, u"/home/ada/models/ggml-base.bin"_s, u""_s},
        .settings = AppSettings::defaults(),
        .state = DictationState::processing(),
        .bundle = {u"com.kestrova.app"_s, u"/usr/bin/kestrova"_s, u"1.2.3"_s, u"45"_s}};
    report.settings.whisperCLIPath = u" /opt/a \"b\"\\c/whisper-cli"_s;
    report.settings.modelDownloadURL = u"https://example.org/é.bin"_s;
    report.settings.transcriptionLanguage = u"de"_s;
    report.settings.decodingProfile = WhisperDecodingProfile::accurate;
    report.settings.theme = AppTheme::dark;
    report.settings.setHotbarAssignment(2, u"org.example.Editor"_s, u"Editor"_s);
    report.settings.setHotbarAssignment(4, {}, u"A name alone"_s);
    report.settings.setHotbarAssignment(9, u"org.example.Browser"_s, {});
    return report;
}

QJsonObject parsed(const QString &json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

TEST(DiagnosticsReporter, TheWholeDocumentIsAsTheUserPassesItOn)
{
    EXPECT_EQ(fullReport().renderJSON(), uR"({
    "appVersion": "1.2.3",
    "buildVersion": "45",
    "bundleIdentifier": "com.kestrova.app",
    "executablePath": "\/usr\/bin\/kestrova",
    "modelExpectedSHA256": "",
    "modelPath": "\/home\/ada\/models\/ggml-base.bin",
    "modelReady": true,
    "permissions": {
        "accessibility": false,
        "microphone": true,
        "microphoneStatus": "authorized"
    },
    "settings": {
        "decodingProfile": "accurate",
        "hotbarAssignedSlots": [
            {
                "appName": "Editor",
                "bundleIdentifier": "org.example.Editor",
                "slot": 2
            },
            {
                "appName": "",
                "bundleIdentifier": "org.example.Browser",
                "slot": 9
            }
        ],
        "modelDownloadURL": "https:\/\/example.org\/é.bin",
        "shortcut": "⌘⇧Space",
        "theme": "dark",
        "transcriptionLanguage": "de",
        "whisperCLIPath": " \/opt\/a \"b\"\\c\/whisper-cli"
    },
    "state": "AI Processing...",
    "warnings": [
        "Model SHA256 is empty; model downloads are unverified."
    ]
})"_s);
}

TEST(DiagnosticsReporter, TheDocumentIsReadAsItWasMeant)
{
    const QJsonObject settings = parsed(fullReport().renderJSON())["settings"_L1].toObject();
    EXPECT_EQ(settings["whisperCLIPath"_L1].toString(), u" /opt/a \"b\"\\c/whisper-cli"_s);
    EXPECT_EQ(settings["modelDownloadURL"_L1].toString(), u"https://example.org/é.bin"_s);
}

TEST(DiagnosticsReporter, OnlyAnEmptyDigestIsWarnedOf)
{
    DiagnosticsReporter report = fullReport();
    for (const QString &digest : {u" "_s, u"ab"_s}) {
        report.settings.modelSHA256 = digest;
        EXPECT_FALSE(parsed(report.renderJSON()).contains("warnings"_L1));
    }
}

TEST(DiagnosticsReporter, TheDigestIsThatOfTheModelStatus)
{
    DiagnosticsReporter report = fullReport();
    report.settings.modelSHA256 = u"ab"_s;
    report.modelStatus = {false, u"/m.bin"_s, u"cd"_s};
    const QJsonObject json = parsed(report.renderJSON());
    EXPECT_EQ(json["modelExpectedSHA256"_L1], u"cd"_s);
    EXPECT_EQ(json["modelReady"_L1], false);
    EXPECT_FALSE(json["settings"_L1].toObject().contains("modelSHA256"_L1));
}

TEST(DiagnosticsReporter, WhatIsNotKnownIsEmptyOrDev)
{
    DiagnosticsReporter report = fullReport();
    report.bundle = {};
    const QJsonObject json = parsed(report.renderJSON());
    EXPECT_EQ(json["bundleIdentifier"_L1], u""_s);
    EXPECT_EQ(json["executablePath"_L1], u""_s);
    EXPECT_EQ(json["appVersion"_L1], u"dev"_s);
    EXPECT_EQ(json["buildVersion"_L1], u"dev"_s);
}

TEST(DiagnosticsReporter, AnErrorIsNamedWithoutItsMessage)
{
    DiagnosticsReporter report = fullReport();
    report.state = DictationState::error(u"secret"_s);
    EXPECT_EQ(parsed(report.renderJSON())["state"_L1], u"Error occurred"_s);
    EXPECT_FALSE(report.renderJSON().contains(u"secret"_s));
}

TEST(DiagnosticsReporter, SlotsWithoutAnApplicationAreLeftOutAndTheOrderIsKept)
{
    DiagnosticsReporter report = fullReport();
    report.settings.hotbarAssignments = {
        {7, u"org.example.B"_s, {}, {}}, {1, u""_s, u"no"_s, {}}, {3, u"org.example.A"_s, {}, {}}};
    const QJsonArray assigned =
        parsed(report.renderJSON())["settings"_L1]["hotbarAssignedSlots"_L1].toArray();
    ASSERT_EQ(assigned.size(), 2);
    EXPECT_EQ(assigned[0]["slot"_L1], 7);
    EXPECT_EQ(assigned[1]["slot"_L1], 3);
}

TEST(DiagnosticsReporter, WhatHasNoJsonIsReportedAsAFailure)
{
    DiagnosticsReporter report = fullReport();
    report.settings.whisperCLIPath = QChar(0xD83D);
    EXPECT_EQ(report.renderJSON(), uR"({"error":"Failed to generate diagnostics"})"_s);
}

using AppControllerDiagnosticsTest = ControllerTest;

TEST_F(AppControllerDiagnosticsTest, TheReportIsOfThisMoment)
{
    end();
    fake.platform.bundle = {u"com.kestrova.app"_s, u"/usr/bin/kestrova"_s, u"1.2.3"_s, u"45"_s};
    launch();
    controller->updateSettings([](AppSettings &settings) { settings.modelSHA256 = u"ab"_s; });
    removeModel();
    toggle();
    fake.access.setMicrophoneState(MicrophoneAuthorizationState::denied);
    changes();
    const QString report = controller->diagnosticsJSON();
    EXPECT_EQ(report, (DiagnosticsReporter{
                           .permissions = {false, MicrophoneAuthorizationState::denied, true},
                           .modelStatus = {false, modelPath(), u"ab"_s},
                           .settings = state().settings.get(),
                           .state = DictationState::error({}),
                           .bundle = fake.platform.bundle})
                          .renderJSON());
    EXPECT_EQ(changes(), QStringList()) << "reporting changes nothing";
}

TEST_F(AppControllerDiagnosticsTest, TheReportHoldsNothingThatWasDictated)
{
    hear("confidential words");
    toggle();
    toggle();
    ASSERT_EQ(state().lastTranscript.get(), u"confidential words"_s);
    EXPECT_FALSE(controller->diagnosticsJSON().contains(u"confidential"_s));
}

} // namespace
} // namespace kestrova
