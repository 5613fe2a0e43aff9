#pragma once

#include <QString>

/// How the dashboard words its numbers.
namespace kestrova {

/// One decimal, for example "5.5".
QString oneDecimal(double number);

/// For example "424 words".
QString wordsText(qint64 words);
/// For example "5.5 mins".
QString minutesText(double minutes);

} // namespace kestrova
