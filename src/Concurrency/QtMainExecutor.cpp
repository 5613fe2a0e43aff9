#include "Concurrency/QtMainExecutor.h"

#include <QMetaObject>

namespace kestrova {

void QtMainExecutor::post(std::function<void()> work)
{
    QMetaObject::invokeMethod(&m_context, std::move(work), Qt::QueuedConnection);
}

} // namespace kestrova
