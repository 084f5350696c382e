// The frame path of the built module: what it takes and refuses, and frames from another thread while a
// person edits.
#include "contract/ModuleHost.h"

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
    void mapsEachFormat_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(kFormats)); ++i)
            QTest::addRow("%08x", kFormats[i].code) << i;
    }

    void mapsEachFormat()
    {
        QFETCH(int, index);
        const Format format = kFormats[index];
        FakeCamera camera;
        camera.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        host.type("objGammaLineEdit", "200");
        host.fileAnswers << directory.path("table.lut");
        host.click("objSaveLutButton");
        const QByteArray image = WorkingDirectory::read(directory.path("table.lut"));

        const int count = 1 << format.bits;
        const int bytes = format.bits / 9 + 1;
        QByteArray in(count * bytes, '\0');
        QByteArray expected = in;
        for (int i = 0; i < count; ++i) {
            const int step = 4096 / count;
            const qint32 mapped =
                qFromLittleEndian<qint32>(image.constData() + 4 * i * step) >> (12 - format.bits);
            memcpy(in.data() + i * bytes, &i, size_t(bytes));
            memcpy(expected.data() + i * bytes, &mapped, size_t(bytes));
        }
        QByteArray out(in.size(), '\x55');
        std::uint8_t processed = 0;
        QCOMPARE(process(*host.plugin, format.code, in.constData(), out.data(), count / 16, 16, &processed),
                 0);
        QCOMPARE(processed, std::uint8_t(1));
        QVERIFY(out == expected);
        QCOMPARE(process(*host.plugin, format.code, in.constData(), in.data(), count, 1, &processed),
                 0); // in place
        QVERIFY(in == expected);
        if (bytes == 2) { // a word beyond the table maps like the last entry
            const std::uint16_t beyond[] = {std::uint16_t(count), 0xffff, std::uint16_t(count - 1)};
            std::uint16_t mapped[3];
            QCOMPARE(process(*host.plugin, format.code, beyond, mapped, 3, 1, nullptr), 0);
            QCOMPARE(mapped[0], mapped[2]);
            QCOMPARE(mapped[1], mapped[2]);
        }
    }

    void refuses_data()
    {
        QTest::addColumn<uint>("format");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("in");
        QTest::addColumn<bool>("out");
        QTest::addColumn<bool>("logged");
        QTest::newRow("Mono16") << 0x01100007u << 2 << 2 << true << true << true;
        QTest::newRow("packed") << 0x010C0004u << 2 << 2 << true << true << true;
        QTest::newRow("colour") << 0x02180014u << 2 << 2 << true << true << true;
        QTest::newRow("no format") << 0u << 2 << 2 << true << true << true;
        QTest::newRow("no width") << kMono8 << 0 << 2 << true << true << false;
        QTest::newRow("no height") << kMono8 << 2 << 0 << true << true << false;
        QTest::newRow("negative") << kMono8 << -2 << -2 << true << true << false;
        QTest::newRow("too many pixels") << kMono8 << 65536 << 32768 << true << true << false;
        QTest::newRow("product that wraps") << kMono12 << 65536 << 65537 << true << true << false;
        QTest::newRow("no input") << kMono8 << 2 << 2 << false << true << false;
        QTest::newRow("no output") << kMono8 << 2 << 2 << true << false << false;
    }

    void refuses()
    {
        QFETCH(uint, format);
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(bool, in);
        QFETCH(bool, out);
        QFETCH(bool, logged);
        FakeCamera camera;
        camera.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&camera);
        if (logged)
            QTest::ignoreMessage(QtDebugMsg, "Invalid pixel format.\n");
        QByteArray source(16, '\x11');
        QByteArray target(16, '\x55');
        std::uint8_t processed = 0;
        QCOMPARE(process(*host.plugin, format, in ? source.data() : nullptr, out ? target.data() : nullptr,
                         width, height, &processed),
                 -3);
        QCOMPARE(processed, std::uint8_t(0));
        QCOMPARE(target, QByteArray(16, '\x55'));
        QCOMPARE(host.plugin->ProcessFrame(nullptr, nullptr, 1, nullptr), -3);
        QCOMPARE(process(*host.plugin, format, nullptr, nullptr, width, height, &processed, 2),
                 0); // not our stage
        QCOMPARE(processed, std::uint8_t(0));
    }

    void leavesFramesOfLutCameras()
    {
        for (const bool hasEnable : {false, true}) {
            FakeCamera camera(hasEnable);
            WorkingDirectory directory;
            ModuleHost host(&camera);
            std::uint8_t processed = 0;
            QCOMPARE(process(*host.plugin, 0, nullptr, nullptr, 0, 0, &processed), 0);
            QCOMPARE(host.plugin->ProcessFrame(nullptr, nullptr, 1, nullptr), 0);
            QCOMPARE(processed, std::uint8_t(0));
        }
    }

    // Frames come from two threads while every source and control is used. Each frame has to be mapped by a
    // table that the editor held between two changes, which a frame mapped right after the change shows.
    void whileAPersonEdits()
    {
        FakeCamera camera;
        camera.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        host.click("objDefaultRadioButton");
        host.type("objGammaLineEdit", "150");
        host.fileAnswers << directory.path("kept.lut") << directory.path("kept.csv");
        host.click("objSaveLutButton");
        host.click("objSaveLutButton");
        WorkingDirectory::writeBytes(directory.path("broken.csv"), "1\n2\nx\n");

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
        const auto note = [&] { held.insert(mappedRamp(*host.plugin)); };
        for (int round = 0; round < 6; ++round) {
            for (const char* slider : {"objGammaSlider", "objBrightnessSlider", "objContrastSlider"}) {
                for (int step = 0; step < 8; ++step) {
                    host.wheel(slider, {0, step < 5 ? 120 : -120});
                    note();
                }
            }
            host.type("objLutRangeMinEdit", QString::number(100 + round));
            note();
            host.type("objLutRangeMaxEdit", QString::number(3000 + round));
            note();
            host.click("objInitLutRadioButton");
            note();
            host.choose(round % 2 == 0 ? "negative" : "lut4_11");
            note();
            host.fileAnswers << directory.path("kept.lut");
            host.click("objLutFileRadioButton");
            note();
            host.wheel("objContrastSlider", {0, 120});
            note();
            host.fileAnswers << directory.path("kept.csv");
            host.click("objCSVFileRadioButton");
            note();
            host.fileAnswers << directory.path(
                "broken.csv"); // half-filled images, a box, and back to the identity
            host.click("objCSVFileRadioButton");
            note();
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(frames > 100);
        for (const auto& tables : seen) {
            for (const Table& table : tables)
                QVERIFY2(held.count(table), "a frame was mapped by a table that never existed");
        }
        QCOMPARE(host.boxes.size(), 6);
    }
};

QTEST_MAIN(tst_FramePath)
#include "tst_FramePath.moc"
