#pragma once

#include "Platform/Audio/AudioRecorder.h"

#include <QString>

#include <sndfile.h>

#include <memory>
#include <span>

namespace kestrova {

/// A 16-bit PCM WAV file that is being written. On disk it is a valid file at every moment, also
/// before the first sample and after a crash: the header is rewritten after each block of samples.
/// Not synchronised.
class WavFile
{
public:
    /// Creates the file, readable and writable by the user alone. Throws PlatformError when it
    /// cannot be created, not even its header fits or a file or link of that name is there already.
    WavFile(const QString &path, const RecordingFormat &format);
    /// Closes the file.
    ~WavFile();
    WavFile(const WavFile &) = delete;
    WavFile &operator=(const WavFile &) = delete;

    /// Appends whole frames of little-endian samples. False when not all of them could be written
    /// (disk full); the file then ends with the last frame that fitted.
    bool append(std::span<const std::byte> frames);
    /// Appends that many bytes of silence, otherwise as append().
    bool appendSilence(std::size_t byteCount);
    /// Why not all could be written, in the system's words; empty when all could.
    const QString &problem() const { return m_problem; }

    qint64 frameCount() const { return m_frameCount; }

private:
    bool writeHeader();
    void cutToWholeFrames();

    const qint64 m_bytesPerFrame;
    const int m_descriptor;
    qint64 m_headerSize = 0;
    std::unique_ptr<SNDFILE, int (*)(SNDFILE *)> m_file;
    qint64 m_frameCount = 0;
    QString m_problem;
};

} // namespace kestrova
