#pragma once

#include "Services/Protocols.h"

#include <memory>

namespace kestrova {

/// A capture that is always ready to start: a recording that is still under way then, and that
/// nobody will ask for any more, is ended first. Its file stays, and is named in the log.
class RestartingCapture final : public AudioCapturing
{
public:
    explicit RestartingCapture(std::shared_ptr<AudioCapturing> capture);

    bool isRecording() const override { return m_capture->isRecording(); }
    void startRecording() override;
    AudioRecording stopRecording() override { return m_capture->stopRecording(); }

private:
    const std::shared_ptr<AudioCapturing> m_capture;
};

} // namespace kestrova
