// One writer, any number of readers. The table of version v holds v * 4096 + i at entry i, so that a torn or
// reused one shows. Run it under the thread sanitizer too.
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <QtTest>

#include "lut/PublishedTable.h"

using orlune::PublishedTable;

namespace {

constexpr int kEntries = PublishedTable::kEntries;

void publish(PublishedTable& table, int version)
{
    std::int32_t entries[kEntries];
    for (int i = 0; i < kEntries; ++i)
        entries[i] = version * kEntries + i;
    table.Publish(entries);
}

// -1 without a table, -2 for entries that belong to no version.
int versionOf(const PublishedTable::Snapshot& snapshot)
{
    const std::int32_t* entries = snapshot.entries();
    if (!entries)
        return -1;
    for (int i = 0; i < kEntries; ++i)
        if (entries[i] != entries[0] + i)
            return -2;
    return entries[0] % kEntries == 0 ? entries[0] / kEntries : -2;
}

} // namespace

class tst_PublishedTable : public QObject
{
    Q_OBJECT

private slots:
    // With every spare slot held the writer waits for one of them; readers go on with the table from before.
    void onlyTheWriterWaits()
    {
        PublishedTable table;
        QCOMPARE(versionOf(table.Acquire()), -1);
        std::vector<PublishedTable::Snapshot> held;
        for (int version = 0; version < PublishedTable::kSlots - 1; ++version) {
            publish(table, version);
            held.push_back(table.Acquire());
        }
        publish(table, 50);
        std::thread writer([&table] { publish(table, 51); });
        QTest::qSleep(20);
        const int whileWaiting = versionOf(table.Acquire());
        held.erase(held.begin() + 3);
        writer.join();
        QCOMPARE(whileWaiting, 50);
        QCOMPARE(versionOf(table.Acquire()), 51);
        for (int i = 0; i < int(held.size()); ++i)
            QCOMPARE(versionOf(held[i]), i < 3 ? i : i + 1);
        table.Clear();
        QCOMPARE(versionOf(table.Acquire()), -1);
    }

    void readersAndWriter()
    {
        constexpr int kReaders = 4;
        constexpr int kSnapshots = 3000;
        PublishedTable table;
        std::atomic<int> newest{0}; // version that is being published or was
        std::atomic<int> reading{kReaders};
        std::atomic<int> wrong{0};
        const auto read = [&] {
            int last = 0;
            for (int taken = 0; taken < kSnapshots;) {
                const auto snapshot = table.Acquire();
                const auto second = table.Acquire();
                const int version = versionOf(snapshot);
                if (version == -1)
                    continue;
                // Never an older one than before, never one that was not published yet.
                wrong += version < last || version > newest || versionOf(snapshot) != version;
                last = version;
                ++taken;
            }
            --reading;
        };
        std::vector<std::thread> readers;
        for (int i = 0; i < kReaders; ++i)
            readers.emplace_back(read);
        for (int version = 1; reading > 0; ++version) {
            if (version % 64 == 0)
                table.Clear();
            newest = version;
            publish(table, version);
        }
        for (std::thread& reader : readers)
            reader.join();
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_PublishedTable)
#include "tst_PublishedTable.moc"
