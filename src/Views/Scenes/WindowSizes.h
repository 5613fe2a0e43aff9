#pragma once

#include "Platform/UserDefaults.h"

#include <QHash>
#include <QSize>

#include <optional>

namespace kestrova {

/// The size that each window was left with, kept for the user. Main thread. What cannot be read or
/// written is done without: a window's size is not worth an error.
class WindowSizes
{
public:
    /// The defaults outlive this.
    explicit WindowSizes(UserDefaults &defaults);

    /// None for a window that was never left, or whose size cannot be read.
    std::optional<QSize> size(const QString &window) const;
    void setSize(const QString &window, QSize size);

private:
    UserDefaults &m_defaults;
    QHash<QString, QSize> m_sizes;
};

} // namespace kestrova
