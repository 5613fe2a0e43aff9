#pragma once

#include "Platform/Linux/Applications/ApplicationIdentifier.h"

#include <QStringList>

#include <chrono>
#include <mutex>
#include <optional>

namespace kestrova {

/// The installed applications. Each question is answered from what is installed now: the folders
/// are read again when one of them has changed. Usable from any thread.
class DesktopEntries
{
public:
    /// A file that is changed may still be being written, and a second change within the clock
    /// tick of the file system shows no new time: so long after a change it is read every time.
    static constexpr std::chrono::milliseconds settlingTime{2000};

    /// $XDG_DATA_HOME/applications, then applications/ in each of $XDG_DATA_DIRS.
    static QStringList standardDirectories();

    /// An entry of an earlier directory replaces those with its identifier in later ones.
    explicit DesktopEntries(const QStringList &directories = standardDirectories());

    std::optional<DesktopEntry> application(const QString &identifier);
    std::optional<DesktopEntry> application(const WindowClues &clues);

private:
    struct FolderTime
    {
        QString path;
        qint64 changed; // ms since the epoch

        bool operator==(const FolderTime &) const = default;
    };

    const QList<DesktopEntry> &current();
    QList<FolderTime> folderTimes() const;
    QList<DesktopEntry> read() const;

    const QStringList m_directories;
    std::mutex m_mutex;
    bool m_hasSettled = false;
    QList<FolderTime> m_folderTimes;
    QList<DesktopEntry> m_entries;
};

} // namespace kestrova
