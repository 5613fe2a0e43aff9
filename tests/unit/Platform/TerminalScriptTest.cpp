#include "Platform/Linux/Terminal/TerminalScript.h"

#include "Services/TestFiles.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class TerminalScriptTest : public testing::Test
{
protected:
    TerminalScriptTest()
    {
        m_environment.insert(u"PATH"_s, m_folder.path() + u":/usr/bin:/bin"_s);
        m_environment.insert(u"HOME"_s, m_folder.path());
        m_environment.insert(u"SHELL"_s, u"/bin/sh"_s);
    }

    // Notes each of its arguments in a line and then an empty one.
    void install(const QString &program, const QByteArray &ending = {})
    {
        const QString path = m_folder.filePath(program);
        ASSERT_TRUE(writeFile(path, "#!/bin/sh\nprintf '%s\\n' \"$@\" '' >> '" + log().toUtf8() +
                                        "'\n" + ending));
        ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
    }

    QString log() const { return m_folder.filePath(u"log"_s); }

    // What it prints where no keyboard is: the shell that it leaves behind ends at once.
    QString run(const QString &command)
    {
        const QString path = m_folder.filePath(u"script"_s);
        EXPECT_TRUE(writeFile(path, terminalScript(command)));
        QProcess shell;
        shell.setProcessEnvironment(m_environment);
        shell.setStandardInputFile(QProcess::nullDevice());
        shell.start(u"/bin/sh"_s, {path});
        EXPECT_TRUE(shell.waitForFinished());
        EXPECT_FALSE(QFileInfo::exists(path)) << "the script removes itself";
        return QString::fromUtf8(shell.readAllStandardOutput());
    }

    const QTemporaryDir m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(TerminalScriptTest, TheCommandIsShownAndRunVerbatim)
{
    install(u"tell"_s);
    for (const QString &argument : {u"plain"_s, u"two  words"_s, u"\"double\" \\ \\\\ \\n"_s,
                                    u"$HOME `id` %s %1 *"_s, u"ünï — 語"_s, u"a\nb"_s}) {
        QFile::remove(log());
        const QString command = u"tell '%1' \"x\\\"y\\\\z\""_s.arg(argument);
        EXPECT_EQ(run(command), u"$ "_s + command + u'\n');
        EXPECT_EQ(QString::fromUtf8(readFile(log())), argument + u"\nx\"y\\z\n\n"_s);
    }
}

TEST_F(TerminalScriptTest, TheUsersShellRunsTheCommandAndIsLeftWithTheTerminal)
{
    install(u"shell"_s);
    m_environment.insert(u"SHELL"_s, m_folder.filePath(u"shell"_s));
    run(u"install 'it'"_s);
    EXPECT_EQ(readFile(log()), "-i\n-c\ninstall 'it'\n\n-i\n\n");
}

TEST_F(TerminalScriptTest, WithoutAUsableShellItIsTheStandardOne)
{
    for (const char *shell : {"", "/nonexistent/shell"}) {
        m_environment.insert(u"SHELL"_s, QString::fromLatin1(shell));
        EXPECT_EQ(run(u"echo \"$SHELL\""_s), u"$ echo \"$SHELL\"\n/bin/sh\n"_s);
    }
}

TEST_F(TerminalScriptTest, WhereHomebrewIsMissingItSaysWhatToDo)
{
    const QString output = run(u"brew install whisper-cpp"_s);
    EXPECT_TRUE(output.startsWith(u"$ brew install whisper-cpp\n"_s));
    EXPECT_TRUE(output.contains(u"https://brew.sh"_s));
    EXPECT_TRUE(output.contains(u"package manager"_s));
    EXPECT_TRUE(output.contains(u"https://github.com/ggml-org/whisper.cpp"_s));
    EXPECT_TRUE(output.contains(u"Settings"_s));
}

TEST_F(TerminalScriptTest, ABrewThatIsThereNeedsNoAdviceEvenWhenItFails)
{
    install(u"brew"_s, "exit 1\n");
    EXPECT_EQ(run(u"brew install whisper-cpp"_s), u"$ brew install whisper-cpp\n"_s);
    EXPECT_EQ(readFile(log()), "install\nwhisper-cpp\n\n");
    EXPECT_EQ(run(u"brewery"_s), u"$ brewery\n"_s) << "another program that is missing";
}

TEST_F(TerminalScriptTest, HomebrewIsFoundInItsOwnFolderToo)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".linuxbrew/bin"_s));
    install(u".linuxbrew/bin/brew"_s);
    EXPECT_EQ(run(u"brew install whisper-cpp"_s), u"$ brew install whisper-cpp\n"_s);
    EXPECT_EQ(readFile(log()), "install\nwhisper-cpp\n\n");
}

} // namespace
} // namespace kestrova
