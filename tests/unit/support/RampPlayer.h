#pragma once

#include "Platform/Linux/Audio/PulseAudioConnection.h"

#include <QtGlobal>

#include <vector>

namespace kestrova {

/// Plays samples of which each is one more than the one before, so that a recording of them shows
/// by itself where it begins, where it ends and whether anything is missing. None of them is zero;
/// they begin again after four seconds.
class RampPlayer
{
public:
    static constexpr int sampleRate = 16000;
    static constexpr int period = 65535;

    /// Returns when it is heard.
    explicit RampPlayer(const char *sink);
    ~RampPlayer();
    RampPlayer(const RampPlayer &) = delete;
    RampPlayer &operator=(const RampPlayer &) = delete;

    /// The number of the sample that is heard at this moment, by the server's account, which is
    /// asked first.
    qint64 position();

    /// A recorded sample's number, modulo the period.
    static int numberOf(qint16 sample) { return static_cast<quint16>(sample) - 1; }
    static qint16 sampleOf(qint64 number) { return static_cast<qint16>(number % period + 1); }

private:
    void write(size_t size);

    PulseAudioConnection m_connection;
    pa_stream *m_stream = nullptr;
    qint64 m_written = 0;
};

} // namespace kestrova
