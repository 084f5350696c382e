// The frame path of the built module: what it takes and refuses, and frames from another thread while a
// person edits.
#include "contract/Roads.h"

#include <atomic>
#include <set>
#include <thread>

namespace {

struct Format
{
    std::uint32_t code;
    int bits;
};
const Format kFormats[] = {{0x01080001, 8},  {0x01080008, 8},  {0x01080009, 8},  {0x0108000A, 8},
                           {0x0108000B, 8},  {0x01100003, 10}, {0x0110000C, 10}, {0x0110000D, 10},
                           {0x0110000E, 10}, {0x0110000F, 10}, {0x01100005, 12}, {0x01100010, 12},
                           {0x01100011, 12}, {0x01100012, 12}, {0x01100013, 12}};
constexpr std::uint32_t kMono8 = 0x01080001;

} // namespace

class tst_FramePath : public QObject
{
    Q_OBJECT

private slots:
    void mapsEachFormat()
    {
        Session host(kKinds[2]);
        host.type("objGammaLineEdit", "200");
        const QByteArray image = host.save();
        for (const auto& [code, bits] : kFormats) {
            const int count = 1 << bits;
            const int bytes = bits / 9 + 1;
            QByteArray in(count * bytes, '\0');
            QByteArray expected = in;
            for (int i = 0; i < count; ++i) {
                const qint32 mapped =
                    qFromLittleEndian<qint32>(image.constData() + 4 * i * (4096 / count)) >> (12 - bits);
                memcpy(in.data() + i * bytes, &i, size_t(bytes));
                memcpy(expected.data() + i * bytes, &mapped, size_t(bytes));
            }
            QByteArray out(in.size(), '\x55');
            std::uint8_t processed = 0;
            QCOMPARE(process(*host.plugin, code, in.constData(), out.data(), count / 16, 16, &processed), 0);
            QCOMPARE(processed, std::uint8_t(1));
            QVERIFY2(out == expected, QByteArray::number(code, 16));
            QCOMPARE(process(*host.plugin, code, in.constData(), in.data(), count, 1, nullptr),
                     0); // in place
            QVERIFY2(in == expected, QByteArray::number(code, 16));
            if (bytes == 1)
                continue;
            // A word beyond the table maps like the last entry.
            std::uint16_t words[] = {std::uint16_t(count - 1), std::uint16_t(count), 0xffff};
            QCOMPARE(process(*host.plugin, code, words, words, 3, 1, nullptr), 0);
            QVERIFY2(words[1] == words[0] && words[2] == words[0], QByteArray::number(code, 16));
        }
    }

    void refuses()
    {
        Session host(kKinds[2]);
        const auto refuse = [&](const char* what, std::uint32_t format, int width = 2, int height = 2,
                                bool hasIn = true, bool hasOut = true) {
            QByteArray in(16, '\x11'), out(16, '\x55');
            std::uint8_t processed = 0;
            const int code = process(*host.plugin, format, hasIn ? in.data() : nullptr,
                                     hasOut ? out.data() : nullptr, width, height, &processed);
            QVERIFY2(code == -3 && processed == 0 && out == QByteArray(16, '\x55'), what);
            QCOMPARE(process(*host.plugin, format, nullptr, nullptr, width, height, &processed, 2),
                     0); // no stage of ours
            QCOMPARE(processed, std::uint8_t(0));
        };
        for (const std::uint32_t format :
             {0x01100007u, 0x010C0004u, 0x02180014u, 0u}) { // Mono16, packed, colour
            QTest::ignoreMessage(QtDebugMsg, "Invalid pixel format.\n");
            refuse("format", format);
        }
        refuse("no width", kMono8, 0);
        refuse("no height", kMono8, 2, 0);
        refuse("negative", kMono8, -2, -2);
        refuse("too many pixels", kMono8, 65536, 32768);
        refuse("product that wraps", kMono12, 65536, 65537);
        refuse("no input", kMono8, 2, 2, false);
        refuse("no output", kMono8, 2, 2, true, false);
        QCOMPARE(host.plugin->ProcessFrame(nullptr, nullptr, 1, nullptr), -3);
        for (int kind = 0; kind < 2; ++kind) // a camera with a table maps its frames by itself
            QCOMPARE(Session(kKinds[kind]).plugin->ProcessFrame(nullptr, nullptr, 1, nullptr), 0);
    }

    // Frames come from two threads while every source and control is used. Each frame has to be mapped by a
    // table that the editor held between two changes, which a frame mapped right after the change shows.
    void whileAPersonEdits()
    {
        Session host(kKinds[2]);
        host.type("objGammaLineEdit", "150");
        host.save("kept.lut");
        host.save("kept.csv");
        WorkingDirectory::write("broken.csv", "1\n2\nx\n");

        std::set<Table> held{mappedRamp(*host.plugin)};
        std::set<Table> seen[2];
        std::atomic<bool> stop{false};
        std::atomic<int> frames{0};
        std::vector<std::thread> threads;
        for (auto& tables : seen) {
            threads.emplace_back([&] {
                while (!stop) {
                    tables.insert(mappedRamp(*host.plugin));
                    ++frames;
                }
            });
        }
        const std::vector<Road> roads = makeRoads();
        const auto change = [&](const std::function<void(ModuleHost&)>& act) {
            act(host);
            held.insert(mappedRamp(*host.plugin));
        };
        for (int round = 0; round < 8; ++round) {
            for (const Road& road : roads)
                change(road.act);
            change([](ModuleHost& e) { e.take(Standard); });
            change([](ModuleHost& e) { e.choose("negative"); });
            change(step);
            // Half-filled images, a box, and back to the identity.
            change([](ModuleHost& e) { e.take(Csv, "broken.csv"); });
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(frames > 100);
        for (const auto& tables : seen) {
            for (const Table& table : tables)
                QVERIFY2(held.count(table), "a frame was mapped by a table that never existed");
        }
        QCOMPARE(host.boxes.size(), 8);
    }
};

QTEST_MAIN(tst_FramePath)
#include "tst_FramePath.moc"
