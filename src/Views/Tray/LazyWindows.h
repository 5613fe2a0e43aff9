#pragma once

#include "Views/Tray/Windows.h"

#include <functional>
#include <memory>

namespace kestrova {

/// The windows, loaded with all that they need when the first of them is wanted: most of the time
/// nobody looks at one.
class LazyWindows final : public Windows
{
public:
    using Load = std::function<std::unique_ptr<Windows>()>;

    explicit LazyWindows(Load load) : m_load(std::move(load)) {}

    bool open(const QString &identifier) override { return windows().open(identifier); }
    bool close(const QString &identifier) override { return windows().close(identifier); }
    void togglePopover() override { windows().togglePopover(); }

private:
    Windows &windows();

    const Load m_load;
    std::unique_ptr<Windows> m_windows;
};

} // namespace kestrova
