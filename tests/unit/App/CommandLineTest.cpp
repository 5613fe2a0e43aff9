#include "App/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrova {
namespace {

std::string unknown(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "kestrova");
    std::vector<char *> words;
    for (std::string &argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    return std::string(unknownArgument(int(arguments.size()), words.data()).value_or("none"));
}

TEST(CommandLine, ItsOwnOptionsAndThoseOfQtAreKnown)
{
    EXPECT_EQ(unknown({}), "none");
    EXPECT_EQ(unknown({"--control"}), "none");
    EXPECT_EQ(unknown({"-session", "1_2", "--control"}), "none");
    EXPECT_EQ(unknown({"-platform", "xcb", "--style=fusion", "-reverse"}), "none");
    EXPECT_EQ(unknown({"-style"}), "none") << "Qt takes what is not there for nothing";
}

TEST(CommandLine, TheFirstOtherArgumentIsNotKnown)
{
    EXPECT_EQ(unknown({"--control", "--colour", "--x"}), "--colour");
    EXPECT_EQ(unknown({"dashboard"}), "dashboard");
    EXPECT_EQ(unknown({"platform"}), "platform");
    EXPECT_EQ(unknown({"--style=fusion", "windows"}), "windows");
    EXPECT_EQ(unknown({"-reverse", "yes"}), "yes");
    EXPECT_EQ(unknown({""}), "");
    EXPECT_EQ(unknown({"--control=1"}), "--control=1");
}

} // namespace
} // namespace kestrova
