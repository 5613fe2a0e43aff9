#include "Concurrency/InlineExecutor.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Services/FileSizeLimit.h"
#include "Services/Settings/SettingsStore.h"
#include "Services/TestFiles.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "Services/Usage/UsageLog.h"
#include "support/OrdinaryUser.h"
#include "support/QtPrinting.h"
#include "support/Samples.h"
#include "support/UsageEvents.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// What both stored documents are asked for, so that each test asks it of both.
struct StoredDocument
{
    const char *name;
    QString key;
    QByteArray sound; ///< as a program of another platform wrote it
    QList<QByteArray> damaged;
    bool (*isFallback)(UserDefaults &defaults);
    void (*write)(UserDefaults &defaults);
};

void PrintTo(const StoredDocument &document, std::ostream *stream)
{
    *stream << document.name;
}

InlineExecutor storage;

UsageAnalyticsService usageService(UserDefaults &defaults)
{
    const Calendar calendar(QTimeZone::utc(), Qt::Monday, QLocale::c());
    return {defaults, storage,  UsageAnalyticsService::standardKey(),
            12,       calendar, [] { return Date{757'382'400}; }};
}

QByteArray replaced(QByteArray document, const char *before, const char *after)
{
    if (!document.contains(before))
        throw std::runtime_error(before);
    return document.replace(before, after);
}

/// What befalls a document of any kind.
QList<QByteArray> commonDamage(const QByteArray &sound, char opening)
{
    const QByteArray nested = QByteArray(100'000, '[') + QByteArray(100'000, ']');
    QByteArray deep = sound;
    deep.insert(deep.indexOf('{') + 1, "\"unknown\":" + nested + ",");
    QByteArray utf16;
    for (const char character : sound)
        utf16.append(character).append('\0');
    return {
        "",
        " \r\n\t ",
        "null",
        opening == '[' ? "{}" : "[]",
        opening == '[' ? "{" + sound + "}" : "[" + sound + "]",
        sound.first(sound.size() / 2),
        sound.chopped(1),
        sound + "x",
        sound + sound,
        sound + QByteArray(64, '\0'),
        QByteArray(sound.size(), '\0'),
        replaced(sound, "com.example.notes", "com.example.\xff\xfe"),
        replaced(sound, "com.example.notes", "com.example.\xc3"),
        deep,
        utf16,
    };
}

StoredDocument settingsDocument()
{
    const QByteArray sound = sample("settings-compact.json");
    return {
        "settings",
        SettingsStore::key(),
        sound,
        commonDamage(sound, '{') +
            QList<QByteArray>{
                replaced(sound, "\"transcriptionLanguage\":\"de\"", "\"transcriptionLanguage\":1"),
                replaced(sound, "\"keyCode\":49", "\"keyCode\":\"49\""),
                replaced(sound, "\"keyCode\":49", "\"keyCode\":4294967296"),
                replaced(sound, "\"keyCode\":49", "\"keyCode\":-1"),
                replaced(sound, "\"keyCode\":49", "\"keyCode\":1e999"),
                replaced(sound, "\"slotIndex\":9", "\"slotIndex\":9223372036854775808"),
                replaced(sound, "\"slotIndex\":9", "\"slot\":9"),
                replaced(sound, "\"modelSHA256\"", "\"modelSha256\""),
                replaced(sound, "\"dark\"", "\"sepia\""),
                replaced(sound, "\"accurate\"", "\"exact\""),
            },
        [](UserDefaults &defaults) {
            return SettingsStore(defaults, storage).load() == AppSettings::defaults();
        },
        [](UserDefaults &defaults) {
            AppSettings settings = AppSettings::defaults();
            settings.theme = AppTheme::dark;
            SettingsStore store(defaults, storage);
            store.loadToEdit();
            store.save(settings);
        },
    };
}

StoredDocument usageDocument()
{
    const QByteArray sound = sample("usage-compact.json");
    return {
        "usage",
        UsageAnalyticsService::standardKey(),
        sound,
        commonDamage(sound, '[') +
            QList<QByteArray>{
                replaced(sound, "\"wordCount\":42", "\"wordCount\":\"42\""),
                replaced(sound, "\"wordCount\":42", "\"wordCount\":9223372036854775808"),
                replaced(sound, "\"wordCount\":42", "\"wordCount\":4.2"),
                replaced(sound, "\"wordCount\":42,", ""),
                replaced(sound, "\"slotIndex\":9", "\"slotIndex\":9223372036854775808"),
                replaced(sound, "757382401", "1e999"),
                replaced(sound, "757382401", "\"2025-01-01T00:00:01Z\""),
                replaced(sound, "E621E1F8-", "E621E1F8"),
            },
        [](UserDefaults &defaults) {
            return usageService(defaults).dashboardSnapshot(Date{}).topApplications.isEmpty();
        },
        [](UserDefaults &defaults) { usageService(defaults).record(eventAt(Date{757'382'400})); },
    };
}

class StoredDocumentTest : public testing::TestWithParam<StoredDocument>
{
protected:
    QString path() const { return directory + u'/' + GetParam().key + u".json"_s; }
    QString asidePath(int number) const
    {
        return directory + u"/%1.kept-%2.json"_s.arg(GetParam().key).arg(number);
    }
    bool isFallback() { return GetParam().isFallback(defaults); }
    void write() { GetParam().write(defaults); }

    void SetUp() override { ASSERT_TRUE(QDir().mkpath(directory)); }

    QTemporaryDir root;
    const QString directory = root.filePath(u"kestrova"_s);
    FileUserDefaults defaults{directory};
};

TEST_P(StoredDocumentTest, ASoundForeignDocumentIsReplacedWithoutBeingSetAside)
{
    ASSERT_TRUE(writeFile(path(), GetParam().sound));
    EXPECT_FALSE(isFallback());
    EXPECT_EQ(readFile(path()), GetParam().sound);
    write();
    EXPECT_NE(readFile(path()), GetParam().sound);
    EXPECT_FALSE(isFallback());
    EXPECT_EQ(namesIn(directory).size(), 1);
}

TEST_P(StoredDocumentTest, EveryKindOfDamageFallsBackAndIsSetAsideOnce)
{
    int number = 0;
    for (const QByteArray &damaged : GetParam().damaged) {
        SCOPED_TRACE(damaged.first(std::min(damaged.size(), qsizetype(1000))).toStdString());
        ASSERT_TRUE(QFile::remove(path()) || number == 0);
        ASSERT_TRUE(writeFile(path(), damaged));
        EXPECT_TRUE(isFallback());
        EXPECT_EQ(readFile(path()), damaged) << "it stays until the next write";

        ++number;
        for (int writes = 0; writes < 2; ++writes) {
            write();
            EXPECT_FALSE(isFallback());
            EXPECT_EQ(readFile(asidePath(number)), damaged);
            EXPECT_EQ(namesIn(directory).size(), number + 1);
        }
    }
}

TEST_P(StoredDocumentTest, DamageThatComesBackIsNotSetAsideAgain)
{
    for (int times = 0; times < 2; ++times) {
        ASSERT_TRUE(writeFile(path(), "damaged"));
        write();
        EXPECT_FALSE(isFallback());
        EXPECT_EQ(readFile(asidePath(1)), "damaged");
        EXPECT_EQ(namesIn(directory).size(), 2);
        ASSERT_TRUE(QFile::remove(path()));
    }
}

TEST_P(StoredDocumentTest, AFolderThatIsMissingIsMade)
{
    ASSERT_TRUE(QDir(directory).removeRecursively());
    EXPECT_TRUE(isFallback());
    EXPECT_FALSE(QDir(directory).exists());
    write();
    EXPECT_FALSE(isFallback());
}

TEST_P(StoredDocumentTest, AFolderInThePlaceOfTheDocumentStaysWithAllThatItHolds)
{
    const QString inside = path() + u"/precious"_s;
    ASSERT_TRUE(QDir().mkpath(path()));
    ASSERT_TRUE(writeFile(inside, "precious"));
    EXPECT_TRUE(isFallback());
    write();
    EXPECT_TRUE(isFallback());
    EXPECT_EQ(readFile(inside), "precious");
    EXPECT_EQ(namesIn(directory).size(), 1);
}

TEST_P(StoredDocumentTest, InAReadOnlyFolderADocumentLoadsAndStaysAsItIs)
{
    for (const QByteArray &bytes : {GetParam().sound, QByteArray("damaged")}) {
        ASSERT_TRUE(writeFile(path(), bytes));
        ASSERT_TRUE(QFile::setPermissions(directory, QFile::ReadOwner | QFile::ExeOwner));
        {
            const OrdinaryUser user(root);
            EXPECT_EQ(isFallback(), bytes == "damaged");
            write();
            EXPECT_EQ(readFile(path()), bytes);
        }
        EXPECT_EQ(namesIn(directory).size(), 1);
        ASSERT_TRUE(QFile::setPermissions(directory,
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
}

TEST_P(StoredDocumentTest, AWriteProtectedDocumentStaysAsItIs)
{
    ASSERT_TRUE(writeFile(path(), GetParam().sound));
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner));
    {
        const OrdinaryUser user(root);
        write();
    }
    EXPECT_EQ(readFile(path()), GetParam().sound);
    EXPECT_EQ(namesIn(directory).size(), 1);
}

TEST_P(StoredDocumentTest, OnAFullDiskTheOldDocumentStaysAndTheNextWriteSucceeds)
{
    for (const QByteArray &bytes : {GetParam().sound, QByteArray("damaged")}) {
        ASSERT_TRUE(writeFile(path(), bytes));
        {
            const FileSizeLimit limit(16);
            write();
        }
        EXPECT_EQ(readFile(path()), bytes);
    }
    write();
    EXPECT_FALSE(isFallback());
    EXPECT_EQ(readFile(asidePath(1)), "damaged");
    EXPECT_EQ(namesIn(directory).size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Of, StoredDocumentTest,
                         testing::Values(settingsDocument(), usageDocument()),
                         testing::PrintToStringParamName());

class DocumentThatComesLate : public testing::Test
{
protected:
    QString path(const QString &key) const { return folder.filePath(key + u".json"_s); }
    static qint64 recordings(UsageAnalyticsService &service)
    {
        return service.dashboardSnapshot(Date{}).topApplications.first().recordings;
    }

    QTemporaryDir folder;
    FileUserDefaults defaults{folder.path()};
    const UsageEvent event = eventAt(Date{757'382'400});
    const QByteArray storedLog = [] {
        UsageLog log;
        for (int i = 0; i < 500; ++i)
            log.append(eventAt(Date{757'382'400}));
        return log.json();
    }();
};

TEST_F(DocumentThatComesLate, AUsageLogGetsTheNewEventsBehindItsOwn)
{
    UsageAnalyticsService service = usageService(defaults);
    ASSERT_TRUE(writeFile(path(UsageAnalyticsService::standardKey()), storedLog));
    service.record(event);
    EXPECT_EQ(recordings(service), 501);
    const auto stored = usageEventsFromJson(readFile(path(UsageAnalyticsService::standardKey())));
    ASSERT_EQ(stored.size(), 501);
    EXPECT_EQ(stored.last(), event);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST_F(DocumentThatComesLate, AUsageLogThatCouldNotBeReadAtTheStartLosesNothing)
{
    const QByteArray name = QFile::encodeName(path(UsageAnalyticsService::standardKey()));
    ASSERT_TRUE(writeFile(path(UsageAnalyticsService::standardKey()), storedLog));
    const OrdinaryUser user(folder);
    ASSERT_EQ(chmod(name.constData(), 0), 0);
    UsageAnalyticsService service = usageService(defaults);
    service.record(eventAt(Date{757'382'400}));
    ASSERT_EQ(chmod(name.constData(), 0600), 0);
    EXPECT_EQ(readFile(path(UsageAnalyticsService::standardKey())), storedLog);
    service.record(event);
    EXPECT_EQ(recordings(service), 502);
    EXPECT_EQ(recordings(*std::make_unique<UsageAnalyticsService>(usageService(defaults))), 502);
}

TEST_F(DocumentThatComesLate, SettingsAreSetAsideBeforeTheyAreReplaced)
{
    const QByteArray sound = sample("settings-compact.json");
    SettingsStore store(defaults, storage);
    EXPECT_EQ(store.loadToEdit(), AppSettings::defaults());
    ASSERT_TRUE(writeFile(path(SettingsStore::key()), sound));
    EXPECT_EQ(store.load(), AppSettings::fromJson(sound)) << "readers see it at once";
    for (int saves = 0; saves < 2; ++saves)
        store.save(AppSettings::defaults());
    EXPECT_EQ(readFile(folder.filePath(SettingsStore::key() + u".kept-1.json"_s)), sound);
    EXPECT_EQ(namesIn(folder.path()).size(), 2);
}

TEST(TwoPrograms, WithOneUsageLogLoseNoEvent)
{
    const QTemporaryDir folder;
    FileUserDefaults firstDefaults(folder.path());
    FileUserDefaults secondDefaults(folder.path());
    UsageAnalyticsService first = usageService(firstDefaults);
    UsageAnalyticsService second = usageService(secondDefaults);
    for (int i = 0; i < 3; ++i) {
        first.record(eventAt(Date{757'382'400}));
        second.record(eventAt(Date{757'382'400}));
    }
    EXPECT_EQ(
        usageService(firstDefaults).dashboardSnapshot(Date{}).topApplications.first().recordings,
        6);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
}

TEST(TwoPrograms, WithOneSettingsRecordOverwriteNothingUnseen)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    SettingsStore first(defaults, storage);
    SettingsStore second(defaults, storage);
    first.loadToEdit();
    second.loadToEdit();
    AppSettings settings = AppSettings::defaults();
    settings.transcriptionLanguage = u"de"_s;
    first.save(settings);
    second.save(AppSettings::defaults());
    EXPECT_EQ(readFile(folder.filePath(SettingsStore::key() + u".kept-1.json"_s)),
              settings.toJson());
    EXPECT_EQ(first.load(), AppSettings::defaults());
}

TEST(UsageOnAFullDisk, EventsThatCouldNotBeStoredAreStoredWithTheNext)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    UsageAnalyticsService service = usageService(defaults);
    service.record(eventAt(Date{757'382'400}));
    {
        const FileSizeLimit limit(200);
        service.record(eventAt(Date{757'382'400}));
        service.record(eventAt(Date{757'382'400}));
    }
    EXPECT_EQ(usageService(defaults).dashboardSnapshot(Date{}).topApplications.first().recordings,
              1);
    service.record(eventAt(Date{757'382'400}));
    EXPECT_EQ(usageService(defaults).dashboardSnapshot(Date{}).topApplications.first().recordings,
              4);
}

} // namespace
} // namespace kestrova
