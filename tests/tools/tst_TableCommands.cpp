#include <memory>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "Tables.h"
#include "ToolProcess.h"

Q_DECLARE_METATYPE(QList<int>)

// info, make, convert and diff, run in a folder of small files. The folder's own standard curves are lut4_11,
// the identity, and half, whose entry i is i / 2.
class tst_TableCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void make_data();
    void make();
    void makeUsesTheShippedCurves();
    void makeRefuses_data();
    void makeRefuses();
    void info_data();
    void info();
    void infoTellsSettings();
    void noTable_data();
    void noTable();
    void unreadable_data();
    void unreadable();
    void endlessInput();
    void convertRoundTrip_data();
    void convertRoundTrip();
    void convertStreams();
    void fullOutput();
    void convertKeepsSettings();
    void diff_data();
    void diff();
    void nothingIsOverwritten_data();
    void nothingIsOverwritten();
    void noHalfFile();

private:
    std::unique_ptr<ToolFolder> m_folder;
};

namespace {

using EntryRow = QMap<int, int>;

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

} // namespace

void tst_TableCommands::init()
{
    m_folder = std::make_unique<ToolFolder>();
    QVERIFY(QDir(m_folder->path("")).mkdir("curves"));
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
}

void tst_TableCommands::make_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QMap<int, int>>("entries");
    QTest::addColumn<QByteArray>("trailer");
    const auto row = [](const char* name, const QString& arguments, const EntryRow& entries,
                        const QByteArray& trailer) {
        QTest::newRow(name) << arguments.split(' ', Qt::SkipEmptyParts) << entries << trailer;
    };
    const EntryRow bright{{1, 63},      {16, 255},    {100, 639},  {1024, 2047},
                          {2048, 2906}, {3000, 3551}, {4095, 4095}};
    const EntryRow halfBright{{0, 0},       {2, 44},      {1000, 1011}, {2000, 1435},
                              {3000, 1775}, {4094, 2047}, {4095, 2047}};
    const EntryRow sevens{{0, 7}, {4095, 7}};
    const auto ofLut4 = [](int gamma) { return trailerOf(gamma, 0, 0, 0, 4095, "lut4_11"); };
    row("nothing asked", "", {{1, 1}, {2621, 2621}}, ofLut4(100));
    row("gamma", "--base lut4_11 --gamma 200", bright, ofLut4(200));
    row("all three", "--base lut4_11 --gamma 150 --brightness 30 --contrast -40",
        {{1, 28}, {16, 186}, {100, 618}, {1024, 1988}, {2048, 2642}, {3000, 3355}},
        trailerOf(150, 30, -40, 0, 4095, "lut4_11"));
    row("the widest settings", "--gamma 0 --brightness -150 --contrast 150",
        {{0, 0}, {4094, 0}, {4095, 4095}}, trailerOf(0, -150, 150, 0, 4095, "lut4_11"));
    row("range", "--gamma 200 --range 100:1000",
        {{99, 99}, {100, 100}, {101, 127}, {200, 400}, {500, 700}, {999, 999}, {1000, 1000}, {1001, 1001}},
        trailerOf(200, 0, 0, 100, 1000, "lut4_11"));
    row("a file without settings", "--base half.lut --gamma 200", halfBright, "");
    row("settings of a file, none changed", "--base sevens.lut", sevens,
        trailerOf(120, 0, 5, 0, 4095, "half"));
    row("settings of a file, some changed", "--base sevens.lut --gamma 200 --contrast 0", halfBright,
        trailerOf(200, 0, 0, 0, 4095, "half"));
    row("wild settings, none changed", "--base wild.lut", sevens, trailerOf(500, 0, 0, -1, 5000, "half"));
    row("wild settings tamed", "--base wild.lut --gamma 200 --range 0:4095", halfBright,
        trailerOf(200, 0, 0, 0, 4095, "half"));
    row("a curve that is not here", "--base unknown.lut --gamma 200", bright, ofLut4(200));
}

void tst_TableCommands::make()
{
    QFETCH(QStringList, arguments);
    QFETCH(EntryRow, entries);
    QFETCH(QByteArray, trailer);
    const QStringList common{"--standard-dir", "curves", "-o"};
    const ToolRun made = m_folder->run(QStringList("make") + arguments + common + QStringList("made.lut"));
    QVERIFY2(made.status == 0, made.err);
    QCOMPARE(made.err.contains("note:"), arguments.contains("unknown.lut"));
    const QByteArray bytes = m_folder->get("made.lut");
    QCOMPARE(bytes.mid(16384), trailer);
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        QVERIFY2(entryAt(bytes, entry.key()) == *entry,
                 qPrintable(QString("entry %1 is %2").arg(entry.key()).arg(entryAt(bytes, entry.key()))));

    QCOMPARE(m_folder->run(QStringList("make") + arguments + common + QStringList("made.csv")).status, 0);
    QCOMPARE(m_folder->get("made.csv"), csvOf(bytes));
}

void tst_TableCommands::makeUsesTheShippedCurves()
{
    const ToolRun made = m_folder->run({"make", "--base", "srgb", "--to", "lut", "-o", "-"});
    QVERIFY2(made.status == 0, made.err);
    QCOMPARE(made.out.mid(16384), trailerOf(100, 0, 0, 0, 4095, "srgb"));
    QCOMPARE(entryAt(made.out, 737), 1889); // 18 % grey
}

void tst_TableCommands::makeRefuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const QString& arguments, const char* words) {
        QTest::newRow(name) << arguments.split(' ') << words;
    };
    row("gamma above", "--gamma 401", "0 to 400");
    row("brightness", "--brightness 151", "-150 to 150");
    row("contrast beyond an integer", "--contrast 99999999999", "-150 to 150");
    row("range too narrow", "--range 100:162", "at least 63");
    row("range reversed", "--range 1000:100", "at least 63");
    row("maximum below", "--range 0:62", "63 to 4095");
    row("no such curve", "--base quarter", "half, lut4_11");
    row("no curves for a file's settings", "--standard-dir . --base sevens.lut", "lut4_11");
    row("text is not adjusted", "--base half.csv --gamma 200", "half.csv");
    row("wild settings, another changed", "--base wild.lut --brightness 3", "0 to 400");
    row("output twice and without a form", "-o made", "--to");
}

void tst_TableCommands::makeRefuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, words);
    const ToolRun made =
        m_folder->run(QStringList{"make", "--standard-dir", "curves", "-o", "made.lut"} + arguments);
    QCOMPARE(made.status, 2);
    QVERIFY2(made.complains() && QString(made.err).contains(words), made.err);
    QVERIFY(!QFile::exists(m_folder->path("made.lut")));
}

void tst_TableCommands::info_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QList<int>>("numbers"); // minimum, maximum, falls, lost, clipped low, clipped high
    QTest::addColumn<QString>("shape");
    const auto row = [](const char* name, int (*entry)(int), const QList<int>& numbers, const char* shape) {
        QTest::newRow(name) << tableOf(entry) << numbers << shape;
    };
    row(
        "identity", [](int i) { return i; }, {0, 4095, 0, 0, 0, 0}, "monotonic, rising");
    row(
        "clipped", [](int i) { return i < 10     ? 0
                                      : i < 4000 ? i
                                                 : 4095; }, {0, 4095, 0, 104, 9, 95},
        "monotonic, rising");
    row(
        "dip", [](int i) { return i == 2000 ? 0 : i; }, {0, 4095, 1, 1, 1, 0},
        "not monotonic: falls at 1 entries, the first is 2000 (1999 to 0)");
}

void tst_TableCommands::info()
{
    QFETCH(QByteArray, table);
    QFETCH(QList<int>, numbers);
    QFETCH(QString, shape);
    m_folder->put("x.lut", table);
    const ToolRun words = m_folder->run({"info", "x.lut"});
    QVERIFY2(words.status == 0 && words.err.isEmpty(), words.err);
    QVERIFY2(QString(words.out).contains(shape), words.out);
    QVERIFY2(words.out.contains("Settings:      none"), words.out);

    const QJsonObject json = QJsonDocument::fromJson(m_folder->run({"info", "--json", "x.lut"}).out).object();
    QList<int> found;
    for (const char* key : {"minimum", "maximum", "falls", "lostCodes", "clippedLow", "clippedHigh"})
        found += json[key].toInt(-1);
    QCOMPARE(found, numbers);
    QCOMPARE(json["monotonic"].toBool(), !shape.startsWith("not"));
    QVERIFY(json["settings"].isNull());
}

void tst_TableCommands::infoTellsSettings()
{
    m_folder->put("x.lut", identity() + trailerOf(150, -20, 7, 100, 200, "012345678%1bc\x1b[2"));
    const ToolRun words = m_folder->run({"info", "-"}, m_folder->get("x.lut"));
    QVERIFY2(words.out.contains("gamma 150, brightness -20, contrast 7, range 100 to 200"), words.out);
    QVERIFY2(words.out.contains("standard curve 012345678%1bc?[2,"), words.out);
    const QJsonObject json = QJsonDocument::fromJson(m_folder->run({"info", "--json", "x.lut"}).out).object();
    QCOMPARE(json["settings"].toObject()["standard"].toString(), QString("012345678%1bc?[2"));
    QCOMPARE(json["settings"].toObject()["rangeMax"].toInt(), 200);
}

void tst_TableCommands::noTable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const char* file, const QByteArray& bytes, const char* words) {
        QTest::newRow(name) << file << bytes << words;
    };
    row("text of another program", "x.lut", "v1.0 curve\n0 0\n255 255\n", "is text");
    row("text that is a .cube file", "x.lut", "LUT_1D_SIZE 2\n0 0 0\n1 1 1\n", "--from cube");
    row("text as long as a table", "x.lut", QByteArray("123\n").repeated(4096), "--from csv");
    row("empty", "x.lut", "", "is empty");
    row("a byte more", "x.bin", identity() + QByteArray(41, '\0'), "16425 bytes");
    row("output above", "x.lut", tableOf([](int i) { return i == 9 ? 4096 : i; }), "entry 9 is 4096");
    row("no form at all", "x", QByteArray(20000, '\1'), "20000 bytes");
    row("csv, a line short", "x.csv", csvOf(identity()).chopped(5), "line 4096");
    row("csv, no number", "x%2.csv", csvOf(identity()).replace("\n17\n", "\n17,5\n"), "line 18");
    row("cube", "x.cube", "LUT_1D_SIZE 4096\n", "0 of 4096");
}

void tst_TableCommands::noTable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    m_folder->put(name, bytes);
    for (const QStringList& command : {QStringList{"info", name},
                                       {"convert", name, "out.lut"},
                                       {"make", "--base", "./" + name, "-o", "out.lut"},
                                       {"diff", "identity.lut", name}}) {
        const ToolRun result = m_folder->run(command);
        QCOMPARE(result.status, command[0] == "diff" ? 2 : 1);
        QVERIFY2(result.complains() && QString(result.err).contains(words), result.err);
        QVERIFY2(QString(result.err).contains(name + '"'), result.err);
        QVERIFY(result.out.isEmpty());
        QVERIFY(!QFile::exists(m_folder->path("out.lut")));
    }
}

void tst_TableCommands::unreadable_data()
{
    QTest::addColumn<QStringList>("arguments");
    for (const char* path : {"absent.lut", "curves", "/dev/zero"})
        QTest::newRow(path) << QStringList{"info", path};
    QTest::newRow("one stream twice") << QStringList{"diff", "-", "-"};
    QTest::newRow("no command") << QStringList();
}

void tst_TableCommands::unreadable()
{
    QFETCH(QStringList, arguments);
    const ToolRun result = m_folder->run(arguments);
    QCOMPARE(result.status, 2);
    QVERIFY2(result.complains(), result.err);
}

void tst_TableCommands::endlessInput()
{
    const ToolRun result = m_folder->runProgram("sh", {"-c", "exec \"$0\" info - < /dev/zero", ORLUNE_LUT});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.complains() && result.err.contains("too long"), result.err);
}

void tst_TableCommands::convertRoundTrip_data()
{
    QTest::addColumn<QStringList>("forms");
    QTest::newRow("cube") << QStringList{"cube", "bin"};
    QTest::newRow("all") << QStringList{"bin", "cube", "csv", "cube", "lut"};
    QTest::newRow("capitals") << QStringList{"CSV", "CUBE", "LUT"};
}

void tst_TableCommands::convertRoundTrip()
{
    QFETCH(QStringList, forms);
    const QByteArray table = tableOf([](int i) { return (i * 1237 + 11) % 4096; });
    m_folder->put("0.lut", table);
    QString from = "0.lut";
    for (int i = 0; i < forms.size(); ++i) {
        const QString to = QString("%1.%2").arg(i + 1).arg(forms[i]);
        const ToolRun result = m_folder->run({"convert", from, to});
        QVERIFY2(result.status == 0 && result.err.isEmpty(), result.err);
        from = to;
    }
    QCOMPARE(m_folder->get(from), table);
}

void tst_TableCommands::convertStreams()
{
    const ToolRun toCube = m_folder->run({"convert", "-", "-", "--to", "cube"}, m_folder->get("half.csv"));
    QVERIFY2(toCube.status == 0, toCube.err);
    const ToolRun toBin = m_folder->run({"convert", "--from", "cube", "--to", "bin", "-", "-"}, toCube.out);
    QVERIFY2(toBin.status == 0, toBin.err);
    QCOMPARE(toBin.out, half());
}

void tst_TableCommands::fullOutput()
{
    for (const QStringList& arguments :
         {QStringList{"info", "half.lut"}, {"make", "--to", "lut", "-o", "-"}}) {
        const ToolRun result = m_folder->run(arguments, {}, "/dev/full");
        QVERIFY2(result.status == 2 && result.complains(), result.err);
    }
}

void tst_TableCommands::convertKeepsSettings()
{
    const QByteArray bytes = m_folder->get("sevens.lut");
    QVERIFY(m_folder->run({"convert", "sevens.lut", "x.bin"}).err.isEmpty());
    QCOMPARE(m_folder->get("x.bin"), bytes);
    QVERIFY(m_folder->run({"convert", "sevens.lut", "x.cube"}).err.isEmpty());
    QVERIFY(m_folder->get("x.cube").contains("\n# standard curve half, gamma 120, "));
    const ToolRun toCsv = m_folder->run({"convert", "sevens.lut", "x.csv"});
    QCOMPARE(toCsv.status, 0);
    QVERIFY2(toCsv.err.contains("note:"), toCsv.err);
}

void tst_TableCommands::diff_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out");
    const auto row = [](const char* name, const QString& arguments, int status, const char* out) {
        QTest::newRow(name) << arguments.split(' ') << status << out;
    };
    row("same", "identity.lut identity.csv", 0, "");
    row("a trailer that is none", "identity.lut zeros.lut", 0, "");
    row("one entry", "identity.lut dip.lut", 1,
        "entries: 1 of 4096 differ, by up to 2000, first at entry 2000: 2000 and 0\n");
    row("settings", "sevens.lut other.lut", 1,
        "standard curve: half and lut4_11\ngamma: 120 and 100\ncontrast: 5 and 0\nrange maximum: 4095 and "
        "200\n");
    row("settings left aside", "--entries sevens.lut other.lut", 0, "");
}

void tst_TableCommands::diff()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, out);
    const QByteArray sevens = tableOf([](int) { return 7; });
    m_folder->put("zeros.lut", identity() + QByteArray(40, '\0'));
    m_folder->put("dip.lut", tableOf([](int i) { return i == 2000 ? 0 : i; }));
    m_folder->put("other.lut", sevens + trailerOf(100, 0, 0, 0, 200, "lut4_11"));
    const ToolRun words = m_folder->run(QStringList("diff") + arguments);
    QCOMPARE(words.status, status);
    QCOMPARE(QString(words.out), out);
    const ToolRun asJson = m_folder->run(QStringList{"diff", "--json"} + arguments);
    QCOMPARE(asJson.status, status);
    const QJsonObject json = QJsonDocument::fromJson(asJson.out).object();
    QCOMPARE(json["differingEntries"].toInt(-1), out.startsWith("entries") ? 1 : 0);
    QCOMPARE(json["settingsDiffer"].toBool(), status == 1 && !out.startsWith("entries"));
}

void tst_TableCommands::nothingIsOverwritten_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("make") << QStringList{"make", "-o", "old.lut"};
    QTest::newRow("convert") << QStringList{"convert", "half.lut", "old.lut"};
    QTest::newRow("convert onto itself") << QStringList{"convert", "old.lut", "old.lut"};
}

void tst_TableCommands::nothingIsOverwritten()
{
    QFETCH(QStringList, arguments);
    const QByteArray old = tableOf([](int) { return 3; });
    m_folder->put("old.lut", old);
    const ToolRun refused = m_folder->run(arguments);
    QCOMPARE(refused.status, 2);
    QVERIFY2(refused.complains() && refused.err.contains("--force"), refused.err);
    QCOMPARE(m_folder->get("old.lut"), old);
    QCOMPARE(m_folder->run(arguments + QStringList("--force")).status, 0);
    QCOMPARE(m_folder->get("old.lut") == old, arguments.count("old.lut") == 2);

    QVERIFY(QDir(m_folder->path("")).mkdir("taken.lut"));
    arguments.last() = "taken.lut";
    QVERIFY(m_folder->run(arguments + QStringList("--force")).complains());
}

void tst_TableCommands::noHalfFile()
{
    m_folder->put("old.lut", half());
    const QStringList before = QDir(m_folder->path("")).entryList(QDir::AllEntries | QDir::Hidden);
    for (const char* out : {"old.lut", "new.lut", "absent/new.lut"}) {
        const ToolRun result = m_folder->runProgram("sh", {"-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"",
                                                           "sh", ORLUNE_LUT, "make", "--force", "-o", out});
        QCOMPARE(result.status, 2);
        QVERIFY2(result.complains() && result.err.contains("can't be written"), result.err);
    }
    QCOMPARE(QDir(m_folder->path("")).entryList(QDir::AllEntries | QDir::Hidden), before);
    QCOMPARE(m_folder->get("old.lut"), half());
}

QTEST_GUILESS_MAIN(tst_TableCommands)
#include "tst_TableCommands.moc"
