#include "Services/Dictation/WordCount.h"

#include <QTextBoundaryFinder>

namespace kestrova {

qint64 wordCount(const QString &text)
{
    qint64 words = 0;
    bool insideWord = false;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    // Every white-space code point is one UTF-16 unit, so the cluster's first unit decides.
    for (qsizetype start = 0; start >= 0 && start < text.size();
         start = characters.toNextBoundary()) {
        const bool isSpace = text.at(start).isSpace();
        if (!isSpace && !insideWord)
            ++words;
        insideWord = !isSpace;
    }
    return words;
}

} // namespace kestrova
