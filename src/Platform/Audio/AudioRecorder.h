#pragma once

#include <QUrl>

#include <functional>
#include <memory>

namespace kestrova {

/// The form of a recording. The defaults are the one form that the program uses: what the
/// transcription tool takes without conversion.
struct RecordingFormat
{
    int sampleRate = 16000; ///< Hz
    int channelCount = 1;
    int bitDepth = 16; ///< linear PCM
    bool isFloat = false;
    bool isBigEndian = false;

    bool operator==(const RecordingFormat &) const = default;
};

/// Records the default microphone to one WAV file. Its operations are called one at a time from
/// any thread; isRecording() may be called beside them. Destroying it ends the recording and
/// leaves the file as it is.
class AudioRecorder
{
public:
    virtual ~AudioRecorder() = default;

    virtual void setMeteringEnabled(bool enabled) = 0;
    /// Creates the file and gets the sound system ready; record() does it when this failed.
    virtual bool prepareToRecord() = 0;
    /// Starts; false when there is no microphone or the sound system does not let us record. Then
    /// there is no file either.
    virtual bool record() = 0;
    /// Ends the recording: everything captured until now is in the file, which is complete when
    /// this returns.
    virtual void stop() = 0;

    /// False before record(), after stop(), and when the recording ended by itself (microphone
    /// removed, sound server gone, disk full).
    virtual bool isRecording() const = 0;
    virtual QUrl url() const = 0;
    /// Length of what was recorded, in seconds. A stopped recorder keeps it.
    virtual double currentTime() const = 0;
};

/// What is known of the default microphone.
enum class MicrophoneCondition {
    unknown,
    available,
    muted,
    monitorOnly, ///< there is only what is being played
    noDevice,
    noServer, ///< the sound system cannot be reached
};

/// Why a recording is not all that was said.
enum class RecordingProblem {
    fileNotWritten,
    microphoneLost, ///< or the sound system
};

/// Who wants to know how the microphone is. Called on any thread; must not block or call the input.
struct AudioInputListener
{
    std::function<void(MicrophoneCondition)> conditionChanged;
    std::function<void(RecordingProblem)> recordingFailed;
};

/// The sound input of the machine.
class AudioInput
{
public:
    virtual ~AudioInput() = default;

    /// A new recorder for a new file. Throws PlatformError when the address is not a local file
    /// or the format cannot be recorded; there is no fallback to another format.
    virtual std::unique_ptr<AudioRecorder> makeRecorder(const QUrl &fileURL,
                                                        const RecordingFormat &format) = 0;

    /// Replaces the listener; the former one is not called any more. Returns the condition of this
    /// moment, to which the changes are told. Does not wait for the sound system.
    virtual MicrophoneCondition listen(AudioInputListener listener) = 0;
    /// Looks again for a sound system that could not be reached. May block for a moment.
    virtual void reconnect() = 0;
};

} // namespace kestrova
