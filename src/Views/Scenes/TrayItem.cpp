#include "Views/Scenes/TrayItem.h"

namespace kestrova {

using namespace Qt::StringLiterals;

TrayItem::TrayItem()
{
    m_icon.setToolTip(u"Kestrova"_s);
    m_icon.setIcon(QIcon(u":/symbols/kestrova-small.svg"_s));
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](auto reason) {
        // The second of two quick clicks comes as a double one.
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick ||
            reason == QSystemTrayIcon::Context)
            Q_EMIT clicked();
    });
    m_icon.show();
}

} // namespace kestrova
