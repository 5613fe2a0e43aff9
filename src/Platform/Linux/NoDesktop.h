#pragma once

#include "Platform/DesktopAppearance.h"
#include "Platform/KeyEventMonitoring.h"
#include "Platform/KeyEventPosting.h"
#include "Platform/Pasteboard.h"
#include "Platform/Workspace.h"

/// What stands in where there is no desktop: nothing runs there, and nothing can be sent.
namespace kestrova::NoDesktop {

class EmptyWorkspace final : public Workspace
{
public:
    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(qint32 processIdentifier) override;
    QList<RunningApplication> runningApplications(const QString &bundleIdentifier) override;
    bool isOfApplication(qint32, const RunningApplication &) override { return false; }
    void activate(const RunningApplication &application) override;
    bool isInstalled(const QString &bundleIdentifier) override;
    qint32 openApplication(const QString &) override { return 0; }
    bool isStarting(qint32) override { return false; }
    bool openAddress(const QUrl &address) override;
    void keepOffTaskBars(quint64) override {}
    void declareShadow(quint64, int) override {}
    bool isMinimised(quint64) override { return false; }
    QList<QRect> panels() override { return {}; }
    /// The handler is never called.
    std::unique_ptr<Observation>
    observeActivations(std::function<void(const RunningApplication &)> handler) override;
};

class PlainAppearance final : public DesktopAppearance
{
public:
    bool isCompositing() const override { return false; }
    bool reducesMotion() const override { return false; }
    bool isHighContrast() const override { return false; }
    std::optional<quint32> trayTextColor() const override { return std::nullopt; }
};

class MissingPasteboard final : public Pasteboard
{
public:
    /// Always throws PlatformError.
    std::shared_ptr<PasteboardOffer> setString(const QString &text) override;
    std::optional<QString> string() override;
};

class MissingKeyboard final : public KeyEventPosting
{
public:
    bool areModifiersHeld() override { return false; }
    bool isKeyboardTaken() override { return false; }
    /// Always unavailable.
    Outcome postCommandV(const Conditions &conditions) override;
};

class MissingKeyMonitoring final : public KeyEventMonitoring
{
public:
    /// All are always null, and nothing can be typed.
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types types,
                                              GlobalHandler handler) override;
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types types, LocalHandler handler) override;
    std::unique_ptr<Monitor> withhold(const QList<HotkeyShortcut> &shortcuts) override;
    bool canType(const HotkeyShortcut &shortcut) override;
};

} // namespace kestrova::NoDesktop
