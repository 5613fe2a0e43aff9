#pragma once

#include "App/LineWriter.h"
#include "ViewModels/AppState.h"

#include <QJsonObject>

namespace kestrova {

/// Prints what happens, for scripts and panels: a JSON object a line, each with
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
///     {"event":"failed","message":…}                        a window cannot be shown
///     {"event":"lost","lines":…}                            so many before this were not taken
///
/// Main thread. Never waits for the reader: when that does not read, it loses what comes next.
class StatusPrinter : public QObject
{
public:
    /// Prints "ready", and from then on each change of the state, which outlives this, to the
    /// descriptor, which it takes over.
    StatusPrinter(const AppState &state, int descriptor);

    /// {"event":"misuse","command":…}: a command that there is not.
    void printMisuse(const QByteArray &command);
    void printShown(const QString &window);
    void printFailed(const QString &message);

private:
    void print(QLatin1StringView event, const QJsonObject &object = {});
    void printState();
    void printTranscript();
    void printLateDelivery();
    void printDownload();
    void printModel();

    const AppState &m_state;
    quint64 m_printedDelivery = 0;
    LineWriter m_writer;
    qint64 m_lostCount = 0; ///< lines since the last that the reader got
};

} // namespace kestrova
