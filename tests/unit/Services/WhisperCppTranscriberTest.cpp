#include "Services/Dictation/WhisperCppTranscriber.h"
#include "Concurrency/Cancelled.h"
#include "Models/KestrovaError.h"
#include "Platform/Fake/FakeProcessRunning.h"
#include "Platform/Fake/FakeStandardDirectories.h"
#include "Platform/Linux/Applications/EndWithParent.h"
#include "Platform/Posix/ChildProcesses.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

void writeFile(const QString &path, const QByteArray &bytes,
               QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.setPermissions(permissions);
}

class WhisperCppTranscriberTest : public testing::Test
{
protected:
    void SetUp() override
    {
        writeExecutable(u"whisper-cli"_s);
        writeFile(model.toLocalFile(), "model");
        config.cliPath = path(u"whisper-cli"_s);
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    void writeExecutable(const QString &name)
    {
        writeFile(path(name), "#!/bin/sh\n",
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    TranscriptionResult transcribe() { return transcriber.transcribe(audio, model, {}); }

    QString failureOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const ReadableError &error) {
            return error.errorDescription();
        }
        return u"no failure"_s;
    }

    static QString outputPath(const FakeProcessCall &call)
    {
        return call.arguments.value(call.arguments.indexOf(u"-of"_s) + 1) + u".txt"_s;
    }

    void answerWithFile(const QByteArray &text)
    {
        processes.setBehaviour([text](const FakeProcessCall &call) {
            writeFile(outputPath(call), text);
            return ProcessOutcome{};
        });
    }

    QTemporaryDir folder;
    FakeProcessRunning processes;
    FakeStandardDirectories directories;
    WhisperCppConfig config{.language = u"auto"_s};
    std::stop_source programEnding;
    WhisperCppTranscriber transcriber{[this] { return config; }, processes, directories,
                                      programEnding.get_token()};
    const QUrl audio = QUrl::fromLocalFile(u"/a b.wav"_s);
    const QUrl model = QUrl::fromLocalFile(path(u"model é.bin"_s));
};

TEST_F(WhisperCppTranscriberTest, CandidatesAreTestedInAFixedOrder)
{
    const QStringList fixed = {u"/opt/homebrew/bin/whisper-cli"_s, u"/usr/local/bin/whisper-cli"_s,
                               u"/opt/homebrew/bin/whisper-cpp"_s, u"/usr/local/bin/whisper-cpp"_s};
    EXPECT_EQ(WhisperCppTranscriber::executableCandidates(u" \n"_s, u"/a::/b"_s),
              fixed + QStringList({u"/a/whisper-cli"_s, u"/a/whisper-cpp"_s, u"/b/whisper-cli"_s,
                                   u"/b/whisper-cpp"_s}));
    EXPECT_EQ(WhisperCppTranscriber::executableCandidates(u" /my tool\t"_s, u""_s),
              QStringList{u"/my tool"_s} + fixed);
    EXPECT_EQ(WhisperCppTranscriber::executableCandidates(u""_s, u"/a/"_s).mid(4),
              QStringList({u"/a//whisper-cli"_s, u"/a//whisper-cpp"_s}));
}

TEST_F(WhisperCppTranscriberTest, APaddedPathIsTrimmedAndAccepted)
{
    EXPECT_EQ(WhisperCppTranscriber::resolveExecutablePath(u" \n"_s + config.cliPath + u"\t "_s),
              config.cliPath);
}

TEST_F(WhisperCppTranscriberTest, AConfiguredPathThatIsNoExecutableFileFallsThrough)
{
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder.path()));
    const auto fallback = WhisperCppTranscriber::resolveExecutablePath(u"  "_s);
    writeFile(path(u"plain"_s), "text");
    EXPECT_EQ(WhisperCppTranscriber::resolveExecutablePath(path(u"plain"_s)), fallback);
    EXPECT_EQ(WhisperCppTranscriber::resolveExecutablePath(path(u"missing"_s)), fallback);
    EXPECT_EQ(WhisperCppTranscriber::resolveExecutablePath(folder.path()), fallback);
    qputenv("PATH", oldPath);
    ASSERT_TRUE(fallback);
    EXPECT_NE(*fallback, path(u"plain"_s));
}

TEST_F(WhisperCppTranscriberTest, TheBalancedProfilePassesTenArguments)
{
    answerWithFile("text");
    transcribe();
    ASSERT_EQ(processes.calls().size(), 1);
    const FakeProcessCall call = processes.calls().first();
    EXPECT_EQ(call.executable, config.cliPath);
    const QString base = outputPath(call).chopped(4);
    EXPECT_EQ(call.arguments,
              QStringList({u"-m"_s, model.toLocalFile(), u"-f"_s, u"/a b.wav"_s, u"-of"_s, base,
                           u"-otxt"_s, u"-nt"_s, u"-l"_s, u"auto"_s}));
    const QRegularExpression name(
        u"^/kestrova-transcript-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
    ASSERT_TRUE(base.startsWith(directories.temporaryDirectory()));
    EXPECT_TRUE(name.match(base.mid(directories.temporaryDirectory().size())).hasMatch());
}

TEST_F(WhisperCppTranscriberTest, TheAccurateProfileAppendsFiveArguments)
{
    config.decodingProfile = WhisperDecodingProfile::accurate;
    answerWithFile("text");
    transcribe();
    EXPECT_EQ(processes.calls().first().arguments.size(), 15);
    EXPECT_EQ(processes.calls().first().arguments.mid(10),
              QStringList({u"-bs"_s, u"10"_s, u"-bo"_s, u"10"_s, u"-sns"_s}));
}

TEST_F(WhisperCppTranscriberTest, TheLanguageIsTrimmedAndLowerCaseAndAutoWhenEmpty)
{
    answerWithFile("text");
    for (const auto &[language, passed] : {std::pair{u" EN\n"_s, u"en"_s},
                                           {u""_s, u"auto"_s},
                                           {u" \t"_s, u"auto"_s},
                                           {u"Klingon"_s, u"klingon"_s}}) {
        config.language = language;
        transcribe();
        EXPECT_EQ(processes.calls().last().arguments.last(), passed);
    }
}

TEST_F(WhisperCppTranscriberTest, TheConfigurationIsReadForEveryTranscription)
{
    answerWithFile("text");
    transcribe();
    writeExecutable(u"other"_s);
    config.cliPath = path(u"other"_s);
    transcribe();
    EXPECT_EQ(processes.calls().last().executable, path(u"other"_s));
    EXPECT_EQ(config.pinnedCommit, u"9f70a352f9c9c4209f3e8f79f4f4f0f6b27f2b7d"_s);
}

TEST_F(WhisperCppTranscriberTest, TheOutputFileIsReadTrimmedAndRemoved)
{
    answerWithFile(" Grüße, 世界.\n\n");
    EXPECT_EQ(transcribe().text, u"Grüße, 世界."_s);
    EXPECT_TRUE(QDir(directories.temporaryDirectory()).isEmpty());
}

TEST_F(WhisperCppTranscriberTest, WithoutAnOutputFileThePrintedTextIsUsed)
{
    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.standardOutput = "\n printed text\n"};
    });
    EXPECT_EQ(transcribe().text, u"printed text"_s);
}

TEST_F(WhisperCppTranscriberTest, ATranscriptIsNeverCut)
{
    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.standardOutput = "Hello", .isStandardOutputWhole = false};
    });
    EXPECT_EQ(failureOf([&] { transcribe(); }), u"whisper-cli: The transcript is too long."_s);

    QString file;
    processes.setBehaviour([&](const FakeProcessCall &call) {
        file = outputPath(call);
        writeFile(file, "Hello");
        QFile::resize(file, qint64(1) << 40);
        return ProcessOutcome{};
    });
    const QString failure = failureOf([&] { transcribe(); });
    EXPECT_EQ(failure, file + u": The transcript is too long."_s);
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(WhisperCppTranscriberTest, WhatIsPrintedBesideAFileMayBeEndless)
{
    processes.setBehaviour([](const FakeProcessCall &call) {
        writeFile(outputPath(call), "Hello.");
        return ProcessOutcome{.isStandardOutputWhole = false};
    });
    EXPECT_EQ(transcribe().text, u"Hello."_s);
}

TEST_F(WhisperCppTranscriberTest, OnlyBlanksAreNoSpeech)
{
    answerWithFile("\n\n \n");
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"No speech detected."_s);
    answerWithFile("");
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"No speech detected."_s);
    for (const char *undecodable : {"\xff\xfe not UTF-8", "cut within a charact\xc3", "\xe2\x82"}) {
        processes.setBehaviour([undecodable](const FakeProcessCall &) {
            return ProcessOutcome{.standardOutput = undecodable};
        });
        EXPECT_EQ(failureOf([this] { transcribe(); }), u"No speech detected."_s);
    }
}

TEST_F(WhisperCppTranscriberTest, AFailingToolIsReportedWithItsStatusAndItsWords)
{
    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.terminationStatus = 3, .standardError = "bad model"};
    });
    EXPECT_EQ(failureOf([this] { transcribe(); }),
              u"whisper-cli failed with status 3. bad model"_s);

    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.terminationStatus = 11, .standardError = "\xc3("};
    });
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"whisper-cli failed with status 11. "_s);

    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.terminationStatus = 1, .standardError = "cut within a charact\xc3"};
    });
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"whisper-cli failed with status 1. "_s);
}

TEST_F(WhisperCppTranscriberTest, AFailingToolsOutputFileIsLeftInPlace)
{
    processes.setBehaviour([](const FakeProcessCall &call) {
        writeFile(outputPath(call), "half");
        return ProcessOutcome{.terminationStatus = 1};
    });
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"whisper-cli failed with status 1. "_s);
    EXPECT_TRUE(QFile::exists(outputPath(processes.calls().last())));
}

TEST_F(WhisperCppTranscriberTest, ATranscriptThatIsNotTextIsRefusedAndKept)
{
    for (const char *bytes : {"\xff\xfe\xfd", "cut within a charact\xc3"}) {
        answerWithFile(bytes);
        EXPECT_TRUE(failureOf([this] {
                        transcribe();
                    }).endsWith(u".txt: The transcript is not valid UTF-8 text."_s));
        EXPECT_TRUE(QFile::exists(outputPath(processes.calls().last())));
    }
}

TEST_F(WhisperCppTranscriberTest, WhatIsNoFileInTheTranscriptsPlaceIsAnError)
{
    const QString elsewhere = path(u"elsewhere.txt"_s);
    writeFile(elsewhere, "text of another file");
    const QList<std::function<bool(const QString &)>> intruders{
        [](const QString &path) { return mkfifo(QFile::encodeName(path).constData(), 0600) == 0; },
        [](const QString &path) { return QDir().mkdir(path); },
        [&](const QString &path) { return QFile::link(elsewhere, path); },
    };
    for (const auto &put : intruders) {
        processes.setBehaviour([&put](const FakeProcessCall &call) {
            EXPECT_TRUE(put(outputPath(call)));
            return ProcessOutcome{};
        });
        EXPECT_TRUE(
            failureOf([this] { transcribe(); }).endsWith(u".txt: It is not a regular file."_s));
    }
    EXPECT_TRUE(QFile::exists(elsewhere));
}

TEST_F(WhisperCppTranscriberTest, WhatIsNoFileInThePlaceOfTheModelOrTheRecordingIsAnError)
{
    const QString pipe = path(u"pipe"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString expected = pipe + u": It is not a regular file."_s;
    const QUrl url = QUrl::fromLocalFile(pipe);
    EXPECT_EQ(failureOf([&] { transcriber.transcribe(audio, url, {}); }), expected);
    EXPECT_EQ(failureOf([&] { transcriber.transcribe(url, model, {}); }), expected);
    EXPECT_TRUE(processes.calls().isEmpty());

    const QString link = path(u"link.bin"_s);
    ASSERT_TRUE(QFile::link(model.toLocalFile(), link));
    answerWithFile("text");
    EXPECT_EQ(transcriber.transcribe(audio, QUrl::fromLocalFile(link), {}).text, u"text"_s)
        << "a model may be kept elsewhere";
}

TEST_F(WhisperCppTranscriberTest, TheTimeThatTheToolTookIsToldInMilliseconds)
{
    using namespace std::chrono;
    const auto now = [] { return steady_clock::now(); };
    processes.setBehaviour([&](const FakeProcessCall &call) {
        for (const auto start = now(); now() - start < 30ms;) {
        }
        writeFile(outputPath(call), "text");
        return ProcessOutcome{};
    });
    const auto start = now();
    const qint64 elapsed = transcribe().elapsedMilliseconds;
    EXPECT_GE(elapsed, 30);
    EXPECT_LE(elapsed, duration_cast<milliseconds>(now() - start).count());
}

TEST_F(WhisperCppTranscriberTest, AnUnstartableToolPassesThePlatformsErrorThrough)
{
    processes.setBehaviour(
        [](const FakeProcessCall &) -> ProcessOutcome { throw PlatformError(u"Exec format"_s); });
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"Exec format"_s);
}

TEST_F(WhisperCppTranscriberTest, AMissingModelIsNamedAndTheToolNotRun)
{
    ASSERT_TRUE(QFile::remove(model.toLocalFile()));
    EXPECT_EQ(failureOf([this] { transcribe(); }),
              u"Model file not found at "_s + model.toLocalFile() + u"."_s);
    EXPECT_TRUE(processes.calls().isEmpty());
}

TEST_F(WhisperCppTranscriberTest, AMissingToolIsReportedBeforeAMissingModel)
{
    ASSERT_TRUE(QFile::remove(model.toLocalFile()));
    WhisperCppTranscriber toolless([this] { return config; }, processes, directories, {},
                                   [](const QString &) { return std::nullopt; });
    EXPECT_EQ(failureOf([&] { toolless.transcribe(audio, model, {}); }),
              u"whisper-cli not found. Install whisper.cpp (for example: `brew install "
              "whisper-cpp`) and set the CLI path in Settings."_s);
}

TEST_F(WhisperCppTranscriberTest, ATemporaryFolderOfSomebodyElseIsReported)
{
    directories.failTemporaryDirectory(u"it belongs to another user."_s);
    EXPECT_EQ(failureOf([this] { transcribe(); }), u"it belongs to another user."_s);
    EXPECT_TRUE(processes.calls().isEmpty());
}

TEST_F(WhisperCppTranscriberTest, AToolEndedWithTheProgramLeavesNoFileAndNoError)
{
    processes.setBehaviour([](const FakeProcessCall &call) {
        writeFile(outputPath(call), "half");
        return ProcessOutcome{.wasStopped = true, .terminationStatus = 15};
    });
    EXPECT_THROW(transcribe(), Cancelled);
    EXPECT_TRUE(QDir(directories.temporaryDirectory()).isEmpty());
}

class DecoderLimitTest : public WhisperCppTranscriberTest
{
protected:
    void SetUp() override
    {
        WhisperCppTranscriberTest::SetUp();
        config.decodingProfile = WhisperDecodingProfile::accurate;
        processes.setBehaviour([this](const FakeProcessCall &call) {
            const int asked = call.arguments.value(11).toInt();
            if (asked > toolLimit) {
                return ProcessOutcome{.terminationStatus = 10,
                                      .standardError =
                                          QByteArray("error: too many decoders requested (") +
                                          QByteArray::number(asked) +
                                          "), max = " + QByteArray::number(toolLimit) + "\n"};
            }
            writeFile(outputPath(call), "text");
            return ProcessOutcome{};
        });
    }

    QStringList askedDecoders() const
    {
        QStringList asked;
        for (const FakeProcessCall &call : processes.calls())
            asked.append(call.arguments.value(11) + u'/' + call.arguments.value(13));
        return asked;
    }

    int toolLimit = 8;
};

TEST_F(DecoderLimitTest, ARefusedWidthIsRunOnceMoreWithTheLargestOneAndRemembered)
{
    EXPECT_EQ(transcribe().text, u"text"_s);
    EXPECT_EQ(askedDecoders(), QStringList({u"10/10"_s, u"8/8"_s}));
    EXPECT_EQ(processes.calls().last().arguments.size(), 15);
    transcribe();
    EXPECT_EQ(askedDecoders(), QStringList({u"10/10"_s, u"8/8"_s, u"8/8"_s}));
}

TEST_F(DecoderLimitTest, AReplacedExecutableIsAskedAnew)
{
    transcribe();
    toolLimit = 16;
    writeFile(config.cliPath, "#!/bin/sh\n# a newer one\n",
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    transcribe();
    EXPECT_EQ(askedDecoders().last(), u"10/10"_s);
}

TEST_F(DecoderLimitTest, TheSecondRunIsAlsoEndedWithTheProgram)
{
    const QByteArray script = "#!/bin/sh\n"
                              "[ \"${12}\" = 8 ] && echo $$ >\"$0.second\" && exec sleep 1000\n"
                              "echo 'too many decoders requested (10), max = 8' >&2\n"
                              "exit 10\n";
    writeFile(config.cliPath, script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ChildProcesses children{&endWithParent};
    WhisperCppTranscriber real([this] { return config; }, children, directories,
                               programEnding.get_token());
    const std::jthread ending([this] {
        waitUntil([this] { return QFile::exists(config.cliPath + u".second"_s); });
        programEnding.request_stop();
    });
    EXPECT_THROW(real.transcribe(audio, model, {}), Cancelled);
    EXPECT_TRUE(QFile::exists(config.cliPath + u".second"_s));
}

TEST_F(DecoderLimitTest, TheBalancedProfileIsNeverRunTwice)
{
    config.decodingProfile = WhisperDecodingProfile::balanced;
    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.terminationStatus = 10,
                              .standardError = "too many decoders requested (10), max = 8"};
    });
    EXPECT_TRUE(
        failureOf([this] { transcribe(); }).startsWith(u"whisper-cli failed with status 10"_s));
    EXPECT_EQ(processes.calls().size(), 1);
}

TEST_F(DecoderLimitTest, AToolThatRefusesEvenItsOwnLimitIsReported)
{
    processes.setBehaviour([](const FakeProcessCall &) {
        return ProcessOutcome{.terminationStatus = 10,
                              .standardError = "too many decoders requested (10), max = 8"};
    });
    EXPECT_EQ(failureOf([this] { transcribe(); }),
              u"whisper-cli failed with status 10. too many decoders requested (10), max = 8"_s);
    EXPECT_EQ(processes.calls().size(), 2);
}

TEST(DecoderLimits, OnlyARefusalOfJustThisManyNamesALimit)
{
    EXPECT_EQ(DecoderLimits::limitNamedIn("x\ntoo many decoders requested (10), max = 8\ny", 10),
              8);
    EXPECT_FALSE(DecoderLimits::limitNamedIn("too many decoders requested (12), max = 8", 10));
    EXPECT_FALSE(DecoderLimits::limitNamedIn("too many decoders requested (10), max = 10", 10));
    EXPECT_FALSE(DecoderLimits::limitNamedIn("too many decoders requested (10), max = 0", 10));
    EXPECT_FALSE(DecoderLimits::limitNamedIn("failed to initialize whisper context", 10));
    EXPECT_FALSE(DecoderLimits::limitNamedIn("", 10));
}

} // namespace
} // namespace kestrova
