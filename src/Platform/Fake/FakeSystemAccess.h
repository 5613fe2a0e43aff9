#pragma once

#include "Platform/SystemAccess.h"

#include <vector>

namespace kestrova {

/// Not for several threads.
class FakeSystemAccess final : public SystemAccess
{
public:
    MicrophoneAuthorizationState microphoneState() override { return m_microphoneState; }
    void requestMicrophone(std::function<void(bool isGranted)> completion) override;
    QList<QUrl> microphoneSettingsPages() override { return m_settingsPages; }
    std::optional<QString> microphoneAdvice(MicrophoneAuthorizationState) override
    {
        return m_advice;
    }
    Access accessibility() override { return m_accessibility; }
    void promptForAccessibility() override
    {
        ++m_accessibilityPromptCount;
        if (m_isGrantedWhenPrompted)
            m_accessibility = Access::granted;
    }
    void observe(std::function<void()> changed) override { m_changed = std::move(changed); }

    /// At first the microphone is authorized and the program trusted, and there are no settings
    /// pages and no advice.
    void setMicrophoneState(MicrophoneAuthorizationState state) { m_microphoneState = state; }
    void setMicrophoneSettingsPages(const QList<QUrl> &pages) { m_settingsPages = pages; }
    void setMicrophoneAdvice(const std::optional<QString> &advice) { m_advice = advice; }
    /// Denied, or granted.
    void setAccessibilityTrusted(bool isTrusted)
    {
        m_accessibility = isTrusted ? Access::granted : Access::denied;
    }
    void setAccessibility(Access access) { m_accessibility = access; }
    /// Tells the observer that something may have changed.
    void announceChange();
    /// From now on the user trusts the program as soon as the system asks.
    void grantAccessibilityWhenPrompted() { m_isGrantedWhenPrompted = true; }
    /// The user's answer to every question that is open; the state becomes what was answered.
    void answerMicrophoneRequests(bool isGranted);
    /// How often the system was made to ask, until now.
    int microphoneRequestCount() const { return m_microphoneRequestCount; }
    int accessibilityPromptCount() const { return m_accessibilityPromptCount; }

private:
    MicrophoneAuthorizationState m_microphoneState = MicrophoneAuthorizationState::authorized;
    QList<QUrl> m_settingsPages;
    std::optional<QString> m_advice;
    Access m_accessibility = Access::granted;
    std::function<void()> m_changed;
    bool m_isGrantedWhenPrompted = false;
    std::vector<std::function<void(bool isGranted)>> m_openRequests;
    int m_microphoneRequestCount = 0;
    int m_accessibilityPromptCount = 0;
};

} // namespace kestrova
