#include "Views/Tray/LazyWindows.h"

namespace kestrova {

Windows &LazyWindows::windows()
{
    if (!m_windows) {
        m_windows = m_load();
        connect(m_windows.get(), &Windows::shown, this, &Windows::shown);
    }
    return *m_windows;
}

} // namespace kestrova
