#include "App/StatusPrinter.h"

#include <QJsonDocument>

#include <chrono>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QByteArray line(QLatin1StringView event, QJsonObject object)
{
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const Milliseconds now = std::chrono::steady_clock::now().time_since_epoch();
    object.insert("event"_L1, event);
    object.insert("at"_L1, now.count());
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

StatusPrinter::StatusPrinter(const AppState &state, int descriptor)
    : m_state(state), m_writer(descriptor)
{
    connect(&state, &AppState::stateChanged, this, &StatusPrinter::printState);
    connect(&state, &AppState::lastTranscriptChanged, this, &StatusPrinter::printTranscript);
    connect(&state, &AppState::lastDeliveryChanged, this, &StatusPrinter::printLateDelivery);
    connect(&state, &AppState::modelDownloadChanged, this, &StatusPrinter::printDownload);
    connect(&state, &AppState::isPreparingModelChanged, this, &StatusPrinter::printModel);
    print("ready"_L1);
}

void StatusPrinter::print(QLatin1StringView event, const QJsonObject &object)
{
    if (m_lostCount > 0 && m_writer.write(line("lost"_L1, {{"lines"_L1, m_lostCount}})))
        m_lostCount = 0;
    // Once one is lost, so are the next: what comes out stays in order.
    if (m_lostCount > 0 || !m_writer.write(line(event, object)))
        ++m_lostCount;
}

void StatusPrinter::printMisuse(const QByteArray &command)
{
    print("misuse"_L1, {{"command"_L1, QString::fromUtf8(command)}});
}

void StatusPrinter::printShown(const QString &window)
{
    print("shown"_L1, {{"window"_L1, window}});
}

void StatusPrinter::printFailed(const QString &message)
{
    print("failed"_L1, {{"message"_L1, message}});
}

void StatusPrinter::printState()
{
    const DictationState &state = m_state.state.get();
    QJsonObject object{{"state"_L1, rawValue(state.kind)}};
    if (state.kind == DictationState::Kind::error)
        object.insert("message"_L1, state.errorMessage);
    print("state"_L1, object);
}

void StatusPrinter::printTranscript()
{
    const Delivery &delivery = m_state.lastDelivery.get();
    m_printedDelivery = delivery.number;
    print("transcript"_L1,
          {{"text"_L1, m_state.lastTranscript.get()}, {"delivery"_L1, rawValue(delivery.outcome)}});
}

void StatusPrinter::printLateDelivery()
{
    const Delivery &delivery = m_state.lastDelivery.get();
    if (delivery.number == m_printedDelivery)
        print("delivery"_L1, {{"delivery"_L1, rawValue(delivery.outcome)}});
}

void StatusPrinter::printDownload()
{
    const auto &progress = m_state.modelDownload.get();
    if (!progress)
        return;
    QJsonObject object{{"received"_L1, progress->receivedBytes}};
    if (progress->totalBytes)
        object.insert("total"_L1, *progress->totalBytes);
    print("download"_L1, object);
}

void StatusPrinter::printModel()
{
    if (!m_state.isPreparingModel.get())
        print("model"_L1, {{"ready"_L1, m_state.isModelReady.get()}});
}

} // namespace kestrova
