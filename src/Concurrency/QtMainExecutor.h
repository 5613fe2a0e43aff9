#pragma once

#include "Concurrency/MainExecutor.h"

#include <QObject>

namespace kestrova {

/// Posts to the event loop of the thread that created it, which is the main thread.
/// Work still queued when it is destroyed is dropped.
class QtMainExecutor final : public MainExecutor
{
public:
    void post(std::function<void()> work) override;

private:
    QObject m_context;
};

} // namespace kestrova
