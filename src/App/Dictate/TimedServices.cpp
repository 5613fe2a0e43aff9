#include "App/Dictate/TimedServices.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Prints the time from its construction to its end, also when the step throws.
class StageTimer
{
public:
    StageTimer(EventPrinter &printer, const QString &stage) : m_printer(printer), m_stage(stage) {}
    ~StageTimer() { m_printer.printStage(m_stage, std::chrono::steady_clock::now() - m_start); }
    Q_DISABLE_COPY_MOVE(StageTimer)

private:
    EventPrinter &m_printer;
    const QString m_stage;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace

TimedAudioCapture::TimedAudioCapture(std::unique_ptr<AudioCapturing> capture, EventPrinter &printer)
    : m_capture(std::move(capture)), m_printer(printer)
{
}

void TimedAudioCapture::startRecording()
{
    const StageTimer timer(m_printer, u"start recording"_s);
    m_capture->startRecording();
}

AudioRecording TimedAudioCapture::stopRecording()
{
    const StageTimer timer(m_printer, u"stop recording"_s);
    return m_capture->stopRecording();
}

TimedTranscriber::TimedTranscriber(std::unique_ptr<Transcribing> transcriber, EventPrinter &printer)
    : m_transcriber(std::move(transcriber)), m_printer(printer)
{
}

TranscriptionResult TimedTranscriber::transcribe(const QUrl &audioURL, const QUrl &modelURL)
{
    const StageTimer timer(m_printer, u"transcribe"_s);
    return m_transcriber->transcribe(audioURL, modelURL);
}

TimedTextInserter::TimedTextInserter(std::unique_ptr<TextInserting> inserter, EventPrinter &printer)
    : m_inserter(std::move(inserter)), m_printer(printer)
{
}

void TimedTextInserter::insert(const QString &text, const std::optional<TargetApplication> &target,
                               const std::stop_token &stop)
{
    const StageTimer timer(m_printer, u"insert"_s);
    m_inserter->insert(text, target, stop);
}

} // namespace kestrova
