#pragma once

#include <QStringList>
#include <QtGlobal>

namespace kestrova {

/// While it lives, keeps what is written as a warning or as something worse; nothing is printed.
class Warnings
{
public:
    Warnings() : m_formerHandler(qInstallMessageHandler(&keep)) { texts().clear(); }
    ~Warnings() { qInstallMessageHandler(m_formerHandler); }
    Warnings(const Warnings &) = delete;
    Warnings &operator=(const Warnings &) = delete;

    /// A line each.
    QString all() const { return texts().join(u'\n'); }

private:
    static QStringList &texts()
    {
        static QStringList texts;
        return texts;
    }
    /// All but what the screenless platform says of itself.
    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type != QtDebugMsg && type != QtInfoMsg &&
            !text.startsWith(QLatin1String("This plugin")))
            texts().append(text);
    }

    const QtMessageHandler m_formerHandler;
};

} // namespace kestrova
