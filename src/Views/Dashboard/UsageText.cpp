#include "Views/Dashboard/UsageText.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QString oneDecimal(double number)
{
    return QString::number(number, 'f', 1);
}

QString wordsText(qint64 words)
{
    return u"%1 words"_s.arg(words);
}

QString minutesText(double minutes)
{
    return u"%1 mins"_s.arg(oneDecimal(minutes));
}

} // namespace kestrova
