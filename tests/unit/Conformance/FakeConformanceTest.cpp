#include "Conformance/ConformanceDesktop.h"

#include "Platform/Fake/FakePlatform.h"

#include <QGuiApplication>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class FakeConformanceDesktop : public ConformanceDesktop
{
public:
    FakeConformanceDesktop()
    {
        fake.desktop->setInstalled({editor, browser});
        fake.desktop->setRefusedAddresses({u"absent-scheme:nothing"_s});
        fake.desktop->setHook([this](const QString &action) {
            if (action.startsWith(u"activate "_s))
                fake.desktop->bringToFront(action.mid(9).toInt());
        });
    }

    Platform &platform() override { return fake.platform; }
    qint32 start(const QString &identifier) override
    {
        RunningApplication application;
        application.processIdentifier = qint32(100 + m_running.size());
        application.bundleIdentifier = identifier;
        m_running.append(application);
        fake.desktop->setRunning(m_running);
        fake.desktop->bringToFront(m_running.last().processIdentifier);
        return m_running.last().processIdentifier;
    }
    void turnTo(const QString &identifier) override
    {
        for (const RunningApplication &application : m_running) {
            if (application.bundleIdentifier == identifier)
                fake.desktop->bringToFront(application.processIdentifier);
        }
    }
    void press(const HotkeyShortcut &shortcut) override
    {
        fake.keyboard.pressGlobally({.keyCode = shortcut.keyCode, .modifiers = shortcut.modifiers});
    }
    int keystrokesInFront() override { return int(fake.desktop->actions().count(u"paste"_s)); }
    std::optional<QString> readClipboard() override
    {
        fake.pasteboard.read(300);
        return fake.pasteboard.string();
    }
    void writeClipboard(const QString &text) override { fake.pasteboard.put(text); }
    bool waitUntil(const std::function<bool()> &condition) override { return condition(); }

protected:
    FakePlatform fake;

private:
    char m_name[5] = "test";
    char m_option[10] = "-platform";
    char m_system[10] = "offscreen";
    char *m_arguments[4] = {m_name, m_option, m_system, nullptr};
    int m_count = 3;
    QGuiApplication m_application{m_count, m_arguments};
    QList<RunningApplication> m_running;
};

/// Binds shortcuts by name and tells nothing about other applications.
class ReticentConformanceDesktop final : public FakeConformanceDesktop
{
public:
    ReticentConformanceDesktop() { fake.desktop->tellNothing(); }

    void press(const HotkeyShortcut &shortcut) override
    {
        m_shortcuts.accept();
        for (const NamedShortcut &asked : m_shortcuts.requests().last()) {
            if (asked.preferredTrigger == shortcut)
                m_shortcuts.press(asked.id);
        }
    }

private:
    FakeGlobalShortcuts &m_shortcuts = fake.useNamedShortcuts();
};

template <typename Desktop>
std::unique_ptr<ConformanceDesktop> make()
{
    return std::make_unique<Desktop>();
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Fakes, Conformance,
                         testing::Values(ConformanceCase{"able", &make<FakeConformanceDesktop>},
                                         ConformanceCase{"reticent",
                                                         &make<ReticentConformanceDesktop>}));

} // namespace kestrova
