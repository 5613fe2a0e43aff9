#pragma once

#include <QByteArray>
#include <QJsonValue>

namespace kestrova {

/// The value that a document holds; of a repeated key the last counts. Throws what parseJson()
/// throws, and JsonDecodingError for a number that no double comes near.
QJsonValue jsonTree(const QByteArray &document);

} // namespace kestrova
