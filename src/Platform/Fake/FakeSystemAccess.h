#pragma once

#include "Platform/SystemAccess.h"

#include <vector>

namespace kestrova {

class FakeSystemAccessControl
{
public:
    virtual ~FakeSystemAccessControl() = default;

    /// At first the microphone is authorized and the program trusted, and there are no settings
    /// pages and no advice.
    virtual void setMicrophoneState(MicrophoneAuthorizationState state) = 0;
    virtual void setMicrophoneSettingsPages(const QList<QUrl> &pages) = 0;
    virtual void setMicrophoneAdvice(const std::optional<QString> &advice) = 0;
    /// Denied, or granted.
    virtual void setAccessibilityTrusted(bool isTrusted) = 0;
    virtual void setAccessibility(Access access) = 0;
    /// Tells the observer that something may have changed.
    virtual void announceChange() = 0;
    /// From now on the user trusts the program as soon as the system asks.
    virtual void grantAccessibilityWhenPrompted() = 0;

    /// The user's answer to every question that is open; the state becomes what was answered.
    virtual void answerMicrophoneRequests(bool isGranted) = 0;
    /// How often the system was made to ask, until now.
    virtual int microphoneRequestCount() const = 0;
    virtual int accessibilityPromptCount() const = 0;
};

/// Not for several threads.
class FakeSystemAccess final : public SystemAccess, public FakeSystemAccessControl
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

    void setMicrophoneState(MicrophoneAuthorizationState state) override
    {
        m_microphoneState = state;
    }
    void setMicrophoneSettingsPages(const QList<QUrl> &pages) override { m_settingsPages = pages; }
    void setMicrophoneAdvice(const std::optional<QString> &advice) override { m_advice = advice; }
    void setAccessibilityTrusted(bool isTrusted) override
    {
        m_accessibility = isTrusted ? Access::granted : Access::denied;
    }
    void setAccessibility(Access access) override { m_accessibility = access; }
    void announceChange() override;
    void grantAccessibilityWhenPrompted() override { m_isGrantedWhenPrompted = true; }
    void answerMicrophoneRequests(bool isGranted) override;
    int microphoneRequestCount() const override { return m_microphoneRequestCount; }
    int accessibilityPromptCount() const override { return m_accessibilityPromptCount; }

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
