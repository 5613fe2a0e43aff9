#pragma once

#include <QStringList>

/// The private sound server of the virtual desktop.
namespace kestrova::VirtualSound {

/// What pactl prints. Throws when it fails.
QByteArray pactl(const QStringList &arguments);

/// start, stop (as if it had crashed), freeze, thaw. Throws when it fails.
void server(const QString &command);

inline constexpr auto exactSink = "exact";
inline constexpr auto exactMicrophone = "exact_microphone";

/// A sink and, as the default source, a microphone that hears what is played there, without a
/// conversion on the way.
void addExactMicrophone();

/// Of programs, not of the server's own modules.
qsizetype recordingCount();
/// The one recording of a program goes on from that source.
void moveRecording(const QString &source);

} // namespace kestrova::VirtualSound
