#include "Views/Tray/FailureNotice.h"

#include "Views/Tray/FreeDescriptors.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <cstdio>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// With some to spare.
constexpr int neededDescriptors = 8;

QMessageBox *newNotice()
{
    auto *const notice = new QMessageBox(
        QMessageBox::Warning, u"Kestrova"_s,
        u"Kestrova's windows cannot be shown. Dictation goes on."_s, QMessageBox::Close);
    notice->setAttribute(Qt::WA_DeleteOnClose);
    notice->setTextFormat(Qt::PlainText);
    notice->setDefaultButton(QMessageBox::Close);
    auto *const quit = notice->addButton(u"Quit Kestrova"_s, QMessageBox::DestructiveRole);
    QObject::connect(quit, &QPushButton::clicked, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    return notice;
}

} // namespace

void tellFailure(const QString &reason)
{
    std::fprintf(stderr, "kestrova: %s\n", qUtf8Printable(reason));
    if (!areDescriptorsFree(neededDescriptors))
        return;
    static QPointer<QMessageBox> notice;
    if (!notice)
        notice = newNotice();
    notice->setInformativeText(reason);
    notice->show();
    notice->raise();
    notice->activateWindow();
}

} // namespace kestrova
