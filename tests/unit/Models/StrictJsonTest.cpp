#include "Models/Json/JsonDecodingError.h"
#include "Models/Settings/AppSettings.h"
#include "Models/Usage/UsageEventsJson.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr auto settingsMembers =
    R"("shortcut":{"keyCode":49,"modifiers":768},"whisperCLIPath":"/w",)"
    R"("modelDownloadURL":"https://example.org/m.bin","modelSHA256":"")";
constexpr auto eventMembers = R"("id":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0",)"
                              R"("timestamp":1.5,"wordCount":3,"durationMinutes":0.25)";

QByteArray settingsWith(const QByteArray &member)
{
    return "{" + QByteArray(settingsMembers) + "," + member + "}";
}

QByteArray logWith(const QByteArray &member)
{
    return "[{" + QByteArray(eventMembers) + "," + member + "}]";
}

bool isSettings(const QByteArray &document)
{
    try {
        AppSettings::fromJson(document);
        return true;
    } catch (const JsonDecodingError &) {
        return false;
    }
}

bool isLog(const QByteArray &document)
{
    try {
        usageEventsFromJson(document);
        return true;
    } catch (const JsonDecodingError &) {
        return false;
    }
}

void expectValue(bool isJson, const QByteArray &value)
{
    const QByteArray member = "\"unknown\":" + value;
    EXPECT_EQ(isSettings(settingsWith(member)), isJson) << value.left(80).toStdString();
    EXPECT_EQ(isLog(logWith(member)), isJson) << value.left(80).toStdString();
}

QByteArray arraysInArrays(int levels)
{
    return QByteArray(levels, '[') + QByteArray(levels, ']');
}

// Also a value that nobody looks at makes a document damaged when it is no JSON.

TEST(StrictJson, UnknownEscapesAndHalfCharactersAreRefused)
{
    for (const char *text : {R"("\q")", R"("\'")", R"("\U0041")", R"("\x41")", R"("\u12")",
                             R"("\u12g4")", R"("\u+123")", R"("\ud83d")", R"("\ud83d x")",
                             R"("\ud83d\n")", R"("\ud83d\u0041")", R"("\ud83d\ud83d\ude00")",
                             R"("\ude00")", R"("\udfff x")", R"("\ud83d\ude00\udc00")", R"("\")"})
        expectValue(false, text);
    expectValue(false, R"({"\q":1})");
    expectValue(false, R"({"\udead":1})");
    expectValue(true, R"("\ud83d\ude00\ud7ff\ue000\uFFFF\u0000\/")");
    expectValue(true, "\"\xed\x9f\xbf\xee\x80\x80\"");
}

TEST(StrictJson, ControlCharactersStandInNoText)
{
    for (char control = 0; control < 0x20; ++control) {
        expectValue(false, "\"a" + QByteArray(1, control) + "b\"");
        expectValue(false, "{\"a" + QByteArray(1, control) + "b\":1}");
    }
    expectValue(true, "\"a\x7f\xc2\x80\"");
}

TEST(StrictJson, TextThatIsNotUtf8IsRefused)
{
    for (const char *bytes :
         {"\xff", "\x80", "\xc3", "\xc3(", "\xe2\x82", "\xc0\xaf", "\xc1\xbf", "\xe0\x80\xaf",
          "\xe0\x9f\xbf", "\xf0\x80\x80\xaf", "\xf0\x8f\xbf\xbf", "\xed\xa0\x80", "\xed\xbf\xbf",
          "\xed\xa0\xbd\xed\xb8\x80", "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80"})
        expectValue(false, "\"" + QByteArray(bytes) + "\"");
    expectValue(true, "\"\xc2\x80\xe0\xa0\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf\"");
}

TEST(StrictJson, NumbersHaveTheFormAndTheRangeOfJson)
{
    for (const char *number :
         {"49.",   ".49",    "+49",           "049", "-",   "-.5", "- 1",      "1e",        "1e+",
          "1.e1",  "0x31",   "1_000",         "4 9", "NaN", "nan", "Infinity", "-Infinity", "inf",
          "1e400", "-1e400", "1e99999999999", "1,5"})
        expectValue(false, number);
    expectValue(false, QByteArray(400, '9'));
    for (const char *number : {"-0", "-0.0", "0e0", "1E+2", "1.7976931348623157e308", "5e-324",
                               "18446744073709551616", "0.1000000000000000055511151231257827"})
        expectValue(true, number);
    expectValue(true, "0." + QByteArray(400, '3'));
}

TEST(StrictJson, OnlyJsonIsRead)
{
    for (const char *value :
         {"",       "tru",    "True",       "nul",       "undefined", "'a'",
          "a",      "[1,]",   "[,1]",       "[1 2]",     "{\"a\"}",   "{\"a\":}",
          "{a:1}",  "{1:1}",  "{\"a\":1,}", "{\"a\" 1}", "[1}",       "{\"a\":1]",
          "/*c*/1", "1//c\n", "1,",         "\"a"})
        expectValue(false, value);
    for (const char *value : {"null", "true", "[]", "{}", " \t\r\n[ 1 , {\"\" : [ ] } ] \n"})
        expectValue(true, value);
}

TEST(StrictJson, TheDepthIsLimited)
{
    expectValue(true, arraysInArrays(510));
    expectValue(false, arraysInArrays(512));
    expectValue(false, arraysInArrays(100'000));
    expectValue(false, QByteArray(100'000, '['));
    expectValue(false, QByteArray("{\"a\":").repeated(100'000));
}

TEST(StrictJson, NothingStandsBeforeOrBehindTheDocument)
{
    const QByteArray settings = settingsWith("\"a\":1");
    const QByteArray log = logWith("\"a\":1");
    const QByteArray mark = "\xEF\xBB\xBF";
    const auto expectAround = [&](bool isJson, const QByteArray &before, const QByteArray &behind) {
        EXPECT_EQ(isSettings(before + settings + behind), isJson)
            << (before + "..." + behind).toStdString();
        EXPECT_EQ(isLog(before + log + behind), isJson) << (before + "..." + behind).toStdString();
    };
    expectAround(true, "", "");
    expectAround(true, " \r\n\t", " \r\n\t");
    expectAround(true, mark, "");
    expectAround(true, mark + "\n", "\n");
    expectAround(false, "\n" + mark, "");
    expectAround(false, mark + mark, "");
    expectAround(false, "\xEF\xBB", "");
    expectAround(false, "", mark);
    expectAround(false, "", "x");
    expectAround(false, "", "}");
    expectAround(false, "", ",");
    expectAround(false, "", " null");
    expectAround(false, "", "//");
    expectAround(false, "", "\xff");
    expectAround(false, "", QByteArray(1, 0));
    expectAround(false, "", QByteArray(1, 0) + "x");
    expectAround(false, QByteArray(1, 0), "");
    for (const QByteArray &empty : {QByteArray(), QByteArray(""), QByteArray(" "), mark,
                                    QByteArray(1, 0), QByteArray("null")}) {
        EXPECT_FALSE(isSettings(empty));
        EXPECT_FALSE(isLog(empty));
    }
}

TEST(StrictJson, ADocumentIsReadThatIsAPartOfMoreBytes)
{
    const QByteArray settings = settingsWith("\"a\":1");
    const QByteArray log = logWith("\"a\":1");
    const QByteArray bytes = settings + log + "]";
    EXPECT_TRUE(isSettings(QByteArray::fromRawData(bytes.data(), settings.size())));
    EXPECT_TRUE(isLog(QByteArray::fromRawData(bytes.data() + settings.size(), log.size())));
    EXPECT_FALSE(isLog(QByteArray::fromRawData(bytes.data() + settings.size(), log.size() - 1)));
}

TEST(StrictJson, AByteOrderMarkInATextIsACharacterOfIt)
{
    const QString name = u"\uFEFFa\uFEFF"_s;
    const AppSettings settings =
        AppSettings::fromJson(settingsWith("\"transcriptionLanguage\":\"" + name.toUtf8() + "\""));
    EXPECT_EQ(settings.transcriptionLanguage, name);
    EXPECT_EQ(AppSettings::fromJson(settings.toJson()).transcriptionLanguage, name);
    EXPECT_EQ(AppSettings::fromJson(settingsWith(R"("\uFEFFtheme":"dark")")).theme,
              AppTheme::light);

    const UsageEvent event =
        usageEventsFromJson(logWith("\"targetAppName\":\"" + name.toUtf8() + "\"")).first();
    EXPECT_EQ(event.targetAppName, name);
    EXPECT_EQ(usageEventsFromJson(logWith(R"("\uFEFFwordCount":4)")).first().wordCount, 3);
}

TEST(StrictJson, OfARepeatedKeyTheLastCounts)
{
    const AppSettings settings =
        AppSettings::fromJson(settingsWith(R"("theme":"light","th\u0065me":"dark")"));
    EXPECT_EQ(settings.theme, AppTheme::dark);

    const UsageEvent event =
        usageEventsFromJson(
            logWith(
                R"("slotIndex":2,"targetAppName":"A","slotIndex":null,"targetAppName":"B","wordCount":4)"))
            .first();
    EXPECT_EQ(event.slotIndex, std::nullopt);
    EXPECT_EQ(event.targetAppName, u"B"_s);
    EXPECT_EQ(event.wordCount, 4);
}

TEST(StrictJson, TheDocumentItselfStaysAsItIs)
{
    const QByteArray log = "\xEF\xBB\xBF [ {" + QByteArray(eventMembers) +
                           R"(,"targetAppName":"\u0041\n\ud83d\ude00","more":[1.50,{}] } ,)"
                           "\n{" +
                           QByteArray(eventMembers) + "}]";
    const QByteArray before(log.constData(), log.size());
    QList<QByteArray> texts;
    readUsageEvents(
        log, [&](const UsageEvent &, QByteArrayView text) { texts.append(text.toByteArray()); });
    EXPECT_EQ(log, before);
    EXPECT_EQ(texts, QList<QByteArray>(
                         {"{" + QByteArray(eventMembers) +
                              R"(,"targetAppName":"\u0041\n\ud83d\ude00","more":[1.50,{}] })",
                          "{" + QByteArray(eventMembers) + "}"}));
}

} // namespace
} // namespace kestrova
