#include "Platform/Linux/Audio/WavFile.h"

#include "Models/ReadableError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Of a PCM file; a full disk leaves less.
constexpr qint64 wholeHeaderSize = 44;

int createPrivately(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(),
                                O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_RDWR, 0600);
    if (descriptor < 0)
        throw PlatformError(path + u": "_s + qt_error_string(errno));
    fchmod(descriptor, 0600); // The umask may take from the mode what the user needs.
    return descriptor;
}

} // namespace

WavFile::WavFile(const QString &path, const RecordingFormat &format)
    : m_bytesPerFrame(format.channelCount * format.bitDepth / 8),
      m_descriptor(createPrivately(path)), m_file(nullptr, &sf_close)
{
    SF_INFO info{};
    info.samplerate = format.sampleRate;
    info.channels = format.channelCount;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    m_file.reset(sf_open_fd(m_descriptor, SFM_WRITE, &info, SF_FALSE));
    if (!m_file || !writeHeader()) {
        const QString problem = QString::fromUtf8(sf_strerror(m_file.get()));
        m_file.reset();
        close(m_descriptor);
        QFile::remove(path);
        throw PlatformError(path + u": "_s + problem);
    }
    sf_command(m_file.get(), SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
}

WavFile::~WavFile()
{
    m_file.reset();
    close(m_descriptor);
}

bool WavFile::append(std::span<const std::byte> frames)
{
    const auto size = static_cast<qint64>(frames.size());
    const qint64 written = sf_write_raw(m_file.get(), frames.data(), size);
    m_frameCount += written / m_bytesPerFrame;
    if (written == size)
        return true;
    m_problem = QString::fromUtf8(sf_strerror(m_file.get()));
    cutToWholeFrames();
    return false;
}

bool WavFile::appendSilence(std::size_t byteCount)
{
    static constexpr std::array<std::byte, 4096> zeros{};
    while (byteCount > 0) {
        const std::size_t count = std::min(byteCount, zeros.size());
        if (!append(std::span(zeros).first(count)))
            return false;
        byteCount -= count;
    }
    return true;
}

bool WavFile::writeHeader()
{
    // The header that opening writes does not count its own length.
    sf_command(m_file.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
    m_headerSize = lseek(m_descriptor, 0, SEEK_END);
    return m_headerSize == wholeHeaderSize;
}

void WavFile::cutToWholeFrames()
{
    // A full disk may have taken half a sample.
    if (ftruncate(m_descriptor, m_headerSize + m_frameCount * m_bytesPerFrame) == 0)
        sf_command(m_file.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
}

} // namespace kestrova
