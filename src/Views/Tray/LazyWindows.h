#pragma once

#include "Views/Tray/Windows.h"

#include <functional>
#include <memory>

namespace kestrova {

/// The windows, loaded with all that they need when the first of them is wanted: most of the time
/// nobody looks at one. When they cannot be loaded, that is told, and tried anew the next time.
class LazyWindows final : public Windows
{
public:
    /// Throws ReadableError.
    using Load = std::function<std::unique_ptr<Windows>()>;

    explicit LazyWindows(Load load) : m_load(std::move(load)) {}

    bool open(const QString &identifier) override;
    bool close(const QString &identifier) override;
    void togglePopover() override;
    void showPopoverQuietly() override;

private:
    /// None when they cannot be loaded.
    Windows *windows();

    const Load m_load;
    std::unique_ptr<Windows> m_windows;
};

} // namespace kestrova
