#pragma once

#include <QObject>
#include <qqmlregistration.h>

namespace kestrova {

/// What the theme follows: the user's choice and what the desktop asks for. One for each QML
/// engine; whoever owns the engine sets it. Main thread.
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark MEMBER m_isDark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion MEMBER m_reducedMotion NOTIFY changed)
    Q_PROPERTY(bool highContrast MEMBER m_highContrast NOTIFY changed)
    Q_PROPERTY(bool compositing MEMBER m_compositing NOTIFY changed)

public:
    using QObject::QObject;

Q_SIGNALS:
    void changed();

private:
    bool m_isDark = false;
    bool m_reducedMotion = false;
    bool m_highContrast = false;
    bool m_compositing = false; ///< windows can be translucent
};

} // namespace kestrova
