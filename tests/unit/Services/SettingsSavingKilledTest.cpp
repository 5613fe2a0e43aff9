#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/InlineExecutor.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Services/Settings/SettingsStore.h"
#include "Services/TestFiles.h"
#include "support/KilledWriter.h"
#include "support/QtPrinting.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Records that differ in many places and in length, so that no mixture passes for one of them.
AppSettings numberedSettings(qint64 number)
{
    const QString filling(number % 7 * 3000, QChar(char16_t(u'a' + number % 26)));
    AppSettings settings = AppSettings::defaults();
    settings.modelSHA256 = QString::number(number);
    settings.whisperCLIPath = filling;
    for (int slot = 1; slot <= HotbarSlotAssignment::slotCount; ++slot)
        settings.setHotbarAssignment(slot, settings.modelSHA256, filling);
    return settings;
}

TEST(SettingsSaving, AProgramKilledAQuarterOfASecondAfterASaveLosesNothing)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    InlineExecutor unused;
    for (int round = 1; round <= 3; ++round) {
        const auto saved = writesUntilKilled(
            [&](const auto &confirm) {
                BackgroundExecutor storage(1);
                SettingsStore store(defaults, storage);
                store.loadToEdit();
                for (int keystroke = 0; keystroke < 20; ++keystroke)
                    store.save(numberedSettings(20 * round + keystroke));
                confirm();
                std::this_thread::sleep_for(1h);
            },
            250ms);
        ASSERT_EQ(saved, 1);
        EXPECT_EQ(SettingsStore(defaults, unused).load(), numberedSettings(20 * round + 19));
    }
    EXPECT_EQ(namesIn(folder.path()), QStringList{SettingsStore::key() + u".json"_s});
}

TEST(SettingsSaving, AProgramKilledAtAnyMomentLeavesOneOfTheSavedRecords)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    InlineExecutor storage;
    SettingsStore store(defaults, storage);
    const qint64 longestLife = 4 * durationOf([&] { store.save(numberedSettings(0)); });
    std::minstd_rand random(1);
    qint64 confirmed = 0;
    qint64 last = 0;
    for (int round = 0; round < 200; ++round) {
        const auto saved = writesUntilKilled(
            [&](const auto &confirm) {
                for (qint64 number = last + 1;; ++number) {
                    store.save(numberedSettings(number));
                    confirm();
                }
            },
            std::chrono::microseconds(random() % longestLife));
        ASSERT_TRUE(saved);
        confirmed += *saved;

        const qint64 stored = store.loadToEdit().modelSHA256.toLongLong();
        ASSERT_GE(stored, last + *saved);
        ASSERT_LE(stored, last + *saved + 1) << "one may be saved but not confirmed";
        ASSERT_EQ(defaults.data(SettingsStore::key()), numberedSettings(stored).toJson());
        last = stored;
    }
    EXPECT_GT(confirmed, 0) << "the program was never fast enough to be interrupted";

    const QString document = SettingsStore::key() + u".json"_s;
    for (const QString &name : namesIn(folder.path())) {
        if (name != document) {
            ASSERT_TRUE(makeOld(folder.filePath(name)));
        }
    }
    RecordProperty("unfinishedFiles", int(namesIn(folder.path()).size() - 1));
    store.save(numberedSettings(0));
    EXPECT_EQ(namesIn(folder.path()), QStringList{document}) << "what was left is cleared away";
}

} // namespace
} // namespace kestrova
