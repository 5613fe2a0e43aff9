#include "Platform/Linux/Applications/DesktopEntries.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class DesktopEntriesTest : public testing::Test
{
protected:
    QString folder(const QString &name) const { return m_folder.filePath(name); }

    void write(const QString &path, const QByteArray &keys)
    {
        QDir().mkpath(QFileInfo(folder(path)).path());
        QFile file(folder(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nExec=/bin/sh %U\n" + keys);
    }

    // As if nothing had been changed for an hour.
    void settle(const QString &path)
    {
        const time_t anHourAgo = time(nullptr) - 3600;
        const timespec times[2] = {{anHourAgo, 0}, {anHourAgo, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(folder(path)).constData(), times, 0), 0);
    }

    static QString nameOf(DesktopEntries &entries, const QString &identifier)
    {
        const auto entry = entries.application(identifier);
        return entry ? entry->name : u"none"_s;
    }

    QTemporaryDir m_folder;
};

TEST_F(DesktopEntriesTest, AnEntryIsFoundByItsIdentifierExactly)
{
    write(u"a/org.example.Editor.desktop"_s, "Name=Editor\n");
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"org.example.Editor"_s), u"Editor"_s);
    EXPECT_EQ(nameOf(entries, u"org.example.editor"_s), u"none"_s);
    EXPECT_EQ(nameOf(entries, u"org.example.Editor.desktop"_s), u"none"_s);
    EXPECT_EQ(nameOf(entries, u""_s), u"none"_s);
}

TEST_F(DesktopEntriesTest, WhatIdentificationNeedsIsRead)
{
    QFile program(folder(u"real"_s));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    ASSERT_TRUE(QFile::link(folder(u"real"_s), folder(u"link"_s)));
    write(u"a/x.desktop"_s, "Name=X\nStartupWMClass=XX\nNoDisplay=true\nTerminal=true\nExec=" +
                                QFile::encodeName(folder(u"link"_s)) + " --new %F\n");
    DesktopEntries entries({folder(u"a"_s)});
    const auto entry = entries.application(u"x"_s);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->path, folder(u"a/x.desktop"_s));
    EXPECT_EQ(entry->startupWMClass, u"XX"_s);
    EXPECT_EQ(entry->executable, folder(u"real"_s));
    EXPECT_EQ(entry->arguments, QStringList{u"--new"_s});
    EXPECT_FALSE(entry->isShown);
    EXPECT_TRUE(entry->runsInTerminal);
}

TEST_F(DesktopEntriesTest, ThePathBelowTheFolderIsPartOfTheIdentifier)
{
    write(u"a/vendor/tool.desktop"_s, "Name=Tool\n");
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"vendor-tool"_s), u"Tool"_s);
}

TEST_F(DesktopEntriesTest, TheUsersEntryReplacesTheSystems)
{
    write(u"user/x.desktop"_s, "Name=Mine\n");
    write(u"system/x.desktop"_s, "Name=Theirs\n");
    DesktopEntries entries({folder(u"user"_s), folder(u"system"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"Mine"_s);
}

TEST_F(DesktopEntriesTest, AnEntryMarkedHiddenRemovesTheSystems)
{
    write(u"user/x.desktop"_s, "Name=Mine\nHidden=true\n");
    write(u"system/x.desktop"_s, "Name=Theirs\n");
    DesktopEntries entries({folder(u"user"_s), folder(u"system"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"none"_s);
}

TEST_F(DesktopEntriesTest, WhatCannotBeStartedIsNotInstalled)
{
    write(u"a/gone.desktop"_s, "Name=Gone\nTryExec=/nonexistent/program\n");
    write(u"a/link.desktop"_s, "Name=Link\nType=Link\nURL=https://example.org\n");
    write(u"a/broken.desktop"_s, "Name=Broken\nthis is not a key\n");
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"gone"_s), u"none"_s);
    EXPECT_EQ(nameOf(entries, u"link"_s), u"none"_s);
    EXPECT_EQ(nameOf(entries, u"broken"_s), u"none"_s);
}

TEST_F(DesktopEntriesTest, TheNameIsInTheUsersLanguage)
{
    qputenv("LANGUAGE", "de");
    qputenv("LC_ALL", "de_DE.UTF-8");
    write(u"a/x.desktop"_s, "Name=Text Editor\nName[de]=Textbearbeitung\n");
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"Textbearbeitung"_s);
    qunsetenv("LANGUAGE");
    qunsetenv("LC_ALL");
}

TEST_F(DesktopEntriesTest, AnApplicationInstalledLaterIsFound)
{
    QDir().mkpath(folder(u"a/sub"_s));
    settle(u"a/sub"_s);
    settle(u"a"_s);
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"none"_s);
    write(u"a/x.desktop"_s, "Name=X\n");
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
    write(u"a/sub/y.desktop"_s, "Name=Y\n");
    EXPECT_EQ(nameOf(entries, u"sub-y"_s), u"Y"_s);
}

TEST_F(DesktopEntriesTest, TwoChangesWithinOneTickAreBothSeen)
{
    write(u"a/x.desktop"_s, "Name=X\n");
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
    write(u"a/y.desktop"_s, "Name=Y\n");
    EXPECT_EQ(nameOf(entries, u"y"_s), u"Y"_s);
}

TEST_F(DesktopEntriesTest, ARemovedApplicationIsNotFound)
{
    write(u"a/x.desktop"_s, "Name=X\n");
    settle(u"a"_s);
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
    ASSERT_TRUE(QFile::remove(folder(u"a/x.desktop"_s)));
    EXPECT_EQ(nameOf(entries, u"x"_s), u"none"_s);
}

TEST_F(DesktopEntriesTest, AFolderThatAppearsLaterIsRead)
{
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"none"_s);
    write(u"a/x.desktop"_s, "Name=X\n");
    settle(u"a"_s);
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
}

TEST_F(DesktopEntriesTest, WhileNothingChangesTheFilesAreNotReadAgain)
{
    write(u"a/x.desktop"_s, "Name=X\n");
    settle(u"a"_s);
    DesktopEntries entries({folder(u"a"_s)});
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
    // A change within a file does not show in the folder's time.
    write(u"a/x.desktop"_s, "Name=Changed\n");
    EXPECT_EQ(nameOf(entries, u"x"_s), u"X"_s);
}

} // namespace
} // namespace kestrova
