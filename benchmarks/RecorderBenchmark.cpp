#include "Platform/Linux/Audio/PulseAudioInput.h"
#include "support/RampPlayer.h"
#include "support/VirtualSound.h"
#include "support/WavSamples.h"

#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

/// How soon and how cheaply the microphone is recorded, beside parec started for the same. Runs
/// inside tools/virtual-desktop.
namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A press meets the virtual sound card anywhere in a block of its own, so one figure says little.
constexpr int rounds = 50;
constexpr auto pollInterval = 200us;
constexpr auto pause = 150ms; ///< between two recordings: nobody dictates faster
constexpr auto longRecording = 10s;

double millisecondsSince(steady_clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count();
}

void print(const char *what, std::vector<double> values, const char *unit)
{
    std::sort(values.begin(), values.end());
    std::printf("%-44s median %6.1f  max %6.1f %s\n", what, values[values.size() / 2],
                values.back(), unit);
}

double processorSeconds(int who)
{
    rusage usage = {};
    getrusage(who, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Milliseconds from one sample of the ramp to another.
double rampDistance(qint64 from, qint64 to)
{
    qint64 distance = (to - from) % RampPlayer::period;
    if (distance > RampPlayer::period / 2)
        distance -= RampPlayer::period;
    if (distance < -RampPlayer::period / 2)
        distance += RampPlayer::period;
    return static_cast<double>(distance) * 1000 / RampPlayer::sampleRate;
}

struct Figures
{
    std::vector<double> firstSample; ///< ms from the press until it is in the file
    std::vector<double> lostHead;    ///< ms of what was heard from the press on
    std::vector<double> lostTail;    ///< ms of what was heard until the stop was asked for
    std::vector<double> stop;        ///< ms that stopping took

    void print(const char *who) const
    {
        std::printf("%s, %d recordings\n", who, rounds);
        kestrova::print("  press to first recorded sample", firstSample, "ms");
        if (!lostHead.empty()) {
            kestrova::print("  heard after the press, not in the file", lostHead, "ms");
            kestrova::print("  heard before the stop, not in the file", lostTail, "ms");
        }
        kestrova::print("  stop", stop, "ms");
    }
};

/// Start returns when the first sample is in the file, stop when the file is complete.
template <typename Start, typename Stop>
Figures measure(const QString &path, RampPlayer *player, Start start, Stop stop)
{
    Figures figures;
    for (int i = 0; i < rounds; ++i) {
        QFile::remove(path);
        // Presses come at any moment of the server's own rhythm.
        std::this_thread::sleep_for(pause + i * 1ms);
        const qint64 heardAtPress = player ? player->position() : 0;
        const auto press = steady_clock::now();
        start();
        figures.firstSample.push_back(millisecondsSince(press));
        std::this_thread::sleep_for(pause);
        const qint64 heardAtStop = player ? player->position() : 0;
        const auto stopPress = steady_clock::now();
        stop();
        figures.stop.push_back(millisecondsSince(stopPress));
        if (!player)
            continue;
        const QByteArray bytes = readFile(path);
        const auto samples = wavSamples(bytes);
        if (!samples || samples->empty())
            throw std::runtime_error("not a recording");
        figures.lostHead.push_back(
            rampDistance(heardAtPress, RampPlayer::numberOf(samples->front())));
        figures.lostTail.push_back(
            rampDistance(RampPlayer::numberOf(samples->back()), heardAtStop));
    }
    return figures;
}

Figures measureOurs(const QString &path, RampPlayer *player)
{
    PulseAudioInput input;
    std::unique_ptr<AudioRecorder> recorder;
    const auto start = [&] {
        recorder = input.makeRecorder(QUrl::fromLocalFile(path), {});
        if (!recorder->record())
            throw std::runtime_error("no microphone");
        while (recorder->currentTime() == 0)
            std::this_thread::sleep_for(pollInterval);
    };
    return measure(path, player, start, [&] { recorder->stop(); });
}

void startParec(QProcess &process, const QString &path)
{
    process.start(u"parec"_s, {u"--rate=16000"_s, u"--channels=1"_s, u"--format=s16le"_s,
                               u"--latency-msec=20"_s, u"--file-format=wav"_s, path});
}

void stopParec(QProcess &process)
{
    process.terminate();
    process.waitForFinished();
}

Figures measureParec(const QString &path, RampPlayer *player)
{
    QProcess process;
    const auto start = [&] {
        startParec(process, path);
        constexpr qint64 headerSize = 44;
        while (QFile(path).size() <= headerSize)
            std::this_thread::sleep_for(pollInterval);
    };
    return measure(path, player, start, [&] { stopParec(process); });
}

double processorShare(double seconds)
{
    return 100 * seconds / std::chrono::duration<double>(longRecording).count();
}

void compareProcessorShares(const QTemporaryDir &folder)
{
    {
        PulseAudioInput input;
        const double before = processorSeconds(RUSAGE_SELF);
        const auto recorder =
            input.makeRecorder(QUrl::fromLocalFile(folder.filePath(u"long.wav"_s)), {});
        if (!recorder->record())
            throw std::runtime_error("no microphone");
        std::this_thread::sleep_for(longRecording);
        recorder->stop();
        std::printf("processor share of %.0f s, ours    %5.2f %%\n", recorder->currentTime(),
                    processorShare(processorSeconds(RUSAGE_SELF) - before));
    }
    const double before = processorSeconds(RUSAGE_CHILDREN);
    QProcess process;
    startParec(process, folder.filePath(u"long-parec.wav"_s));
    std::this_thread::sleep_for(longRecording);
    stopParec(process);
    std::printf("processor share of the same, parec %5.2f %%\n",
                processorShare(processorSeconds(RUSAGE_CHILDREN) - before));
}

void run()
{
    const QTemporaryDir folder;
    VirtualSound::addExactMicrophone();
    compareProcessorShares(folder);
    const QString ours = folder.filePath(u"ours.wav"_s);
    const QString parecs = folder.filePath(u"parec.wav"_s);
    measureOurs(ours, nullptr).print("ours, microphone idle before");
    measureParec(parecs, nullptr).print("parec, microphone idle before");
    RampPlayer player(VirtualSound::exactSink);
    measureOurs(ours, &player).print("ours, microphone in use");
    measureParec(parecs, &player).print("parec, microphone in use");
}

} // namespace
} // namespace kestrova

int main()
{
    try {
        kestrova::run();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
