#include "Models/KestrovaError.h"

namespace kestrova {

using namespace Qt::StringLiterals;

KestrovaError KestrovaError::invalidState(const QString &message)
{
    return {Kind::invalidState, message};
}

KestrovaError KestrovaError::processFailed(const QString &message)
{
    return {Kind::processFailed, message};
}

KestrovaError KestrovaError::configuration(const QString &message)
{
    return {Kind::configuration, message};
}

KestrovaError KestrovaError::checksumMismatch(const QString &expected, const QString &actual)
{
    return {Kind::checksumMismatch,
            u"Model checksum mismatch. Expected "_s + expected + u", got "_s + actual + u"."_s};
}

KestrovaError KestrovaError::missingModel(const QUrl &modelURL)
{
    return {Kind::missingModel,
            u"Model file not found at "_s + modelURL.path(QUrl::FullyDecoded) + u"."_s};
}

KestrovaError KestrovaError::emptyTranscription()
{
    return {Kind::emptyTranscription, u"No speech detected."_s};
}

} // namespace kestrova
