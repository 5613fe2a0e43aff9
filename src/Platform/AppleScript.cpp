#include "Platform/AppleScript.h"

namespace kestrova::AppleScript {

using namespace Qt::StringLiterals;

QString escaped(const QString &text)
{
    QString result = text;
    result.replace(u"\\"_s, u"\\\\"_s);
    result.replace(u"\""_s, u"\\\""_s);
    return result;
}

QString activation(const QString &bundleIdentifier)
{
    return u"tell application id \""_s + escaped(bundleIdentifier) + u"\" to activate"_s;
}

QString activationByName(const QString &name)
{
    return u"tell application \""_s + escaped(name.trimmed()) + u"\" to activate"_s;
}

QString paste(const std::optional<QString> &bundleIdentifier)
{
    const QString keystroke =
        u"tell application \"System Events\" to keystroke \"v\" using command down"_s;
    if (!bundleIdentifier || bundleIdentifier->isEmpty())
        return keystroke;
    return u"tell application id \""_s + *bundleIdentifier + u"\" to activate\ndelay 0.08\n"_s +
           keystroke;
}

} // namespace kestrova::AppleScript
