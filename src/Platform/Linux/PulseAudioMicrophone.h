#pragma once

#include "Platform/Linux/PulseAudioConnection.h"

#include <string>

/// Which source of the sound server is the microphone. Called with the connection's lock held.
namespace kestrova::PulseAudioMicrophone {

/// Whether the source carries what is being played rather than what is being said.
bool isMonitor(const pa_source_info &source);

/// The name of the default source, or of the first other one when that is a monitor. Empty when
/// there is no microphone or the server does not answer before the deadline.
std::string find(PulseAudioConnection &connection, PulseAudioConnection::TimePoint deadline);

} // namespace kestrova::PulseAudioMicrophone
