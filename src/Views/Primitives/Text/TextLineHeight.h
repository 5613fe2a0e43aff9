#pragma once

#include <QPointer>
#include <QQuickTextDocument>

namespace kestrova {

/// Gives the lines of a text that can be edited or selected the height of its style, which such a
/// text has no property for. Main thread.
class TextLineHeight : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY changed)
    /// In pixels.
    Q_PROPERTY(int height MEMBER m_height NOTIFY changed)

public:
    explicit TextLineHeight(QObject *parent = nullptr);

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);

Q_SIGNALS:
    void changed();

private:
    void apply();

    QPointer<QQuickTextDocument> m_document;
    int m_height = 0;
    bool m_isApplying = false;
};

} // namespace kestrova
