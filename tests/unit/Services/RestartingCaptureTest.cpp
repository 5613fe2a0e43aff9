#include "Services/Dictation/RestartingCapture.h"

#include "Services/CoordinatorServices.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QString logged; // a message handler has no other place

class RestartingCaptureTest : public testing::Test
{
protected:
    RestartingCaptureTest()
    {
        logged.clear();
        m_formerHandler = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &,
                                                    const QString &message) { logged += message; });
    }
    ~RestartingCaptureTest() override { qInstallMessageHandler(m_formerHandler); }

    const std::shared_ptr<SubstituteCapture> inner = std::make_shared<SubstituteCapture>();
    RestartingCapture capture{inner};

private:
    QtMessageHandler m_formerHandler = nullptr;
};

TEST_F(RestartingCaptureTest, ARecordingThatIsUnderWayIsEndedBeforeTheNextAndNamedInTheLog)
{
    capture.startRecording();
    EXPECT_EQ(inner->stops, 0);
    EXPECT_TRUE(logged.isEmpty());

    inner->recording.fileURL = QUrl::fromLocalFile(u"/tmp/first.wav"_s);
    inner->whenStarted = [this] { EXPECT_FALSE(inner->isOpen) << "ended first"; };
    capture.startRecording();
    EXPECT_EQ(inner->stops, 1);
    EXPECT_EQ(inner->starts, 2);
    EXPECT_TRUE(capture.isRecording());
    EXPECT_TRUE(logged.contains(u"/tmp/first.wav"_s)) << logged.toStdString();
}

TEST_F(RestartingCaptureTest, OtherwiseItIsTheCaptureThatItWasGiven)
{
    capture.startRecording();
    EXPECT_EQ(capture.stopRecording().fileURL, inner->recording.fileURL);
    EXPECT_FALSE(capture.isRecording());
    capture.startRecording();
    EXPECT_EQ(inner->stops, 1);
}

} // namespace
} // namespace kestrova
