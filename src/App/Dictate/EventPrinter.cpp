#include "App/Dictate/EventPrinter.h"

#include <QJsonDocument>

#include <cstdio>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

QJsonObject describe(const TranscriptInsertionPayload &payload)
{
    QJsonObject object{{"text"_L1, payload.text},
                       {"words"_L1, payload.wordCount},
                       {"seconds"_L1, payload.audioDurationSeconds}};
    if (payload.target && payload.target->bundleIdentifier)
        object.insert("target"_L1, *payload.target->bundleIdentifier);
    return object;
}

} // namespace

void EventPrinter::print(const DictationCoordinatorEvent &event)
{
    if (const auto *changed = std::get_if<DictationEvent::StateChanged>(&event))
        print(u"state"_s, {{"state"_L1, rawValue(changed->state.kind)}});
    else if (const auto *inserted = std::get_if<DictationEvent::TranscriptInserted>(&event))
        print(u"inserted"_s, describe(inserted->payload));
    else
        print(u"error"_s, {{"message"_L1, std::get<DictationEvent::Error>(event).message}});
}

void EventPrinter::printCommand(const QString &command)
{
    print(u"command"_s, {{"command"_L1, command}});
}

void EventPrinter::printMisuse(const QString &message)
{
    print(u"misuse"_s, {{"message"_L1, message}});
}

void EventPrinter::printStage(const QString &stage, std::chrono::nanoseconds duration)
{
    print(u"stage"_s, {{"stage"_L1, stage}, {"milliseconds"_L1, Milliseconds(duration).count()}});
}

void EventPrinter::print(const QString &name, QJsonObject object)
{
    const Milliseconds now = std::chrono::steady_clock::now().time_since_epoch();
    object.insert("event"_L1, name);
    object.insert("at"_L1, now.count());
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    m_main.post([line] {
        std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
        std::fflush(stdout);
    });
}

} // namespace kestrova
