#include "Platform/Linux/Sandbox/LinuxSystemAccess.h"

#include "Platform/Linux/Sandbox/MicrophoneAdvice.h"
#include "Platform/Linux/Sandbox/MicrophoneSettings.h"

#include <QProcess>

namespace kestrova {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

namespace {

State snapState()
{
    QProcess snapctl;
    snapctl.start(u"snapctl"_s, {u"is-connected"_s, u"audio-record"_s});
    if (!snapctl.waitForFinished(static_cast<int>(LinuxSystemAccess::answerLimit.count()))) {
        snapctl.kill();
        snapctl.waitForFinished();
        return State::unknown;
    }
    return snapctl.exitCode() == 0 ? State::authorized : State::denied;
}

} // namespace

LinuxSystemAccess::LinuxSystemAccess(const std::optional<Sandbox> &sandbox,
                                     const QString &currentDesktop,
                                     std::function<Access()> keyboardAccess)
    : m_sandbox(sandbox), m_currentDesktop(currentDesktop),
      m_keyboardAccess(std::move(keyboardAccess))
{
}

State LinuxSystemAccess::microphoneState()
{
    if (!m_sandbox)
        return State::authorized;
    return m_sandbox->kind == Sandbox::Kind::flatpak ? flatpakState() : snapState();
}

State LinuxSystemAccess::flatpakState()
{
    if (!m_sandbox->reachesSound)
        return State::denied;
    const State decision = MicrophonePortal::decision(m_sandbox->name, answerLimit);
    return decision == State::notDetermined && m_wasGranted ? State::authorized : decision;
}

void LinuxSystemAccess::requestMicrophone(std::function<void(bool isGranted)> completion)
{
    if (m_sandbox && m_sandbox->kind == Sandbox::Kind::flatpak) {
        MicrophonePortal::request(
            [this, completion = std::move(completion)](bool isGranted) {
                m_wasGranted = isGranted;
                completion(isGranted);
            },
            &m_requests);
        return;
    }
    QMetaObject::invokeMethod(
        &m_requests,
        [this, completion = std::move(completion)] {
            completion(microphoneState() == State::authorized);
        },
        Qt::QueuedConnection);
}

void LinuxSystemAccess::observe(std::function<void()> changed)
{
    m_watch.reset();
    if (changed && m_sandbox && m_sandbox->kind == Sandbox::Kind::flatpak)
        m_watch = std::make_unique<MicrophonePortal::DecisionWatch>(std::move(changed));
}

QList<QUrl> LinuxSystemAccess::microphoneSettingsPages()
{
    return kestrova::microphoneSettingsPages(m_currentDesktop);
}

std::optional<QString> LinuxSystemAccess::microphoneAdvice(State state)
{
    return m_sandbox ? kestrova::microphoneAdvice(*m_sandbox, state) : std::nullopt;
}

} // namespace kestrova
