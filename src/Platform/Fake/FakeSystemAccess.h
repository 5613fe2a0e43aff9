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
    virtual void setAccessibilityTrusted(bool isTrusted) = 0;
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
    bool isAccessibilityTrusted() override { return m_isTrusted; }
    void promptForAccessibility() override
    {
        ++m_accessibilityPromptCount;
        m_isTrusted = m_isTrusted || m_isGrantedWhenPrompted;
    }

    void setMicrophoneState(MicrophoneAuthorizationState state) override
    {
        m_microphoneState = state;
    }
    void setMicrophoneSettingsPages(const QList<QUrl> &pages) override { m_settingsPages = pages; }
    void setMicrophoneAdvice(const std::optional<QString> &advice) override { m_advice = advice; }
    void setAccessibilityTrusted(bool isTrusted) override { m_isTrusted = isTrusted; }
    void grantAccessibilityWhenPrompted() override { m_isGrantedWhenPrompted = true; }
    void answerMicrophoneRequests(bool isGranted) override;
    int microphoneRequestCount() const override { return m_microphoneRequestCount; }
    int accessibilityPromptCount() const override { return m_accessibilityPromptCount; }

private:
    MicrophoneAuthorizationState m_microphoneState = MicrophoneAuthorizationState::authorized;
    QList<QUrl> m_settingsPages;
    std::optional<QString> m_advice;
    bool m_isTrusted = true;
    bool m_isGrantedWhenPrompted = false;
    std::vector<std::function<void(bool isGranted)>> m_openRequests;
    int m_microphoneRequestCount = 0;
    int m_accessibilityPromptCount = 0;
};

} // namespace kestrova
