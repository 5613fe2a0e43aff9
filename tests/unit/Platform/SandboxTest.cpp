#include "Platform/Linux/Sandbox/Sandbox.h"

#include "Platform/Linux/Sandbox/MicrophoneAdvice.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

class SandboxTest : public testing::Test
{
protected:
    void writeInfo(const QByteArray &text)
    {
        QFile file(m_signs.flatpakInfoPath);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    const QTemporaryDir m_folder;
    SandboxSigns m_signs{m_folder.filePath(u"info"_s), {}, u"/usr/bin/dictation"_s};
};

TEST_F(SandboxTest, AnOrdinaryProgramIsInNone)
{
    EXPECT_EQ(sandboxOf(m_signs), std::nullopt);
}

TEST_F(SandboxTest, AFlatpakKnowsItsNameAndWhetherItReachesSound)
{
    writeInfo("[Application]\nname=org.example.Dictation\n"
              "[Context]\nshared=ipc;\nsockets=x11;pulseaudio;\n");
    EXPECT_EQ(sandboxOf(m_signs),
              (Sandbox{Sandbox::Kind::flatpak, u"org.example.Dictation"_s, true}));
    writeInfo("[Application]\nname=org.example.Dictation\n[Context]\nsockets=x11;\n");
    EXPECT_FALSE(sandboxOf(m_signs)->reachesSound);
    writeInfo("[Application]\nname=org.example.Dictation\n");
    EXPECT_FALSE(sandboxOf(m_signs)->reachesSound);
}

TEST_F(SandboxTest, ASnapIsTheOneThatTheProgramIsIn)
{
    m_signs.environment.insert(u"SNAP"_s, u"/snap/dictation/7"_s);
    m_signs.environment.insert(u"SNAP_INSTANCE_NAME"_s, u"dictation"_s);
    EXPECT_EQ(sandboxOf(m_signs), std::nullopt) << "only started by a snap";
    m_signs.executablePath = u"/snap/dictation/70/bin/dictation"_s;
    EXPECT_EQ(sandboxOf(m_signs), std::nullopt);
    m_signs.executablePath = u"/snap/dictation/7/bin/dictation"_s;
    EXPECT_EQ(sandboxOf(m_signs), (Sandbox{Sandbox::Kind::snap, u"dictation"_s}));
}

TEST(MicrophoneAdvice, NamesTheApplicationAndTheWayOut)
{
    const Sandbox flatpak{Sandbox::Kind::flatpak, u"org.example.Dictation"_s};
    const Sandbox silent{Sandbox::Kind::flatpak, u"org.example.Dictation"_s, false};
    const Sandbox snap{Sandbox::Kind::snap, u"dictation"_s};
    const auto contains = [](const std::optional<QString> &text, const char *part) {
        return text.value_or(QString()).contains(QString::fromLatin1(part));
    };
    const char grant[] = "`flatpak permission-set devices microphone org.example.Dictation yes`";
    EXPECT_TRUE(contains(microphoneAdvice(flatpak, State::denied), grant));
    EXPECT_TRUE(contains(microphoneAdvice(flatpak, State::notDetermined), grant));
    EXPECT_TRUE(contains(microphoneAdvice(flatpak, State::unknown),
                         "`flatpak permission-show org.example.Dictation`"));
    EXPECT_TRUE(contains(microphoneAdvice(silent, State::denied),
                         "`flatpak override --user --socket=pulseaudio org.example.Dictation`"));
    EXPECT_TRUE(contains(microphoneAdvice(snap, State::denied),
                         "`sudo snap connect dictation:audio-record`"));
    EXPECT_TRUE(contains(microphoneAdvice(snap, State::unknown), "`snap connections dictation`"));
}

TEST(MicrophoneAdvice, IsNeverThatOfAnotherSystemAndNoneOnceTheMicrophoneMayBeUsed)
{
    for (const auto kind : {Sandbox::Kind::flatpak, Sandbox::Kind::snap}) {
        const Sandbox sandbox{kind, u"dictation"_s};
        for (const State state :
             {State::denied, State::restricted, State::notDetermined, State::unknown}) {
            const auto advice = microphoneAdvice(sandbox, state);
            ASSERT_TRUE(advice);
            EXPECT_FALSE(advice->contains(u"macOS"_s) || advice->contains(u"tccutil"_s));
        }
        EXPECT_EQ(microphoneAdvice(sandbox, State::authorized), std::nullopt);
    }
}

} // namespace
} // namespace kestrova
