#pragma once

#include "ViewModels/AppState.h"

#include <QJsonObject>

namespace kestrova {

/// Prints what happens to standard output, for scripts and panels: a JSON object a line, each with
/// "event" and, in "at", the moment in milliseconds of the system's monotonic clock.
///
///     {"event":"ready"}                                     the shortcuts work
///     {"event":"state","state":"idle|recording|processing"}
///     {"event":"state","state":"error","message":…}
///     {"event":"transcript","text":…,"delivery":"requested|unknown|leftOnClipboard|replaced"}
///     {"event":"delivery","delivery":"requested"}           the last transcript, after all
///     {"event":"download","received":…,"total":…}           bytes of the model; the total if known
///     {"event":"model","ready":…}                           the download ended, one way or another
///     {"event":"shown","window":…}                          an opened window has been drawn
///
/// Main thread; blocks while the reader does.
class StatusPrinter : public QObject
{
public:
    /// Prints "ready", and from then on each change of the state, which outlives this.
    explicit StatusPrinter(const AppState &state);

    /// {"event":"misuse","command":…}: a command that there is not.
    void printMisuse(const QByteArray &command);
    void printShown(const QString &window);

private:
    void printState();
    void printTranscript();
    void printLateDelivery();
    void printDownload();
    void printModel();

    const AppState &m_state;
    quint64 m_printedDelivery = 0;
};

} // namespace kestrova
