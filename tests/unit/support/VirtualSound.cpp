#include "support/VirtualSound.h"

#include <QProcess>

#include <stdexcept>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr int runLimit = 20'000; // ms

QByteArray run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    // A server that it starts keeps these open for good.
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    const bool isDone = process.waitForFinished(runLimit) &&
                        process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!isDone)
        throw std::runtime_error((program + u' ' + arguments.join(u' ')).toStdString());
    return process.readAllStandardOutput();
}

/// One line each, beginning with the number.
QByteArrayList recordings()
{
    QByteArrayList lines =
        VirtualSound::pactl({u"list"_s, u"short"_s, u"source-outputs"_s}).split('\n');
    lines.removeIf([](const QByteArray &line) { return !line.contains("protocol-native"); });
    return lines;
}

} // namespace

QByteArray VirtualSound::pactl(const QStringList &arguments)
{
    return run(u"pactl"_s, arguments);
}

void VirtualSound::server(const QString &command)
{
    run(QString::fromUtf8(KESTROVA_VIRTUAL_SOUND), {command});
}

void VirtualSound::addExactMicrophone()
{
    const QStringList format{u"format=s16le"_s, u"rate=16000"_s, u"channels=1"_s};
    const QString sink = QString::fromUtf8(exactSink);
    const QString source = QString::fromUtf8(exactMicrophone);
    pactl(QStringList{u"load-module"_s, u"module-null-sink"_s, u"norewinds=1"_s,
                      u"sink_name="_s + sink} +
          format);
    pactl(QStringList{u"load-module"_s, u"module-remap-source"_s, u"source_name="_s + source,
                      u"master="_s + sink + u".monitor"_s} +
          format);
    pactl({u"set-default-source"_s, source});
}

qsizetype VirtualSound::recordingCount()
{
    return recordings().size();
}

void VirtualSound::moveRecording(const QString &source)
{
    const QByteArrayList all = recordings();
    if (all.size() != 1)
        throw std::runtime_error("not one recording");
    const QByteArray number = all.front().split('\t').front();
    pactl({u"move-source-output"_s, QString::fromUtf8(number), source});
}

} // namespace kestrova
