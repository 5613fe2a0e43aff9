#include "Services/Settings/SettingsStore.h"
#include "Platform/Fake/FakeUserDefaults.h"
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
    SettingsStore store{defaults};
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
    EXPECT_EQ(SettingsStore(defaults).load(), changed());
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

} // namespace
} // namespace kestrova
