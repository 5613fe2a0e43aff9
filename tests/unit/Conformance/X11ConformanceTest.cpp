#include "Conformance/ConformanceDesktop.h"

#include "Platform/Linux/X11/X11Session.h"
#include "support/ApplicationObject.h"
#include "support/KeyLogProgram.h"
#include "support/KeyPresses.h"
#include "support/SelectionClient.h"
#include "support/WaitUntil.h"
#include "support/WindowProgram.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <map>
#include <stdexcept>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// An xclip that has a text on the clipboard as long as this lasts.
class ClipboardOwner
{
public:
    explicit ClipboardOwner(const QString &text)
    {
        m_process.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-in"_s});
        m_process.write(text.toUtf8());
        m_process.closeWriteChannel();
    }
    ~ClipboardOwner()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(ClipboardOwner)

private:
    QProcess m_process;
};

/// The real thing, on the virtual desktop that the test runs on.
class X11ConformanceDesktop final : public ConformanceDesktop
{
public:
    X11ConformanceDesktop()
    {
        for (const QString &identifier : {editor, browser})
            install(identifier);
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
        m_session = X11Session::open();
        m_platform = makePlatform(m_session);
    }

    Platform &platform() override { return m_platform; }
    qint32 start(const QString &identifier) override
    {
        auto &application = m_applications[identifier];
        application = std::make_unique<WindowProgram>(m_connection, identifier, identifier);
        m_keyLog.reset();
        return application->processIdentifier();
    }
    void turnTo(const QString &identifier) override
    {
        const xcb_window_t window = m_applications.at(identifier)->windows().first();
        m_connection.sendToRoot(window, "_NET_ACTIVE_WINDOW", {2});
        const bool hasTurned = waitUntil([&] {
            return m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW") == window;
        });
        if (!hasTurned)
            throw std::runtime_error("the window manager does not turn to the window");
    }
    void press(const HotkeyShortcut &shortcut) override
    {
        std::vector<xcb_keycode_t> keys{key::leftSuper};
        const bool isMain = shortcut == HotkeyShortcut::defaultMain();
        keys.push_back(isMain ? key::leftShift : key::leftAlt);
        keys.push_back(isMain ? key::space : key::digit1);
        tapChord(m_keyboard, keys);
    }
    int keystrokesInFront() override
    {
        if (!m_keyLog)
            m_keyLog.emplace(); // takes the keyboard
        for (const QString &event : m_keyLog->keys()) {
            const int code = event.section(u' ', 1, 1).toInt();
            if (event.startsWith(u"press"_s) && !isModifier(code))
                ++m_keystrokes;
        }
        return m_keystrokes;
    }
    std::optional<QString> readClipboard() override
    {
        SelectionClient client;
        const auto value = client.read("CLIPBOARD", "UTF8_STRING");
        return value ? std::optional(QString::fromUtf8(value->bytes)) : std::nullopt;
    }
    void writeClipboard(const QString &text) override
    {
        m_clipboardOwner = std::make_unique<ClipboardOwner>(text);
        if (!waitUntil([&] { return readClipboard() == text; }))
            throw std::runtime_error("xclip does not own the clipboard");
    }
    bool waitUntil(const std::function<bool()> &condition) override
    {
        return kestrova::waitUntil(condition);
    }

private:
    void install(const QString &identifier)
    {
        QDir(m_data.path()).mkpath(u"applications"_s);
        QFile file(m_data.filePath(u"applications/"_s + identifier + u".desktop"_s));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("no desktop entry");
        file.write("[Desktop Entry]\nType=Application\nName=" + identifier.toUtf8() +
                   "\nExec=/bin/true\nStartupWMClass=" + identifier.toUtf8() + '\n');
    }
    static bool isModifier(int code)
    {
        return code == key::leftControl || code == key::leftShift || code == key::leftAlt ||
               code == key::leftSuper;
    }

    QTemporaryDir m_data;
    ApplicationObject<QGuiApplication> m_application{"xcb"};
    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    std::map<QString, std::unique_ptr<WindowProgram>> m_applications;
    std::optional<KeyLogProgram> m_keyLog;
    int m_keystrokes = 0;
    std::unique_ptr<ClipboardOwner> m_clipboardOwner;
    std::shared_ptr<X11Session> m_session;
    Platform m_platform;
};

std::unique_ptr<ConformanceDesktop> make()
{
    return std::make_unique<X11ConformanceDesktop>();
}

} // namespace

INSTANTIATE_TEST_SUITE_P(X11, Conformance, testing::Values(ConformanceCase{"X11", &make}));

} // namespace kestrova
