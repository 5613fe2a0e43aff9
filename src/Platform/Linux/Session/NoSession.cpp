#include "Platform/Linux/Session/NoSession.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Applications/ApplicationLauncher.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

class EmptyWorkspace final : public Workspace
{
public:
    WorkspaceCapabilities capabilities() const override { return {}; }
    std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
    std::optional<RunningApplication> runningApplication(qint32) override { return std::nullopt; }
    QList<RunningApplication> runningApplications(const QString &) override { return {}; }
    bool isOfApplication(qint32, const RunningApplication &) override { return false; }
    void activate(const RunningApplication &) override {}
    bool isInstalled(const QString &) override { return false; }
    qint32 openApplication(const QString &) override { return 0; }
    bool isStarting(qint32) override { return false; }
    bool openAddress(const QUrl &) override { return false; }
    /// The handler is never called.
    std::unique_ptr<Observation>
    observeActivations(std::function<void(const RunningApplication &)>) override
    {
        return std::make_unique<Observation>();
    }
};

class PlainAppearance final : public DesktopAppearance
{
public:
    bool isCompositing() const override { return false; }
    bool reducesMotion() const override { return false; }
    bool isHighContrast() const override { return false; }
    std::optional<quint32> trayTextColor() const override { return std::nullopt; }
};

class NoWindowing final : public Windowing
{
public:
    bool canPlaceWindows() const override { return false; }
    QList<ScreenArea> screenAreas() override { return {}; }
    void keepOffTaskBars(QWindow &) override {}
    void declareShadow(QWindow &, int) override {}
    bool isMinimised(QWindow &) override { return false; }
    std::unique_ptr<KeyboardHold> holdKeyboard(QWindow &) override { return nullptr; }
    std::optional<quint32> colorBehind(const QRect &) override { return std::nullopt; }
};

class MissingPasteboard final : public Pasteboard
{
public:
    std::shared_ptr<PasteboardOffer> setString(const QString &) override
    {
        throw PlatformError(
            u"There is no clipboard, because the program runs without a desktop."_s);
    }
    std::optional<QString> string() override { return std::nullopt; }
};

class MissingKeyboard final : public KeyEventPosting
{
public:
    bool areModifiersHeld() override { return false; }
    bool isKeyboardTaken() override { return false; }
    Outcome postCommandV(const Conditions &) override { return Outcome::unavailable; }
};

class MissingKeyMonitoring final : public KeyEventMonitoring
{
public:
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types, GlobalHandler) override
    {
        return nullptr;
    }
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types, LocalHandler) override
    {
        return nullptr;
    }
    std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &) override { return nullptr; }
    bool canType(const HotkeyShortcut &) override { return false; }
};

} // namespace

std::shared_ptr<void> NoSession::prepareApplication()
{
    throw PlatformError(m_reason);
}

std::unique_ptr<Workspace> NoSession::makeWorkspace()
{
    return std::make_unique<EmptyWorkspace>();
}

std::unique_ptr<DesktopAppearance> NoSession::makeAppearance()
{
    return std::make_unique<PlainAppearance>();
}

std::unique_ptr<Windowing> NoSession::makeWindowing()
{
    return std::make_unique<NoWindowing>();
}

std::unique_ptr<Pasteboard> NoSession::makePasteboard()
{
    return makeMissingPasteboard();
}

std::unique_ptr<KeyEventPosting> NoSession::makeKeyEventPosting()
{
    return std::make_unique<MissingKeyboard>();
}

std::unique_ptr<KeyEventMonitoring> NoSession::makeKeyEventMonitoring()
{
    return std::make_unique<MissingKeyMonitoring>();
}

QByteArray NoSession::newStartupId()
{
    return startupId(0);
}

std::unique_ptr<Pasteboard> makeMissingPasteboard()
{
    return std::make_unique<MissingPasteboard>();
}

} // namespace kestrova
