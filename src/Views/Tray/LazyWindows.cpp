#include "Views/Tray/LazyWindows.h"

#include "Models/ReadableError.h"

namespace kestrova {

bool LazyWindows::open(const QString &identifier)
{
    Windows *const loaded = windows();
    return !loaded || loaded->open(identifier);
}

bool LazyWindows::close(const QString &identifier)
{
    Windows *const loaded = windows();
    return !loaded || loaded->close(identifier);
}

void LazyWindows::togglePopover()
{
    if (Windows *const loaded = windows())
        loaded->togglePopover();
}

void LazyWindows::showPopoverQuietly()
{
    if (Windows *const loaded = windows())
        loaded->showPopoverQuietly();
}

Windows *LazyWindows::windows()
{
    if (m_windows)
        return m_windows.get();
    try {
        m_windows = m_load();
    } catch (const ReadableError &error) {
        Q_EMIT failed(error.errorDescription());
        return nullptr;
    }
    connect(m_windows.get(), &Windows::shown, this, &Windows::shown);
    connect(m_windows.get(), &Windows::failed, this, &Windows::failed);
    return m_windows.get();
}

} // namespace kestrova
