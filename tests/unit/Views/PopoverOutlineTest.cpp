#include "Views/Popover/PopoverModel.h"

#include "Views/WindowOutlineTest.h"
#include "support/WaitUntil.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using Microphone = MicrophoneAuthorizationState;

const QStringList footer = {u"tool bar Kestrova"_s, u"button Dashboard"_s,
                            u"button Refresh setup state"_s, u"button Open Settings"_s,
                            u"button Quit Kestrova"_s};
const QStringList footerSymbols = {u"rectangle.grid.1x2"_s, u"arrow.clockwise"_s, u"gear"_s,
                                   u"power"_s};
const QStringList dictationHead = {u"dialog Kestrova"_s, u"heading Kestrova"_s,
                                   u"text Local Voice Dictation"_s};
const QStringList dictationMetrics = {u"text Words Processed"_s, u"text 0"_s, u"text Shortcut"_s,
                                      u"text ⌘⇧Space"_s};
const QString permissionWarning =
    u"text Grant microphone and accessibility permissions for reliable auto-paste."_s;

class PopoverOutlineTest : public WindowOutlineTest
{
protected:
    void open() { show(u"Popover/MenuBarPopover.qml"_s, model); }
    void forget()
    {
        removeModel();
        isToolHidden = true;
        fake.access.setMicrophoneState(Microphone::denied);
        fake.access.setAccessibilityTrusted(false);
        controller->refreshEnvironmentSnapshot();
    }

    static QString shownColour(const QObject &object)
    {
        return object.property("color").value<QColor>().name(QColor::HexArgb);
    }

    PopoverModel model{*controller};
};

TEST_F(PopoverOutlineTest, TheDictationFace)
{
    open();
    EXPECT_EQ(outline(), dictationHead + QStringList{u"text Ready"_s} + dictationMetrics +
                             QStringList{u"button Start Recording"_s} + footer);
    EXPECT_EQ(symbols(), QStringList({u"checkmark"_s, u"record.circle"_s}) + footerSymbols);
}

TEST_F(PopoverOutlineTest, TheDictationFaceOfEachState)
{
    open();
    struct Face
    {
        DictationState state;
        QString status, statusSymbol, button, buttonSymbol;
    };
    const std::vector<Face> faces = {
        {DictationState::recording(), u"Recording..."_s, u"waveform"_s, u"Stop & Insert"_s,
         u"stop.fill"_s},
        {DictationState::processing(), u"AI Processing..."_s, u"hourglass"_s, u"Cancel"_s,
         u"xmark"_s},
        {DictationState::error(u"Failed."_s), u"Error occurred"_s, u"xmark"_s, u"Start Recording"_s,
         u"record.circle"_s},
    };
    for (const Face &face : faces) {
        state().state.set(face.state);
        EXPECT_EQ(outline(), dictationHead + QStringList{u"text "_s + face.status} +
                                 dictationMetrics + QStringList{u"button "_s + face.button} +
                                 footer);
        EXPECT_EQ(symbols(), QStringList({face.statusSymbol, face.buttonSymbol}) + footerSymbols);
    }
}

TEST_F(PopoverOutlineTest, TranscriptAndErrorComeBelowTheButton)
{
    open();
    state().lastTranscript.set(u"Hello world"_s);
    state().lastError.set(u"It failed."_s);
    const QStringList lines = outline();
    const QStringList expected = {u"button Start Recording"_s, u"text Last Transcript"_s};
    EXPECT_EQ(lines.mid(lines.indexOf(expected.first()), 2), expected);
    EXPECT_LT(lines.indexOf(u"text Last Transcript"_s), lines.indexOf(u"alert It failed."_s));
    EXPECT_LT(lines.indexOf(u"alert It failed."_s), lines.indexOf(footer.first()));
}

TEST_F(PopoverOutlineTest, AMissingPermissionIsWarnedOfWithAWayToMendIt)
{
    open();
    EXPECT_FALSE(shows(permissionWarning));
    fake.access.setAccessibilityTrusted(false);
    controller->refreshEnvironmentSnapshot();
    EXPECT_EQ(outline(), dictationHead + QStringList{u"text Ready"_s} + dictationMetrics +
                             QStringList({permissionWarning, u"button Fix"_s,
                                          u"button Start Recording (disabled)"_s}) +
                             footer);
    EXPECT_EQ(symbols().value(1), u"exclamationmark.triangle.fill"_s);

    QStringList opened;
    QObject::connect(&model, &PopoverModel::openWindowRequested,
                     [&](const QString &identifier) { opened.append(identifier); });
    press(u"button Fix"_s);
    press(u"button Fix"_s);
    EXPECT_EQ(opened, QStringList({u"settings"_s, u"settings"_s}));
}

TEST_F(PopoverOutlineTest, TheSetupFaceWithNothingSetUp)
{
    forget();
    open();
    EXPECT_EQ(
        outline(),
        QStringList({u"dialog Kestrova"_s, u"heading Setup Needed"_s,
                     u"text Complete setup before recording"_s, u"text Model"_s,
                     u"text Download ggml-base.bin"_s, u"text Pending"_s, u"text Whisper CLI"_s,
                     u"text Install whisper.cpp and configure whisper-cli"_s, u"text Pending"_s,
                     u"text Microphone"_s, u"text Permission required"_s, u"text Pending"_s,
                     u"text Accessibility"_s, u"text Permission needed for auto paste"_s,
                     u"text Pending"_s, u"button Download ggml-base.bin"_s,
                     u"button Install whisper.cpp via Homebrew"_s, u"button Grant Microphone"_s,
                     u"button Grant Accessibility"_s}) +
            footer);
    EXPECT_EQ(symbols(), QStringList(4, u"exclamationmark"_s) +
                             QStringList{u"square.and.arrow.down"_s} + footerSymbols);
}

TEST_F(PopoverOutlineTest, TheSetupFaceWithAllButTheTool)
{
    isToolHidden = true;
    controller->refreshEnvironmentSnapshot();
    open();
    EXPECT_EQ(
        outline().mid(3),
        QStringList({u"text Model"_s, u"text ggml-base.bin ready"_s, u"text Ready"_s,
                     u"text Whisper CLI"_s, u"text Install whisper.cpp and configure whisper-cli"_s,
                     u"text Pending"_s, u"text Microphone"_s, u"text Permission granted"_s,
                     u"text Ready"_s, u"text Accessibility"_s, u"text Permission granted"_s,
                     u"text Ready"_s, u"button Download ggml-base.bin"_s,
                     u"button Install whisper.cpp via Homebrew"_s}) +
            footer);
}

TEST_F(PopoverOutlineTest, AFoundToolIsNamedByItsPath)
{
    removeModel();
    controller->refreshEnvironmentSnapshot();
    open();
    EXPECT_TRUE(shows(u"text Found at "_s + toolPath()));
    EXPECT_FALSE(shows(u"button Install whisper.cpp via Homebrew"_s));
}

TEST_F(PopoverOutlineTest, SetupButtonsDoWhatTheySay)
{
    forget();
    open();
    press(u"button Install whisper.cpp via Homebrew"_s);
    EXPECT_EQ(fake.terminal.commands(), QStringList{u"brew install whisper-cpp"_s});
    press(u"button Grant Accessibility"_s);
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    fake.access.setMicrophoneState(Microphone::notDetermined);
    press(u"button Grant Microphone"_s);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1);
    const int before = environmentReadings;
    press(u"button Refresh setup state"_s);
    EXPECT_EQ(environmentReadings, before + 1);
}

TEST_F(PopoverOutlineTest, TheModelButtonWaitsForTheDownload)
{
    removeModel();
    controller->refreshEnvironmentSnapshot();
    open();
    ASSERT_TRUE(pressItem(*window, u"button Download ggml-base.bin"_s));
    EXPECT_TRUE(shows(u"button Downloading model... (disabled)"_s));
    EXPECT_FALSE(symbols().contains(u"square.and.arrow.down"_s)) << "the spinner is in its place";
    settle();
    EXPECT_TRUE(shows(u"button Download ggml-base.bin"_s));
}

TEST_F(PopoverOutlineTest, TheRoundButtonsColours)
{
    open();
    struct Look
    {
        QString button;
        std::function<void()> arrange;
        const char *fill, *ring; // opacity first
    };
    const std::vector<Look> looks = {
        {u"button Start Recording"_s, [] {}, "#24eb731f", "#47eb731f"},
        {u"button Stop & Insert"_s, [&] { state().state.set(DictationState::recording()); },
         "#ffeb731f", "#bfeb731f"},
        {u"button Cancel"_s, [&] { state().state.set(DictationState::processing()); }, "#2ee07b00",
         "#4de07b00"},
        {u"button Start Recording (disabled)"_s,
         [&] {
             state().state.set(DictationState::idle());
             fake.access.setAccessibilityTrusted(false);
             controller->refreshEnvironmentSnapshot();
         },
         "#148a8580", "#338a8580"},
    };
    for (const Look &look : looks) {
        look.arrange();
        const QQuickItem *button = findItem(*window, look.button);
        ASSERT_NE(button, nullptr) << look.button.toStdString();
        EXPECT_EQ(button->size(), QSizeF(30, 30));
        const auto *background = button->property("background").value<QQuickItem *>();
        EXPECT_EQ(shownColour(*background), QLatin1String(look.fill));
        const auto *ring = background->property("border").value<QObject *>();
        EXPECT_EQ(ring->property("width"), 1);
        EXPECT_TRUE(waitUntil([&] { return shownColour(*ring) == QLatin1String(look.ring); }))
            << "the ring fades from " << shownColour(*ring).toStdString();
    }
}

} // namespace
} // namespace kestrova
