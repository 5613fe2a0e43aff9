#include "support/VirtualSound.h"

#include <cstdio>
#include <stdexcept>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Not by QProcess: after its vfork ThreadSanitizer no longer sees that the parent unlocks.
QByteArray run(const QString &program, const QStringList &arguments)
{
    // A server that it starts keeps its error output open for good.
    const QString command = program + u' ' + arguments.join(u' ') + u" 2>/dev/null"_s;
    FILE *output = popen(command.toUtf8().constData(), "re");
    if (!output)
        throw std::runtime_error("popen");
    QByteArray text;
    for (int c = fgetc(output); c != EOF; c = fgetc(output))
        text.append(static_cast<char>(c));
    if (pclose(output) != 0)
        throw std::runtime_error(command.toStdString());
    return text;
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
