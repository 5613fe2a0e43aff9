#include "Services/LoopbackHttpServer.h"
#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

class AppControllerModelTest : public ControllerTest
{
protected:
    AppControllerModelTest()
    {
        use(server.urlString(u"/ggml-base.bin"_s), {});
        removeModel();
        controller->refreshEnvironmentSnapshot();
        changes();
    }

    void use(const QString &url, const QString &digest)
    {
        controller->updateSettings([&](AppSettings &settings) {
            settings.modelDownloadURL = url;
            settings.modelSHA256 = digest;
        });
    }
    void prepare(bool forceDownload = false)
    {
        controller->prepareModel(forceDownload);
        settle();
    }

    const QByteArray body = patternedBytes(100'000);
    const DownloadProgress whole{100'000, 100'000};
    const LoopbackHttpServer server{
        [this](const HttpRequest &request, LoopbackHttpServer::Connection &connection) {
            connection.send(ServedFile{body}.answer(request));
        }};
};

TEST_F(AppControllerModelTest, ADownloadRunsOnAWorkerAndShowsHowFarItIs)
{
    controller->prepareModel(false);
    EXPECT_EQ(changes(), QStringList{u"isPreparingModel"_s});
    EXPECT_TRUE(state().isPreparingModel.get());
    EXPECT_TRUE(server.requests().empty());
    EXPECT_TRUE(main.isIdle());

    QList<DownloadProgress> shown;
    QObject context;
    QObject::connect(&state(), &AppState::modelDownloadChanged, &context, [&] {
        if (const auto progress = state().modelDownload.get())
            shown.append(*progress);
    });
    background.runAll();
    EXPECT_EQ(changes(), QStringList()) << "only the main thread changes the state";
    main.runAll();
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.last(), whole);
    EXPECT_FALSE(state().modelDownload.get());
    EXPECT_TRUE(state().isModelReady.get());
    EXPECT_FALSE(state().isPreparingModel.get());
    EXPECT_EQ(readFile(modelPath()), body);
}

TEST_F(AppControllerModelTest, SuccessMakesTheModelReadyAndClearsTheError)
{
    toggle();
    ASSERT_EQ(state().state.get().kind, DictationState::Kind::error);
    putModel();
    changes();
    prepare();
    EXPECT_EQ(changes(), QStringList({u"isPreparingModel"_s, u"isModelReady"_s,
                                      u"isPreparingModel"_s, u"state idle"_s, u"no lastError"_s}));
    EXPECT_TRUE(server.requests().empty()) << "a model that is there is not downloaded";
}

TEST_F(AppControllerModelTest, WhenForcedAPresentModelIsDownloadedAnew)
{
    putModel();
    prepare(true);
    EXPECT_EQ(readFile(modelPath()), body);
}

TEST_F(AppControllerModelTest, AFailureIsShown)
{
    use(u""_s, {});
    changes();
    prepare();
    EXPECT_EQ(shownError(), u"Model download URL is not configured."_s);
    EXPECT_EQ(changes(), QStringList({u"isPreparingModel"_s, u"isPreparingModel"_s, u"lastError"_s,
                                      u"state error"_s}));
    EXPECT_FALSE(state().isModelReady.get());
}

TEST_F(AppControllerModelTest, TheDigestIsThatOfTheSettings)
{
    use(server.urlString(u"/ggml-base.bin"_s), u"ab"_s);
    prepare();
    EXPECT_TRUE(shownError().startsWith(u"Model checksum mismatch. Expected ab, got "_s));
    EXPECT_FALSE(state().isPreparingModel.get());
    EXPECT_FALSE(state().modelDownload.get());
    EXPECT_FALSE(QFile::exists(modelPath()));
}

TEST_F(AppControllerModelTest, ProgressThatComesAfterTheEndIsDropped)
{
    controller->prepareModel(true);
    controller->prepareModel(true);
    background.runAll();
    while (state().isPreparingModel.get())
        main.runOne();
    changes();
    ASSERT_FALSE(main.isIdle()) << "the second download has reported too";
    main.runAll();
    EXPECT_EQ(changes(), QStringList());
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(AppControllerModelTest, ADictationDownloadsAMissingModel)
{
    putModel();
    toggle();
    removeModel();
    changes();
    toggle();
    const QStringList seen = changes();
    EXPECT_EQ(seen.value(1), u"state processing"_s);
    EXPECT_EQ(seen.value(2), u"modelDownload"_s);
    EXPECT_EQ(seen.last(), u"modelDownload"_s);
    EXPECT_FALSE(state().modelDownload.get()) << "nothing is downloaded any more";
    EXPECT_EQ(inserter->insertions.size(), 1U);
    EXPECT_EQ(readFile(modelPath()), body);
}

} // namespace
} // namespace kestrova
