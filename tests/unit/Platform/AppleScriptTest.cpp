#include "Platform/AppleScript.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(AppleScript, BackslashesAreEscapedBeforeQuotes)
{
    EXPECT_EQ(AppleScript::escaped(u"a\\b\"c"_s), u"a\\\\b\\\"c"_s);
}

TEST(AppleScript, ActivationGoesByIdentifierOrByTrimmedName)
{
    EXPECT_EQ(AppleScript::activation(u"org.example.Mail"_s),
              u"tell application id \"org.example.Mail\" to activate"_s);
    EXPECT_EQ(AppleScript::activationByName(u" My \"Mail\"\n"_s),
              u"tell application \"My \\\"Mail\\\"\" to activate"_s);
}

TEST(AppleScript, PasteActivatesFirstWhenAnIdentifierIsKnown)
{
    const QString keystroke =
        u"tell application \"System Events\" to keystroke \"v\" using command down"_s;
    EXPECT_EQ(AppleScript::paste(std::nullopt), keystroke);
    EXPECT_EQ(AppleScript::paste(u""_s), keystroke);
    EXPECT_EQ(AppleScript::paste(u"org.example.Mail"_s),
              u"tell application id \"org.example.Mail\" to activate\ndelay 0.08\n"_s + keystroke);
}

TEST(AppleScript, AQuoteInTheIdentifierIsEscapedForActivationButNotForPasting)
{
    EXPECT_EQ(AppleScript::activation(u"a\"b"_s), u"tell application id \"a\\\"b\" to activate"_s);
    EXPECT_TRUE(
        AppleScript::paste(u"a\"b"_s).startsWith(u"tell application id \"a\"b\" to activate\n"_s));
}

} // namespace
} // namespace kestrova
