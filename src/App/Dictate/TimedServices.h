#pragma once

#include "App/Dictate/EventPrinter.h"
#include "Services/Protocols.h"

#include <memory>

namespace kestrova {

/// The services of a dictation, each wrapped so that it prints how long its steps take.
class TimedAudioCapture final : public AudioCapturing
{
public:
    TimedAudioCapture(std::unique_ptr<AudioCapturing> capture, EventPrinter &printer);

    bool isRecording() const override { return m_capture->isRecording(); }
    void startRecording() override;
    AudioRecording stopRecording() override;

private:
    const std::unique_ptr<AudioCapturing> m_capture;
    EventPrinter &m_printer;
};

class TimedTranscriber final : public Transcribing
{
public:
    TimedTranscriber(std::unique_ptr<Transcribing> transcriber, EventPrinter &printer);

    TranscriptionResult transcribe(const QUrl &audioURL, const QUrl &modelURL) override;

private:
    const std::unique_ptr<Transcribing> m_transcriber;
    EventPrinter &m_printer;
};

class TimedTextInserter final : public TextInserting
{
public:
    TimedTextInserter(std::unique_ptr<TextInserting> inserter, EventPrinter &printer);

    void insert(const QString &text, const std::optional<TargetApplication> &target,
                const std::stop_token &stop) override;

private:
    const std::unique_ptr<TextInserting> m_inserter;
    EventPrinter &m_printer;
};

} // namespace kestrova
