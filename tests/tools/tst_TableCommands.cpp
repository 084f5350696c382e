#include <memory>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "Tables.h"
#include "ToolProcess.h"

namespace {

using EntryRow = std::map<int, int>;

QByteArray half()
{
    return tableOf([](int i) { return i / 2; });
}

QByteArray csvOf(const QByteArray& table)
{
    QByteArray text;
    for (int i = 0; i < 4096; ++i)
        text += QByteArray::number(entryAt(table, i)) + '\n';
    return text;
}

QByteArray ofLut4(int gamma)
{
    return trailerOf(gamma, 0, 0, 0, 4095, "lut4_11");
}

} // namespace

// info, make, convert and diff, run in a folder of small files. The folder's own standard curves are lut4_11,
// the identity, and half, whose entry i is i / 2.
class tst_TableCommands : public QObject
{
    Q_OBJECT

    QJsonObject json(const QString& line) const
    {
        return QJsonDocument::fromJson(m_folder->run(line).out).object();
    }

    std::unique_ptr<ToolFolder> m_folder;

private slots:
    void init()
    {
        m_folder = std::make_unique<ToolFolder>();
        for (const char* folder : {"curves", "taken.lut"})
            QVERIFY(QDir(m_folder->path()).mkdir(folder));
        m_folder->put("curves/lut4_11.bin", identity());
        m_folder->put("curves/half.bin", half());
        m_folder->put("identity.lut", identity());
        m_folder->put("identity.csv", csvOf(identity()));
        m_folder->put("half.lut", half());
        m_folder->put("half.csv", csvOf(half()));
        const QByteArray sevens = tableOf([](int) { return 7; });
        m_folder->put("sevens.lut", sevens + trailerOf(120, 0, 5, 0, 4095, "half"));
        m_folder->put("unknown.lut", sevens + trailerOf(120, 0, 0, 0, 4095, "absent"));
        m_folder->put("wild.lut", sevens + trailerOf(500, 0, 0, -1, 5000, "half"));
        m_folder->put("other.lut", sevens + trailerOf(100, 0, 0, 0, 200, "lut4_11"));
    }

    void make()
    {
        const EntryRow bright{{1, 63}, {1024, 2047}, {4095, 4095}}, sevens{{0, 7}, {4095, 7}};
        const EntryRow halfBright{{0, 0}, {2, 44}, {2000, 1435}, {4094, 2047}, {4095, 2047}};
        const std::tuple<QString, EntryRow, QByteArray> rows[] = {
            {"", {{1, 1}, {2621, 2621}}, ofLut4(100)},
            {"--base lut4_11 --gamma 200", bright, ofLut4(200)},
            {"--base lut4_11 --gamma 150 --brightness 30 --contrast -40",
             {{1, 28}, {1024, 1988}, {3000, 3355}},
             trailerOf(150, 30, -40, 0, 4095, "lut4_11")},
            {"--gamma 0 --brightness -150 --contrast 150",
             {{0, 0}, {4094, 0}, {4095, 4095}},
             trailerOf(0, -150, 150, 0, 4095, "lut4_11")},
            {"--gamma 200 --range 100:1000",
             {{100, 100}, {101, 127}, {500, 700}, {1001, 1001}},
             trailerOf(200, 0, 0, 100, 1000, "lut4_11")},
            {"--base half.lut --gamma 200", halfBright, ""},                      // a file without settings
            {"--base sevens.lut", sevens, trailerOf(120, 0, 5, 0, 4095, "half")}, // a file's, none changed
            {"--base sevens.lut --gamma 200 --contrast 0", halfBright, trailerOf(200, 0, 0, 0, 4095, "half")},
            {"--base wild.lut", sevens, trailerOf(500, 0, 0, -1, 5000, "half")},
            {"--base wild.lut --gamma 200 --range 0:4095", halfBright, trailerOf(200, 0, 0, 0, 4095, "half")},
            {"--base unknown.lut --gamma 200", bright, ofLut4(200)}}; // a curve that is not here
        for (const auto& [options, entries, trailer] : rows) {
            const QString line = "make --force --standard-dir curves " + options;
            const ToolRun made = m_folder->run(line + " -o made.lut");
            QVERIFY2(made.status == 0, made.err);
            QCOMPARE(made.err.contains("note:"), options.contains("unknown.lut"));
            const QByteArray bytes = m_folder->get("made.lut");
            QVERIFY2(bytes.mid(16384) == trailer, qPrintable(options));
            for (const auto& [at, entry] : entries)
                QVERIFY2(entryAt(bytes, at) == entry, qPrintable(options + QString(", entry %1").arg(at)));
            QCOMPARE(m_folder->run(line + " -o made.csv").status, 0);
            QVERIFY2(m_folder->get("made.csv") == csvOf(bytes), qPrintable(options));
        }
        const QByteArray srgb = m_folder->run("make --base srgb --to lut -o -").out; // a curve of the system
        QCOMPARE(srgb.mid(16384), trailerOf(100, 0, 0, 0, 4095, "srgb"));
        QCOMPARE(entryAt(srgb, 737), 1889); // 18 % grey
    }

    void makeRefuses()
    {
        const std::pair<const char*, const char*> rows[] = {
            {"--gamma 401", "0 to 400"},
            {"--brightness 151", "-150 to 150"},
            {"--contrast 99999999999", "-150 to 150"},
            {"--range 100:162", "at least 63"},
            {"--range 1000:100", "at least 63"},
            {"--range 0:62", "63 to 4095"},
            {"--base quarter", "half, lut4_11"},
            {"--standard-dir . --base sevens.lut", "lut4_11"}, // no curves for the file's settings
            {"--base half.csv --gamma 200", "half.csv"},
            {"--base wild.lut --brightness 3", "0 to 400"},
            {"-o made", "--to"}};
        for (const auto& [options, words] : rows) {
            QVERIFY2(m_folder->refuses(QString("make --standard-dir curves -o made.lut ") + options, words),
                     options);
            QVERIFY(!QFile::exists(m_folder->path("made.lut")));
        }
    }

    void info()
    {
        // Minimum, maximum, falls, lost codes, clipped low, clipped high.
        const std::tuple<std::function<int(int)>, QList<int>, const char*> rows[] = {
            {[](int i) { return i; }, {0, 4095, 0, 0, 0, 0}, "monotonic, rising"},
            {[](int i) { return i < 4000 ? i * (i >= 10) : 4095; },
             {0, 4095, 0, 104, 9, 95},
             "monotonic, rising"},
            {[](int i) { return i == 2000 ? 0 : i; },
             {0, 4095, 1, 1, 1, 0},
             "not monotonic: falls at 1 entries, the first is 2000 (1999 to 0)"}};
        for (const auto& [entry, numbers, shape] : rows) {
            m_folder->put("x.lut", tableOf(entry));
            const ToolRun words = m_folder->run("info x.lut");
            QVERIFY2(words.status == 0 && words.err.isEmpty(), words.err);
            QVERIFY2(words.out.contains(shape) && words.out.contains("Settings:      none"), words.out);
            const QJsonObject told = json("info --json x.lut");
            QList<int> found;
            for (const char* key : {"minimum", "maximum", "falls", "lostCodes", "clippedLow", "clippedHigh"})
                found += told[key].toInt(-1);
            QCOMPARE(found, numbers);
            QCOMPARE(told["monotonic"].toBool(), strncmp(shape, "not", 3) != 0);
            QVERIFY(told["settings"].isNull());
        }
    }

    void infoTellsSettings()
    {
        m_folder->put("x.lut", identity() + trailerOf(150, -20, 7, 100, 200, "012345678%1bc\x1b[2"));
        const QByteArray words = m_folder->run("info -", m_folder->get("x.lut")).out;
        QVERIFY2(words.contains("gamma 150, brightness -20, contrast 7, range 100 to 200"), words);
        QVERIFY2(words.contains("standard curve 012345678%1bc?[2,"), words);
        const QJsonObject settings = json("info --json x.lut")["settings"].toObject();
        QCOMPARE(settings["standard"].toString(), QString("012345678%1bc?[2"));
        QCOMPARE(settings["rangeMax"].toInt(), 200);
    }

    void noTable()
    {
        const std::tuple<QString, QByteArray, QByteArray> rows[] = {
            {"x.lut", "v1.0 curve\n0 0\n255 255\n", "is text"},
            {"x.lut", "LUT_1D_SIZE 2\n0 0 0\n1 1 1\n", "--from cube"},
            {"x.lut", QByteArray("123\n").repeated(4096), "--from csv"}, // as long as a table
            {"x.lut", "", "is empty"},
            {"x.bin", identity() + QByteArray(41, '\0'), "16425 bytes"},
            {"x.lut", tableOf([](int i) { return i == 9 ? 4096 : i; }), "entry 9 is 4096"},
            {"x", QByteArray(20000, '\1'), "20000 bytes"},
            {"x.csv", csvOf(identity()).chopped(5), "line 4096"},
            {"x%2.csv", csvOf(identity()).replace("\n17\n", "\n17,5\n"), "line 18"},
            {"x.cube", "LUT_1D_SIZE 4096\n", "0 of 4096"}};
        for (const auto& [name, bytes, words] : rows) {
            m_folder->put(name, bytes);
            for (const QString& command :
                 {"info " + name, "convert " + name + " out.lut", "make --base ./" + name + " -o out.lut",
                  "diff identity.lut " + name}) {
                const int status = command.startsWith("diff") ? 2 : 1;
                QVERIFY2(m_folder->refuses(command, words, status), words);
                QVERIFY2(m_folder->refuses(command, (name + '"').toLatin1(), status), words);
                QVERIFY(!QFile::exists(m_folder->path("out.lut")));
            }
        }
    }

    void unreadable()
    {
        for (const char* line : {"info absent.lut", "info curves", "info /dev/zero", "diff - -", ""})
            QVERIFY2(m_folder->refuses(line, ""), line);
        const QString endless = "exec \"$0\" info - < /dev/zero";
        QVERIFY(ToolFolder::isRight(endless, m_folder->runProgram("sh", {"-c", endless, ORLUNE_LUT}), 1,
                                    "too long"));
    }

    void convertRoundTrip()
    {
        const QByteArray table = tableOf([](int i) { return (i * 1237 + 11) % 4096; });
        QString from = "0.lut";
        m_folder->put(from, table);
        for (const char* to : {"1.cube", "2.bin", "3.csv", "4.cube", "5.lut", "6.CSV", "7.CUBE", "8.LUT"}) {
            QVERIFY(m_folder->works(QString("convert %1 %2").arg(from, to)));
            from = to;
        }
        QCOMPARE(m_folder->get(from), table);
    }

    void streams()
    {
        const ToolRun toCube = m_folder->run("convert - - --to cube", m_folder->get("half.csv"));
        QVERIFY2(toCube.status == 0, toCube.err);
        const ToolRun toBin = m_folder->run("convert --from cube --to bin - -", toCube.out);
        QVERIFY2(toBin.status == 0, toBin.err);
        QCOMPARE(toBin.out, half());
        for (const char* line : {"info half.lut", "make --to lut -o -"})
            QVERIFY(ToolFolder::isRight(line, m_folder->run(line, {}, "/dev/full"), 2, ""));
    }

    void convertKeepsSettings()
    {
        QVERIFY(m_folder->works("convert sevens.lut x.bin"));
        QCOMPARE(m_folder->get("x.bin"), m_folder->get("sevens.lut"));
        QVERIFY(m_folder->works("convert sevens.lut x.cube"));
        const QByteArray cube = m_folder->get("x.cube");
        QVERIFY(cube.startsWith("TITLE \"Orlune camera table\"\n"));
        QVERIFY(cube.contains("\n# standard curve half, gamma 120, "));
        QVERIFY(cube.contains("\nLUT_1D_SIZE 4096\nDOMAIN_MIN 0 0 0\nDOMAIN_MAX 1 1 1\n"
                              "0.001709 0.001709 0.001709\n"));
        const ToolRun toCsv = m_folder->run("convert sevens.lut x.csv");
        QVERIFY2(toCsv.status == 0 && toCsv.err.contains("note:"), toCsv.err);
    }

    void diff()
    {
        m_folder->put("zeros.lut", identity() + QByteArray(40, '\0')); // a trailer that is none
        m_folder->put("dip.lut", tableOf([](int i) { return i == 2000 ? 0 : i; }));
        const std::tuple<QString, int, QString> rows[] = {
            {"identity.lut identity.csv", 0, ""},
            {"identity.lut zeros.lut", 0, ""},
            {"identity.lut dip.lut", 1,
             "entries: 1 of 4096 differ, by up to 2000, first at entry 2000: 2000 and 0\n"},
            {"sevens.lut other.lut", 1,
             "standard curve: half and lut4_11\ngamma: 120 and 100\ncontrast: 5 and 0\n"
             "range maximum: 4095 and 200\n"},
            {"--entries sevens.lut other.lut", 0, ""}};
        for (const auto& [files, status, out] : rows) {
            const ToolRun words = m_folder->run("diff " + files);
            QCOMPARE(QString(words.out), out);
            QCOMPARE(words.status, status);
            QCOMPARE(m_folder->run("diff --json " + files).status, status);
            const QJsonObject told = json("diff --json " + files);
            QCOMPARE(told["differingEntries"].toInt(-1), out.startsWith("entries") ? 1 : 0);
            QCOMPARE(told["settingsDiffer"].toBool(), status == 1 && !out.startsWith("entries"));
        }
    }

    void nothingIsOverwritten()
    {
        const QByteArray old = tableOf([](int) { return 3; });
        for (const QString line : {"make -o ", "convert half.lut ", "convert old.lut "}) {
            m_folder->put("old.lut", old);
            QVERIFY(m_folder->refuses(line + "old.lut", "--force"));
            QCOMPARE(m_folder->get("old.lut"), old);
            QCOMPARE(m_folder->run(line + "old.lut --force").status, 0);
            QCOMPARE(m_folder->get("old.lut") == old, line.contains("old"));
            QVERIFY(m_folder->refuses(line + "taken.lut --force", ""));
        }
    }

    void noHalfFile()
    {
        m_folder->put("old.lut", half());
        const QStringList before = m_folder->names();
        for (const char* out : {"old.lut", "new.lut", "absent/new.lut"})
            QVERIFY(ToolFolder::isRight(
                out,
                m_folder->runProgram("sh", {"-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"", "sh", ORLUNE_LUT,
                                            "make", "--force", "-o", out}),
                2, "can't be written"));
        QCOMPARE(m_folder->names(), before);
        QCOMPARE(m_folder->get("old.lut"), half());
    }
};

QTEST_GUILESS_MAIN(tst_TableCommands)
#include "tst_TableCommands.moc"
