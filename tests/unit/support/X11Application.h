#pragma once

#include <QGuiApplication>

namespace kestrova {

/// The application object of a test whose windows are on the X server.
class X11Application
{
private:
    int m_argc = 3;
    char m_name[5] = "test";
    char m_option[10] = "-platform";
    char m_platform[4] = "xcb";
    char *m_argv[4] = {m_name, m_option, m_platform, nullptr};
    QGuiApplication m_application{m_argc, m_argv};
};

} // namespace kestrova
