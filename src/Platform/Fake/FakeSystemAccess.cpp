#include "Platform/Fake/FakeSystemAccess.h"

namespace kestrova {

void FakeSystemAccess::requestMicrophone(std::function<void(bool isGranted)> completion)
{
    ++m_microphoneRequestCount;
    m_openRequests.push_back(std::move(completion));
}

void FakeSystemAccess::announceChange()
{
    if (m_changed)
        m_changed();
}

void FakeSystemAccess::answerMicrophoneRequests(bool isGranted)
{
    m_microphoneState =
        isGranted ? MicrophoneAuthorizationState::authorized : MicrophoneAuthorizationState::denied;
    for (const auto &complete : std::exchange(m_openRequests, {}))
        complete(isGranted);
}

} // namespace kestrova
