// The five sources of a table, through the real radio buttons, combo box and file dialogs. After each action
// everything that a user, a file or the camera could see of the editor's state is looked at. What each
// failing access to the camera leads to is tst_FaultMatrix' business.
#include "contract/ModuleHost.h"

namespace {

const QString kUntouched = "100 0 0 0 4095";
const QString kAdjusted = "200 -20 35 100 3000";
const QVector<qint32> kNeutral{100, 0, 0, 0, 4095};
const QVector<qint32> kSettings{200, -20, 35, 100, 3000};

int half(int i)
{
    return i / 2;
}

QByteArray csv(int (*f)(int), const char* end = "\n", int lines = 4096)
{
    QByteArray text;
    for (int i = 0; i < lines; ++i)
        text += QByteArray::number(f(i)) + end;
    return text;
}

// Settings that differ from the untouched ones in every place, on the curve "negative".
void adjustEverything(ModuleHost& host)
{
    host.click(kRadios[Standard]);
    host.choose("negative");
    for (int i = 0; i < 5; ++i)
        host.type(kControls[i].edit, QString::number(kSettings[i]));
}

constexpr int kChosen = -1; // a source: another entry of the combo box

// What a source brings.
struct Outcome
{
    QString settings;
    const char* standard;
    QByteArray current; // as a saved file shows it
    QByteArray base;    // as a neutral adjustment shows it
};
const QByteArray kStamped = image(half, kSettings, "negative");
const QByteArray kForeign = image(half, kSettings, "negative").replace(kTableBytes, 4, "CBG1");
const QByteArray kOneEntry = image(half).left(4) + QByteArray(kTableBytes - 4, '\0');
const Outcome kIdentity{kUntouched, "lut4_11", image(identity, kNeutral, "lut4_11"), image(identity)};
const Outcome kNegative{kUntouched, "negative", image(negative, kNeutral, "negative"), image(negative)};
const Outcome kRestored{kAdjusted, "negative", kStamped, image(negative)};
const Outcome kPlain{kUntouched, "lut4_11", image(half), image(half)};
const Outcome kShort{kUntouched, "lut4_11", kOneEntry, QByteArray(kTableBytes, '\0')};
// The table and its settings stay; the next stamp names the identity, which is the base from now on.
const Outcome kUnknown{kAdjusted, "lut4_11", image(half, kSettings, "lut4_11"), image(identity)};

// Taking a source that works, after adjustEverything.
const struct
{
    const char* name;
    int source;
    QByteArray content; // of the register or the file
    Outcome outcome;
} kOutcomes[] = {
    {"default", Default, {}, kIdentity},
    {"standard", Standard, {}, kNegative},
    {"chosen", kChosen, {}, kIdentity},
    {"device with trailer", Device, kStamped, kRestored},
    {"device without trailer", Device, image(half) + QByteArray(40, '\0'), kPlain},
    {"device with a foreign trailer", Device, kForeign, kPlain},
    {"file with trailer", LutFile, kStamped, kRestored},
    {"file with a foreign trailer", LutFile, kForeign, kPlain},
    {"file without trailer", LutFile, image(half), kPlain},
    {"longer file", LutFile, kStamped + "more", kRestored},
    {"short file", LutFile, image(half).left(7), kShort},
    {"unknown standard", LutFile, image(half, kSettings, "another"), kUnknown},
    {"standard in another case", LutFile, image(half, kSettings, "Negative"), kUnknown},
    {"standard that is too long", LutFile, image(half, kSettings, QByteArray(16, 'n')), kUnknown},
    {"standard that is no text", LutFile, image(half, kSettings, "\xff\xfe"), kUnknown},
    {"csv", Csv, csv(half), kPlain},
    {"csv with more lines", Csv, csv(half, "\r\n", 4097), kPlain},
};

// Taking a source that does not work.
enum Trouble { None, Vanishes, IsDirectory, Cancelled };
const QStringList kMissing{"Error|The Lut File is missing, Please Reinstall the installation package! "};
const QStringList kOpen{"Error|Open file failed! "};
const QStringList kData{"Error|Invalid file data! "};
const struct
{
    const char* name;
    int source;
    Trouble trouble; // with the file
    QByteArray content;
    QStringList box;
} kFailures[] = {
    {"standard vanished", Standard, Vanishes, {}, kMissing},
    {"standard empty", Standard, None, {}, kData},
    {"standard a directory", Standard, IsDirectory, {}, kOpen},
    {"chosen one vanished", kChosen, Vanishes, {}, kMissing},
    {"chosen one empty", kChosen, None, {}, kData},
    {"chosen one a directory", kChosen, IsDirectory, {}, kOpen},
    {"file cancelled", LutFile, Cancelled, {}, {}},
    {"file vanished", LutFile, Vanishes, image(half), kOpen},
    {"file empty", LutFile, None, {}, kData},
    {"csv cancelled", Csv, Cancelled, {}, {}},
    {"csv vanished", Csv, Vanishes, csv(half), kOpen},
    {"csv empty", Csv, None, {}, kData},
    {"csv one line short", Csv, None, csv(half, "\n", 4095), kData},
    {"csv blank line", Csv, None, csv(half).insert(4, "\n"), kData},
    {"csv 4096", Csv, None, csv([](int i) { return i + 1; }), kData},
    {"csv separators", Csv, None, csv(half, ",\n"), kData},
    {"csv endless line", Csv, None, QByteArray(1 << 20, '7'), kData},
};

} // namespace

class tst_Sources : public QObject
{
    Q_OBJECT

private slots:
    void outcomes_data() { addRows(kOutcomes); }

    void outcomes()
    {
        const auto& row = currentRow(kOutcomes);
        const auto& [settings, standard, current, base] = row.outcome;
        for (const Kind& kind : kKinds) {
            if (row.source == Device && !kind.hasRegister)
                continue;
            const bool isWritten = row.source != Device && kind.hasRegister;
            Session host(kind);
            adjustEverything(host); // so that every column has something to lose
            if (row.source == Device)
                host.table() = row.content;
            else
                WorkingDirectory::write("table", row.content);
            host.camera.log.clear();
            if (row.source == kChosen)
                host.choose("lut4_11");
            else
                host.take(row.source, "table");
            QCOMPARE(host.writes(), int(isWritten));
            if (isWritten)
                QVERIFY(host.table().left(current.size()) == current);
            compare(host, row.source == kChosen ? Standard : row.source, settings, standard, current);
            QCOMPARE(host.boxes, QStringList());
            if (row.source == Csv)
                continue; // nothing can be adjusted
            // Neutral settings show the base.
            host.type("objBrightnessLineEdit", "30"); // a change, whatever it was
            for (int i = 0; i < 5; ++i)
                host.type(kControls[i].edit, QString::number(kNeutral[i]));
            QVERIFY(host.save().left(kTableBytes) == base);
        }
    }

    void failures_data() { addRows(kFailures); }

    void failures()
    {
        const auto& row = currentRow(kFailures);
        for (const Kind& kind : kKinds) {
            Session host(kind);
            adjustEverything(host);
            if (row.source == Standard)
                host.choose("lut4_11");
            const QByteArray before = kind.hasRegister ? host.table() : "";
            const QString victim =
                row.source > Device ? "table" : WorkingDirectory::standardPath() + "/lut4_11.bin";
            WorkingDirectory::write(victim, row.content);
            if (row.source > Device && row.trouble == Vanishes)
                host.afterFileChosen = [&] { QFile::remove(victim); };
            else if (row.trouble == Vanishes || row.trouble == IsDirectory)
                QVERIFY(QFile::remove(victim) && (row.trouble == Vanishes || QDir().mkdir(victim)));
            if (row.source == kChosen)
                host.choose("lut4_11");
            else
                host.take(row.source, row.trouble == Cancelled ? QString() : victim);
            host.afterFileChosen = nullptr;

            // Default, with everything as after the start; the camera is left alone.
            QCOMPARE(host.takeBoxes(), row.box);
            compare(host, Default, kUntouched, "lut4_11", image(identity) + QByteArray(40, '\0'));
            QVERIFY(!kind.hasRegister || host.table() == before);

            // The next action works, and from the identity.
            host.type("objGammaLineEdit", "110");
            host.type("objGammaLineEdit", "100");
            QCOMPARE(host.boxes, QStringList());
            QVERIFY(host.save() == kIdentity.current);
            QVERIFY(!kind.hasRegister || host.table() == kIdentity.current);
        }
    }

    void roundTrip_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {16424, 8232, 4136, 1064})
            QTest::addRow("%d", length) << length;
    }

    void roundTrip()
    {
        QFETCH(int, length);
        Session host(kKinds[1]);
        host.table() = QByteArray(length, '\0');
        QByteArray stored;
        host.camera.node<FakeCamera::Command>("UserSetSave").action = [&] { stored = host.table(); };
        host.camera.node<FakeCamera::Command>("UserSetLoad").action = [&] { host.table() = stored; };
        adjustEverything(host);
        const QByteArray written = host.table();
        const QByteArray kept = host.save("kept.lut");
        host.click("objWriteLutButton");
        for (const int source : {LutFile, Device}) {
            host.take(Default);
            host.type("objContrastLineEdit", "-99");
            QVERIFY(host.table() != written);

            host.take(source, "kept.lut");
            QVERIFY(host.table() == written);
            const int writes = host.writes();
            host.wheel("objBrightnessSlider", {0, 120});
            QVERIFY(host.table() != written);
            host.wheel("objBrightnessSlider", {0, -120});
            QCOMPARE(host.writes(), writes + 2);
            QVERIFY(host.table() == written);
            compare(host, source, kAdjusted, "negative", kept);
        }
        QCOMPARE(host.boxes, QStringList());
    }

    // Nothing in a trailer is trusted: it shows, and every later step is defined.
    void trailerBeyondLimits()
    {
        Session host;
        for (const QVector<qint32>& settings : {QVector<qint32>{500, 200, -200, 4095, 0},
                                                {INT_MIN, INT_MAX, INT_MIN, INT_MIN, INT_MAX},
                                                {-1, 0, 0, INT_MAX, INT_MIN}}) {
            const auto wild = image([](int i) { return int(unsigned(i) * 1000003u); }, settings, "negative");
            WorkingDirectory::write("wild.lut", wild);
            host.take(LutFile, "wild.lut");
            QVERIFY(host.table() == wild);
            QCOMPARE(host.text("objGammaLineEdit"), QString::number(settings[0]));
            QCOMPARE(host.slider("objGammaSlider"), qBound(0, settings[0], 400));
            // An adjustment that the other settings make impossible leaves the base table.
            host.wheel("objBrightnessSlider", {0, 120});
            host.wheel("objBrightnessSlider", {0, -120});
            QVERIFY(host.table().left(kTableBytes) == image(negative));
            host.type("objLutRangeMinEdit", "5");
            host.type("objLutRangeMaxEdit", "4000");
            host.takeBoxes();
            host.type("objGammaLineEdit", "300");
            QCOMPARE(host.boxes, QStringList());
        }
    }

    void refusedNames()
    {
        Session host;
        host.click("objSaveLutButton"); // cancelled
        QCOMPARE(host.takeBoxes(), QStringList());
        for (const char* name : {"a", "a.bin", "a.LUT", "table.old.lut"}) {
            host.save(name);
            QCOMPARE(host.takeBoxes(), QStringList{"Error|The filename of Lut is error! "});
            QVERIFY2(!QFile::exists(name), name);
        }
    }

    // Files are found in this language too, though it has no such characters as the folder.
    void inChinese()
    {
        Session host(kKinds[0], 1);
        QCOMPARE(host.find<QLabel>("objGammaLabel").text(), QString::fromUtf8("Gamma(0~400)："));
        host.failure("LUTValueAll") = FakeCamera::Failure::Foreign;
        host.wheel("objGammaSlider", {0, 120});
        QCOMPARE(host.takeBoxes(), QStringList{QString::fromUtf8("错误提示|未知错误！")});
        host.failure("LUTValueAll") = FakeCamera::Failure::None;
        adjustEverything(host);
        QVERIFY(host.save("a.lut") == host.table());
        const QByteArray table = host.table();
        host.take(Default);
        host.table() = table;
        host.take(Device);
        compare(host, Device, kAdjusted, "negative", table);
        QCOMPARE(host.boxes, QStringList());
    }

private:
    // The window, and what a .lut file gets.
    static void compare(Session& host, int source, const QString& settings, const QString& standard,
                        const QByteArray& saved)
    {
        QCOMPARE(host.settings(), settings);
        QCOMPARE(host.standard(), standard);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(host.find<QRadioButton>(kRadios[i]).isChecked(), i == source);
            QCOMPARE(host.enabled(kControls[i].edit), source != Csv);
            QVERIFY(!kControls[i].slider || host.enabled(kControls[i].slider) == (source != Csv));
        }
        QCOMPARE(host.enabled("objStandardComboBox"), source == Standard);
        QCOMPARE(host.find<QLabel>("objLutFileNameLabel").isVisible(), source == LutFile);
        QCOMPARE(host.find<QLabel>("objCSVFileNameLabel").isVisible(), source == Csv);
        const QByteArray file = host.save();
        QCOMPARE(file.size(), saved.size());
        QVERIFY(file == saved);
    }
};

QTEST_MAIN(tst_Sources)
#include "tst_Sources.moc"
