#include "Platform/Linux/NoDesktop.h"

#include "Models/ReadableError.h"

namespace kestrova::NoDesktop {

using namespace Qt::StringLiterals;

std::optional<RunningApplication> EmptyWorkspace::frontmostApplication()
{
    return std::nullopt;
}

std::optional<RunningApplication> EmptyWorkspace::runningApplication(qint32)
{
    return std::nullopt;
}

QList<RunningApplication> EmptyWorkspace::runningApplications(const QString &)
{
    return {};
}

void EmptyWorkspace::activate(const RunningApplication &) {}

bool EmptyWorkspace::isInstalled(const QString &)
{
    return false;
}

bool EmptyWorkspace::openAddress(const QUrl &)
{
    return false;
}

std::unique_ptr<Workspace::Observation>
EmptyWorkspace::observeActivations(std::function<void(const RunningApplication &)>)
{
    return std::make_unique<Observation>();
}

std::shared_ptr<PasteboardOffer> MissingPasteboard::setString(const QString &)
{
    throw PlatformError(u"There is no clipboard, because the program runs without a desktop."_s);
}

std::optional<QString> MissingPasteboard::string()
{
    return std::nullopt;
}

KeyEventPosting::Outcome MissingKeyboard::postCommandV(const Conditions &)
{
    return Outcome::unavailable;
}

std::unique_ptr<KeyEventMonitoring::Monitor> MissingKeyMonitoring::addGlobalMonitor(KeyEvent::Types,
                                                                                    GlobalHandler)
{
    return nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor> MissingKeyMonitoring::addLocalMonitor(KeyEvent::Types,
                                                                                   LocalHandler)
{
    return nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor>
MissingKeyMonitoring::withhold(const QList<HotkeyShortcut> &)
{
    return nullptr;
}

bool MissingKeyMonitoring::canType(const HotkeyShortcut &)
{
    return false;
}

} // namespace kestrova::NoDesktop
