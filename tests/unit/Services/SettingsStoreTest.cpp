#include "Services/Settings/SettingsStore.h"
#include "Concurrency/InlineExecutor.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"
#include "support/Warnings.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class SettingsStoreTest : public testing::Test
{
protected:
    FakeUserDefaults defaults;
    InlineExecutor storage;
    SettingsStore store{defaults, storage};
    const QString key = u"kestrova.settings.v1"_s;

    static AppSettings changed()
    {
        AppSettings settings = AppSettings::defaults();
        settings.theme = AppTheme::dark;
        settings.setHotbarAssignment(3, u"org.example.Editor"_s, u"Editor"_s);
        return settings;
    }
};

TEST_F(SettingsStoreTest, WithNothingStoredTheDefaultsAreLoaded)
{
    EXPECT_EQ(store.load(), AppSettings::defaults());
}

TEST_F(SettingsStoreTest, WhatIsSavedIsLoaded)
{
    store.save(changed());
    EXPECT_EQ(store.load(), changed());
    EXPECT_EQ(SettingsStore(defaults, storage).load(), changed());
    EXPECT_TRUE(defaults.keptAside(key).isEmpty());
}

TEST_F(SettingsStoreTest, OneUnknownValueMakesTheWholeRecordDefault)
{
    store.save(changed());
    defaults.put(key, defaults.stored(key)->replace("\"dark\"", "\"system\""));
    EXPECT_EQ(store.load(), AppSettings::defaults());
}

TEST_F(SettingsStoreTest, DamagedBytesStayUntilTheNextSaveAndAreKeptAsideThen)
{
    defaults.put(key, "damaged");
    EXPECT_EQ(store.load(), AppSettings::defaults());
    EXPECT_EQ(defaults.stored(key), QByteArray("damaged"));

    store.save(changed());
    EXPECT_EQ(store.load(), changed());
    store.save(AppSettings::defaults());
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"damaged"});
}

TEST_F(SettingsStoreTest, AFailedSaveLeavesWhatWasStored)
{
    store.save(changed());
    defaults.failWriting(true);
    const Warnings warnings;
    store.save(AppSettings::defaults());
    EXPECT_EQ(store.load(), changed());
    EXPECT_EQ(warnings.all(),
              u"\"kestrova.settings.v1\" could not be stored: No space left on device"_s);
}

TEST_F(SettingsStoreTest, DamagedBytesThatCannotBeKeptAsideAreNotOverwritten)
{
    defaults.put(key, "damaged");
    defaults.failWriting(true);
    store.save(changed());
    EXPECT_EQ(defaults.stored(key), QByteArray("damaged"));
}

TEST_F(SettingsStoreTest, UnreadableBytesLoadAsTheDefaultsAndAreKeptAside)
{
    store.save(changed());
    const QByteArray before = *defaults.stored(key);
    defaults.failReading(true);
    EXPECT_EQ(store.load(), AppSettings::defaults());
    EXPECT_EQ(store.loadToEdit(), AppSettings::defaults());
    defaults.failReading(false);
    EXPECT_EQ(store.load(), changed()) << "the readers' business, not the editor's";
    store.save(AppSettings::defaults());
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{before});
}

TEST_F(SettingsStoreTest, WhatAnotherProgramStoredIsKeptAside)
{
    store.save(changed());
    EXPECT_EQ(store.loadToEdit(), changed());
    defaults.put(key, "stored by another program");
    store.save(AppSettings::defaults());
    store.save(changed());
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"stored by another program"});
    EXPECT_EQ(store.load(), changed());
}

class SettingsStoredLater : public SettingsStoreTest
{
protected:
    static AppSettings inLanguage(const QString &language)
    {
        AppSettings settings = AppSettings::defaults();
        settings.transcriptionLanguage = language;
        return settings;
    }

    ManualExecutor later;
    SettingsStore slow{defaults, later};
};

TEST_F(SettingsStoredLater, WhatIsSavedCountsAtOnceAndTheNewestIsStored)
{
    for (const QString &language : {u"d"_s, u"de"_s, u"d"_s, u"fr"_s}) {
        slow.save(inLanguage(language));
        EXPECT_EQ(slow.load(), inLanguage(language));
        EXPECT_EQ(slow.loadToEdit(), inLanguage(language));
    }
    EXPECT_FALSE(defaults.stored(key));
    later.runAll();
    EXPECT_EQ(defaults.stored(key), inLanguage(u"fr"_s).toJson());
    EXPECT_EQ(defaults.writeCount(), 1);
    defaults.put(key, changed().toJson());
    EXPECT_EQ(slow.load(), changed()) << "what is stored counts again";
}

TEST_F(SettingsStoredLater, ARecordThatCannotBeStoredCountsUntilThen)
{
    store.save(changed());
    EXPECT_EQ(slow.loadToEdit(), changed());
    defaults.failWriting(true);
    slow.save(inLanguage(u"de"_s));
    EXPECT_EQ(slow.load(), inLanguage(u"de"_s));
    const Warnings warnings;
    later.runAll();
    EXPECT_EQ(warnings.all(),
              u"\"kestrova.settings.v1\" could not be stored: No space left on device"_s);
    EXPECT_EQ(slow.load(), changed());
    defaults.failWriting(false);
    slow.save(inLanguage(u"de"_s));
    later.runAll();
    EXPECT_EQ(defaults.stored(key), inLanguage(u"de"_s).toJson());
    EXPECT_TRUE(defaults.keptAside(key).isEmpty());
}

TEST_F(SettingsStoredLater, WhatAnotherProgramStoresMeanwhileIsKeptAside)
{
    slow.loadToEdit();
    slow.save(changed());
    defaults.put(key, "stored by another program");
    EXPECT_EQ(slow.load(), changed());
    later.runAll();
    EXPECT_EQ(defaults.stored(key), changed().toJson());
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"stored by another program"});
}

} // namespace
} // namespace kestrova
