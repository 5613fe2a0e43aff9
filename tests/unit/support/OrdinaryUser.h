#pragma once

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <sys/types.h>
#include <unistd.h>

namespace kestrova {

/// Permissions stop nobody who is root: while it lives, a test that runs as root is an ordinary
/// user's, to whom the folder and all that it holds belong from then on.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const QTemporaryDir &folder)
    {
        if (!m_wasRoot)
            return;
        giveAway(folder.path());
        for (QDirIterator entries(folder.path(), QDir::AllEntries | QDir::NoDotAndDotDot,
                                  QDirIterator::Subdirectories);
             entries.hasNext();)
            giveAway(entries.next());
        become(nobody);
    }
    ~OrdinaryUser()
    {
        if (m_wasRoot)
            become(0);
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    static void giveAway(const QString &path)
    {
        if (lchown(QFile::encodeName(path).constData(), nobody, gid_t(-1)) != 0)
            qFatal("a file cannot be given away");
    }

    static void become(uid_t user)
    {
        if (setresuid(user, user, 0) != 0)
            qFatal("the user cannot be changed");
    }

    const bool m_wasRoot = geteuid() == 0;
};

} // namespace kestrova
