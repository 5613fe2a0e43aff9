#include "Platform/Linux/Applications/ApplicationAddress.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QUrl applicationAddress(const QString &identifier)
{
    QUrl address;
    address.setScheme(u"application"_s);
    address.setPath(identifier);
    return address;
}

std::optional<QString> applicationAt(const QUrl &address)
{
    if (address.scheme() != "application"_L1 || address.path().isEmpty())
        return std::nullopt;
    return address.path(QUrl::FullyDecoded);
}

} // namespace kestrova
