#include "Views/Primitives/Text/TextLineHeight.h"

#include <QScopedValueRollback>
#include <QTextCursor>
#include <QTextDocument>

namespace kestrova {

TextLineHeight::TextLineHeight(QObject *parent) : QObject(parent)
{
    connect(this, &TextLineHeight::changed, this, &TextLineHeight::apply);
}

void TextLineHeight::setDocument(QQuickTextDocument *document)
{
    if (document == m_document)
        return;
    if (m_document)
        m_document->textDocument()->disconnect(this);
    m_document = document;
    if (m_document)
        connect(m_document->textDocument(), &QTextDocument::contentsChanged, this,
                &TextLineHeight::apply);
    Q_EMIT changed();
}

void TextLineHeight::apply()
{
    if (!m_document || m_height == 0 || m_isApplying)
        return;
    const QScopedValueRollback applying(m_isApplying, true);
    QTextBlockFormat format;
    format.setLineHeight(m_height, QTextBlockFormat::FixedHeight);
    QTextCursor cursor(m_document->textDocument());
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
}

} // namespace kestrova
