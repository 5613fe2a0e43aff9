#pragma once

#include "Platform/Linux/Applications/ApplicationWindows.h"
#include "Platform/Linux/X11/Windows/X11Windows.h"

namespace kestrova {

/// The windows that the window manager manages. Any thread.
class X11ApplicationWindows final : public ApplicationWindows
{
public:
    /// The windows outlive this.
    explicit X11ApplicationWindows(X11Windows &windows) : m_windows(windows) {}

    QList<ApplicationWindow> all() override;
    std::optional<ApplicationWindow> active() override;
    void activate(quint64 window) override;

private:
    ApplicationWindow describe(const X11Window &window);

    X11Windows &m_windows;
};

} // namespace kestrova
