#include "Platform/Linux/X11/Windows/X11ApplicationWindows.h"

namespace kestrova {

QList<ApplicationWindow> X11ApplicationWindows::all()
{
    QList<ApplicationWindow> described;
    for (const X11Window &window : m_windows.all())
        described.append(describe(window));
    return described;
}

std::optional<ApplicationWindow> X11ApplicationWindows::active()
{
    const auto window = m_windows.active();
    return window ? std::optional(describe(*window)) : std::nullopt;
}

void X11ApplicationWindows::activate(quint64 window)
{
    m_windows.activate(static_cast<xcb_window_t>(window));
}

ApplicationWindow X11ApplicationWindows::describe(const X11Window &window)
{
    return {
        .window = window.window,
        .bundleIdentifier = window.bundleIdentifier,
        .names = {window.localizedName.value_or(QString()), window.className, window.instanceName},
        .title = m_windows.title(window.window)};
}

} // namespace kestrova
