#include <QQmlEngine>
#include <QtQuickTest>

/// Lets the tests import the modules that are linked into this program.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine) { engine->addImportPath(QStringLiteral("qrc:/")); }
};

QUICK_TEST_MAIN_WITH_SETUP(kestrova, Setup)

#include "main.moc"
