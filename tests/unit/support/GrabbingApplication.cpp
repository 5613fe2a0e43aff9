// Keeps the main shortcut from all windows until it is ended: another program for tests, to be
// stopped and killed.

#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char *argv[])
{
    using namespace kestrova;

    QCoreApplication application(argc, argv);
    PostedKeys postedKeys;
    X11KeyEventMonitoring monitoring(postedKeys);
    const auto grabbed = monitoring.grab({HotkeyShortcut::defaultMain()});
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
