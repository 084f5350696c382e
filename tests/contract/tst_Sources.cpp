// The five sources of a table, through the real radio buttons, combo box and file dialogs. After each action
// everything that a user, a file or the camera could see of the editor's state is looked at.
#include "contract/ModuleHost.h"

#include <QTextCodec>

namespace {

const char* const kEdits[] = {"objGammaLineEdit", "objBrightnessLineEdit", "objContrastLineEdit",
                              "objLutRangeMinEdit", "objLutRangeMaxEdit"};
const QString kUntouched = "100 0 0 0 4095";
const QString kCameraBox = QLatin1String("Error|") + QLatin1String(FakeCamera::kFailureText);
constexpr int kWhole = 16424;
constexpr int kTable = 16384;

// The bytes of a table of f(i), with a trailer where settings are given.
QByteArray image(int (*f)(int), const QVector<qint32>& settings = {}, const QByteArray& name = {})
{
    QByteArray bytes(settings.isEmpty() ? kTable : kWhole, '\0');
    for (int i = 0; i < 4096; ++i)
        qToLittleEndian<qint32>(f(i), bytes.data() + 4 * i);
    if (settings.isEmpty())
        return bytes;
    memcpy(bytes.data() + kTable, "CBG0", 4);
    for (int i = 0; i < 5; ++i)
        qToLittleEndian<qint32>(settings[i], bytes.data() + kTable + 4 + 4 * i);
    memcpy(bytes.data() + kTable + 24, name.constData(), size_t(name.size()));
    return bytes;
}

int identity(int i)
{
    return i;
}
int negative(int i)
{
    return 4095 - i;
}
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

QByteArray stamped(QByteArray table, const QVector<qint32>& settings, const QByteArray& name)
{
    return table.left(kTable) + image(identity, settings, name).mid(kTable);
}

const QVector<qint32> kNeutral{100, 0, 0, 0, 4095};

} // namespace

class tst_Sources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void outcomes_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("source");
        QTest::addColumn<QByteArray>("content"); // of the register or the file
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("standard");
        QTest::addColumn<QByteArray>("current"); // as a saved file shows it
        QTest::addColumn<QByteArray>("base");    // the entries, as a neutral adjustment shows them
        QTest::addColumn<bool>("written");

        const QVector<qint32> settings{200, -20, 35, 100, 3000};
        const QByteArray foreign = image(half, settings, "negative").replace(kTable, 4, "CBG1");
        for (const char* kind : {"lut", "enable", "none"}) {
            const auto row = [&](const char* name, int source, const QByteArray& content,
                                 const QString& shown, const char* standard, const QByteArray& current,
                                 const QByteArray& base, bool written) {
                if (source != Device || qstrcmp(kind, "none") != 0)
                    QTest::addRow("%s, %s", kind, name)
                        << kind << source << content << shown << standard << current << base.left(kTable)
                        << (written && qstrcmp(kind, "none") != 0);
            };
            row("default", Default, {}, kUntouched, "lut4_11", image(identity, kNeutral, "lut4_11"),
                image(identity), true);
            row("standard", Standard, {}, kUntouched, "negative", image(negative, kNeutral, "negative"),
                image(negative), true);
            row("device with trailer", Device, image(half, settings, "negative"), "200 -20 35 100 3000",
                "negative", image(half, settings, "negative"), image(negative), false);
            row("device without trailer", Device, image(half) + QByteArray(40, '\0'), kUntouched, "lut4_11",
                image(half), image(half), false);
            row("device with a foreign trailer", Device, foreign, kUntouched, "lut4_11", image(half),
                image(half), false);
            row("file with trailer", LutFile, image(half, settings, "negative"), "200 -20 35 100 3000",
                "negative", image(half, settings, "negative"), image(negative), true);
            row("file with another's trailer", LutFile, foreign, kUntouched, "lut4_11", image(half),
                image(half), true);
            row("file without trailer", LutFile, image(half), kUntouched, "lut4_11", image(half), image(half),
                true);
            row("longer file", LutFile, image(half, settings, "negative") + "more", "200 -20 35 100 3000",
                "negative", image(half, settings, "negative"), image(negative), true);
            row("short file", LutFile, image(half).left(7), kUntouched, "lut4_11",
                image(half).left(4) + QByteArray(16380, '\0'), QByteArray(kTable, '\0'), true);
            row("csv", Csv, csv(half), kUntouched, "lut4_11", image(half), {}, true);
            row("csv with more lines", Csv, csv(half, "\r\n", 4097), kUntouched, "lut4_11", image(half), {},
                true);
        }
    }

    void outcomes()
    {
        QFETCH(QString, kind);
        QFETCH(int, source);
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, current);
        QFETCH(QByteArray, base);
        QFETCH(bool, written);
        FakeCamera camera(kind == "enable");
        if (kind == "none")
            camera.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        adjustEverything(host); // so that every column has something to lose
        if (source == Device)
            camera.node<FakeCamera::Register>("LUTValueAll").bytes = content;
        const QString path = directory.path(source == Csv ? "table.csv" : "table.lut");
        if (source == LutFile || source == Csv) {
            WorkingDirectory::writeBytes(path, content);
            host.fileAnswers << path;
        }
        camera.log.clear();
        host.click(kRadios[source]);
        const int writes = camera.log.filter("LUTValueAll.Set").size();

        const Seen seen = look(host, directory);
        QCOMPARE(seen.source, source);
        QTEST(seen.settings, "settings");
        QTEST(seen.standard, "standard");
        QCOMPARE(seen.saved.size(), current.size());
        QVERIFY(seen.saved == current);
        QCOMPARE(writes, written ? 1 : 0);
        if (written)
            QVERIFY(registerOf(camera).left(current.size()) == current);
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.fileDialogs.mid(0, source == LutFile || source == Csv ? 1 : 0),
                 source == LutFile ? QStringList{"Open File|Lut file (*.lut)"}
                 : source == Csv   ? QStringList{"Open File|csv file (*.csv)"}
                                   : QStringList());
        if (source == LutFile)
            QCOMPARE(host.find<QLabel>("objLutFileNameLabel").text(), QStringLiteral("table.lut"));
        if (source == Csv) {
            QCOMPARE(host.find<QLabel>("objCSVFileNameLabel").text(), QStringLiteral("table.csv"));
            return; // nothing can be adjusted
        }
        // Neutral settings show the base.
        for (int i = 0; i < 5; ++i)
            host.type(kEdits[i], QString::number(i == 1 ? 30 : kNeutral[i])); // a change, whatever it was
        host.type("objBrightnessLineEdit", "0");
        QVERIFY(look(host, directory).saved.left(kTable) == base);
    }

    void failures_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("box");
        const QStringList missing{
            "Error|The Lut File is missing, Please Reinstall the installation package! "};
        const QStringList open{"Error|Open file failed! "};
        const QStringList data{"Error|Invalid file data! "};
        const QStringList node{"Error|Get xml value failed! "};
        const QStringList parameter{"Error|Invalid parameter! "};
        QTest::newRow("standard vanished") << int(Standard) << "vanished" << QByteArray() << missing;
        QTest::newRow("standard empty") << int(Standard) << "empty" << QByteArray() << data;
        QTest::newRow("standard a directory") << int(Standard) << "directory" << QByteArray() << open;
        QTest::newRow("file cancelled") << int(LutFile) << "cancelled" << QByteArray() << QStringList();
        QTest::newRow("file vanished") << int(LutFile) << "vanished" << image(half) << open;
        QTest::newRow("file empty") << int(LutFile) << "" << QByteArray() << data;
        QTest::newRow("csv cancelled") << int(Csv) << "cancelled" << QByteArray() << QStringList();
        QTest::newRow("csv vanished") << int(Csv) << "vanished" << csv(half) << open;
        QTest::newRow("csv empty") << int(Csv) << "" << QByteArray() << data;
        QTest::newRow("csv one line short") << int(Csv) << "" << csv(half, "\n", 4095) << data;
        QTest::newRow("csv blank line") << int(Csv) << "" << csv(half).insert(4, "\n") << data;
        QTest::newRow("csv 4096") << int(Csv) << "" << csv([](int i) { return i + 1; }) << data;
        QTest::newRow("csv separators") << int(Csv) << "" << csv(half, ",\n") << data;
        QTest::newRow("csv endless line") << int(Csv) << "" << QByteArray(1 << 20, '7') << data;
        for (const Source source : {Standard, LutFile, Csv, Default}) {
            const QByteArray content = source == Csv ? csv(half) : image(half);
            QTest::addRow("write fails, %d", source)
                << int(source) << "throws LUTValueAll" << content << QStringList{kCameraBox};
            QTest::addRow("lock absent, %d", source)
                << int(source) << "absent TLParamsLocked" << content << node;
        }
        for (const char* name : {"TLParamsLocked", "UserSetSelector", "UserSetLoad", "LUTValueAll"}) {
            QTest::addRow("device, %s throws", name)
                << int(Device) << QString("throws ") + name << QByteArray() << QStringList{kCameraBox};
            QTest::addRow("device, %s absent", name)
                << int(Device) << QString("absent ") + name << QByteArray() << node;
            QTest::addRow("device, %s of another type", name)
                << int(Device) << QString("type ") + name << QByteArray()
                << (qstrcmp(name, "UserSetSelector") == 0 ? parameter : node);
        }
        QTest::newRow("device, no length")
            << int(Device) << "length LUTValueAll" << QByteArray() << parameter;
    }

    void failures()
    {
        QFETCH(int, source);
        QFETCH(QString, trouble);
        QFETCH(QByteArray, content);
        QFETCH(QStringList, box);
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        adjustEverything(host);
        if (source == Standard)
            host.choose("lut4_11");

        const QString standard = WorkingDirectory::standardPath() + "/lut4_11.bin";
        const QString path = directory.path(source == Csv ? "table.csv" : "table.lut");
        WorkingDirectory::writeBytes(path, content);
        if (source == LutFile || source == Csv)
            host.fileAnswers << (trouble == "cancelled" ? QString() : path);
        const QString victim = source == Standard ? standard : path;
        if (trouble == "vanished" && source == Standard)
            QFile::remove(victim);
        else if (trouble == "vanished")
            host.afterFileChosen = [&] { QFile::remove(victim); };
        else if (trouble == "empty")
            WorkingDirectory::writeBytes(victim, {});
        else if (trouble == "directory")
            QVERIFY(QFile::remove(victim) && QDir().mkdir(victim));
        const QByteArray node = trouble.section(' ', 1).toLatin1();
        const QByteArray before = registerOf(camera);
        if (trouble.startsWith("throws"))
            camera.any(node).failure = FakeCamera::Failure::Camera;
        else if (trouble.startsWith("length"))
            camera.node<FakeCamera::Register>(node).claimedLength = 0;
        std::unique_ptr<FakeCamera::Node> removed;
        if (trouble.startsWith("absent") || trouble.startsWith("type"))
            removed = camera.take(node);
        if (trouble.startsWith("type"))
            camera.add<FakeCamera::String>(node);

        host.click(kRadios[source]);
        QCOMPARE(host.takeBoxes(), box);

        // Default, with everything as after the start; the camera is left alone.
        if (removed)
            camera.put(node, std::move(removed));
        else if (!node.isEmpty())
            camera.any(node).failure = FakeCamera::Failure::None;
        if (trouble.startsWith("length"))
            camera.node<FakeCamera::Register>(node).claimedLength = -1;
        host.afterFileChosen = nullptr;
        const Seen seen = look(host, directory);
        QCOMPARE(seen.source, int(Default));
        QCOMPARE(seen.settings, kUntouched);
        QCOMPARE(seen.standard, QStringLiteral("lut4_11"));
        QVERIFY(seen.saved == image(identity) + QByteArray(40, '\0'));
        QVERIFY(registerOf(camera) == before);

        // The next action works, and from the identity.
        host.wheel("objGammaSlider", {0, 120});
        QCOMPARE(host.boxes, QStringList());
        const QByteArray after = registerOf(camera);
        QCOMPARE(after.mid(kTable), image(identity, {110, 0, 0, 0, 4095}, "lut4_11").mid(kTable));
        QVERIFY(after.left(kTable) != image(identity) && after.left(kTable) != before.left(kTable));
    }

    void comboBox()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        WorkingDirectory::write(WorkingDirectory::standardPath() + "/.hidden.bin", half);
        WorkingDirectory::write(WorkingDirectory::standardPath() + "/two.dots.bin", half);
        WorkingDirectory::write(WorkingDirectory::standardPath() + "/upper.BIN", half);
        QDir().mkdir(WorkingDirectory::standardPath() + "/directory.bin");
        ModuleHost host(&camera);
        host.show();
        auto& combo = host.find<QComboBox>("objStandardComboBox");
        QStringList names;
        for (int i = 0; i < combo.count(); ++i)
            names << combo.itemText(i);
        QCOMPARE(names, (QStringList{"lut4_11", "negative"}));
        QVERIFY(!combo.itemData(0).isValid());

        adjustEverything(host);
        host.choose("lut4_11"); // resets every setting and writes
        QVERIFY(registerOf(camera) == image(identity, kNeutral, "lut4_11"));
        host.choose("negative");
        QVERIFY(registerOf(camera) == image(negative, kNeutral, "negative"));
        const Seen seen = look(host, directory);
        QCOMPARE(seen.source, int(Standard));
        QCOMPARE(seen.settings, kUntouched);
        // A second click on the source that is active runs it again.
        host.type("objGammaLineEdit", "50");
        host.click("objInitLutRadioButton");
        QVERIFY(registerOf(camera) == image(negative, kNeutral, "negative"));
        QCOMPARE(host.boxes, QStringList());
    }

    void comboBoxFails_data()
    {
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<QStringList>("box");
        QTest::newRow("vanished")
            << "vanished"
            << QStringList{"Error|The Lut File is missing, Please Reinstall the installation package! "};
        QTest::newRow("empty") << "empty" << QStringList{"Error|Invalid file data! "};
        QTest::newRow("directory") << "directory" << QStringList{"Error|Open file failed! "};
        QTest::newRow("write") << "write" << QStringList{kCameraBox};
    }

    void comboBoxFails()
    {
        QFETCH(QString, trouble);
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        host.click("objInitLutRadioButton");
        host.type("objGammaLineEdit", "50");
        const QByteArray before = registerOf(camera);
        const QString file = WorkingDirectory::standardPath() + "/negative.bin";
        if (trouble == "write")
            camera.any("LUTValueAll").failure = FakeCamera::Failure::Camera;
        else if (trouble == "empty")
            WorkingDirectory::writeBytes(file, {});
        else
            QVERIFY(QFile::remove(file));
        if (trouble == "directory")
            QDir().mkdir(file);
        host.choose("negative");
        QTEST(host.takeBoxes(), "box");
        camera.any("LUTValueAll").failure = FakeCamera::Failure::None;
        const Seen seen = look(host, directory);
        QCOMPARE(seen.source, int(Default));
        QCOMPARE(seen.settings, kUntouched);
        QCOMPARE(seen.standard, QStringLiteral("lut4_11"));
        QVERIFY(seen.saved == image(identity) + QByteArray(40, '\0'));
        QVERIFY(registerOf(camera) == before);
        host.click("objDefaultRadioButton");
        QVERIFY(registerOf(camera) == image(identity, kNeutral, "lut4_11"));
    }

    void roundTrip_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("road");
        for (const int length : {16424, 8232, 4136, 1064}) {
            for (const char* road : {"file", "user set"})
                QTest::addRow("%d, %s", length, road) << length << road;
        }
    }

    void roundTrip()
    {
        QFETCH(int, length);
        QFETCH(QString, road);
        FakeCamera camera(true);
        auto& table = camera.node<FakeCamera::Register>("LUTValueAll");
        table.bytes = QByteArray(length, '\0');
        QByteArray stored;
        camera.node<FakeCamera::Command>("UserSetSave").action = [&] { stored = table.bytes; };
        camera.node<FakeCamera::Command>("UserSetLoad").action = [&] { table.bytes = stored; };
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        adjustEverything(host);
        const QByteArray written = table.bytes;
        host.fileAnswers << directory.path("kept.lut");
        host.click("objSaveLutButton");
        host.click("objWriteLutButton");
        disarrange(host);
        QVERIFY(table.bytes != written);

        if (road == "file")
            host.fileAnswers << directory.path("kept.lut");
        host.click(road == "file" ? "objLutFileRadioButton" : "objDeviceLutRadioButton");
        QVERIFY(table.bytes == written);
        stepAndBack(host);
        QCOMPARE(camera.log.filter("LUTValueAll.Set").size() % 2,
                 road == "file" ? 0 : 1); // the steps were written
        QVERIFY(table.bytes == written);
        const Seen seen = look(host, directory);
        QCOMPARE(seen.settings, QStringLiteral("200 -20 35 100 3000"));
        QCOMPARE(seen.standard, QStringLiteral("negative"));
        QCOMPARE(seen.saved, WorkingDirectory::read(directory.path("kept.lut")));
        QCOMPARE(host.boxes, QStringList());
    }

    // Nothing in a trailer is trusted: it shows, and every later step is defined.
    void trailerBeyondLimits()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        const QVector<qint32> wild[] = {{500, 200, -200, 4095, 0},
                                        {INT_MIN, INT_MAX, INT_MIN, INT_MIN, INT_MAX},
                                        {-1, 0, 0, INT_MAX, INT_MIN}};
        for (const auto& settings : wild) {
            const QByteArray content =
                stamped(image([](int i) { return int(unsigned(i) * 1000003u); }), settings, "negative");
            WorkingDirectory::writeBytes(directory.path("wild.lut"), content);
            host.fileAnswers << directory.path("wild.lut");
            host.click("objLutFileRadioButton");
            QVERIFY(registerOf(camera) == content);
            QCOMPARE(host.text("objGammaLineEdit"), QString::number(settings[0]));
            QCOMPARE(host.slider("objGammaSlider"), qBound(0, settings[0], 400));
            // An adjustment that the other settings make impossible leaves the base table.
            host.wheel("objBrightnessSlider", {0, 120});
            host.wheel("objBrightnessSlider", {0, -120});
            QVERIFY(registerOf(camera).left(kTable) == image(negative));
            host.type("objLutRangeMinEdit", "5");
            host.type("objLutRangeMaxEdit", "4000");
            host.takeBoxes();
            host.type("objGammaLineEdit", "300");
            QCOMPARE(host.boxes, QStringList());
        }
    }

    void unknownStandard()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        for (const QByteArray& name :
             {QByteArray("another"), QByteArray("Negative"), QByteArray(16, 'n'), QByteArray("\xff\xfe")}) {
            WorkingDirectory::writeBytes(directory.path("a.lut"), image(half, {150, 0, 0, 0, 4095}, name));
            host.fileAnswers << directory.path("a.lut");
            host.click("objLutFileRadioButton");
            // The table and its settings stay; the next stamp names the identity, which is the base from now
            // on.
            QVERIFY(registerOf(camera) == image(half, {150, 0, 0, 0, 4095}, "lut4_11"));
            host.type("objGammaLineEdit", "100");
            QVERIFY(registerOf(camera) == image(identity, kNeutral, "lut4_11"));
        }
        QCOMPARE(host.boxes, QStringList());
    }

    void save_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("result"); // "lut", "csv", or the box
        QTest::newRow("lut") << "a.lut"
                             << "lut";
        QTest::newRow("csv") << "a.csv"
                             << "csv";
        QTest::newRow("no suffix") << "a"
                                   << "Error|The filename of Lut is error! ";
        QTest::newRow("another suffix") << "a.bin"
                                        << "Error|The filename of Lut is error! ";
        QTest::newRow("upper case") << "a.LUT"
                                    << "Error|The filename of Lut is error! ";
        QTest::newRow("dot in the name") << "table.old.lut"
                                         << "Error|The filename of Lut is error! ";
        QTest::newRow("cancelled") << ""
                                   << "";
    }

    void save()
    {
        QFETCH(QString, name);
        QFETCH(QString, result);
        FakeCamera camera;
        WorkingDirectory directory;
        ModuleHost host(&camera);
        host.show();
        adjustEverything(host);
        const QByteArray table = registerOf(camera);
        camera.log.clear();
        const QString path = directory.path(name);
        host.fileAnswers << (name.isEmpty() ? QString() : path);
        host.click("objSaveLutButton");
        QCOMPARE(host.fileDialogs, QStringList{"Save Lut|Lut file (*.lut);;csv file (*.csv)"});
        QCOMPARE(host.boxes, result.startsWith("Error") ? QStringList{result} : QStringList());
        QCOMPARE(camera.log, QStringList());
        if (result == "lut") {
            QVERIFY(WorkingDirectory::read(path) == table);
        } else if (result == "csv") {
            const QByteArray text = WorkingDirectory::read(path);
            QCOMPARE(text.count('\n'), 4096);
            QVERIFY(!text.contains('\r'));
            host.fileAnswers << path;
            host.click("objCSVFileRadioButton");
            QVERIFY(registerOf(camera) == table.left(kTable) + QByteArray(40, '\0'));
        } else if (!name.isEmpty()) {
            QVERIFY(!QFile::exists(path));
        }
    }

    void textsInChinese()
    {
        FakeCamera camera;
        WorkingDirectory directory;
        {
            ModuleHost host(&camera, 1);
            host.show();
            QCOMPARE(host.find<QRadioButton>(kRadios[Default]).text(), QString::fromUtf8("默认"));
            QCOMPARE(host.find<QGroupBox>("groupBox_2").title(), QString::fromUtf8("基准Lut选择"));
            QCOMPARE(host.find<QLabel>("objGammaLabel").text(), QString::fromUtf8("Gamma(0~400)："));
            WorkingDirectory::writeBytes(directory.path("empty.csv"), {});
            host.fileAnswers << directory.path("empty.csv");
            host.click(kRadios[Csv]);
            QCOMPARE(host.takeBoxes(), QStringList{QString::fromUtf8("错误提示|文件数据无效！")});
            QCOMPARE(host.fileDialogs.last(), QString::fromUtf8("打开文件|csv file (*.csv)"));
            host.type("objLutRangeMinEdit", "4090");
            QCOMPARE(host.takeBoxes(),
                     QStringList{QString::fromUtf8("错误提示|输入值超出范围，右值减左值需大于等于63！")});
            camera.any("LUTValueAll").failure = FakeCamera::Failure::Foreign;
            host.wheel("objGammaSlider", {0, 120});
            QCOMPARE(host.takeBoxes(), QStringList{QString::fromUtf8("错误提示|未知错误！")});
            camera.any("LUTValueAll").failure = FakeCamera::Failure::None;
            // A table whose settings were stored before comes back in this language too.
            adjustEverything(host);
            const QByteArray table = registerOf(camera);
            disarrange(host);
            camera.node<FakeCamera::Register>("LUTValueAll").bytes = table;
            host.click(kRadios[Device]);
            QCOMPARE(host.find<QComboBox>("objStandardComboBox").currentText(), QStringLiteral("negative"));
        }
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    }

private:
    struct Seen
    {
        int source;
        QString settings;
        QString standard;
        QByteArray saved; // what a .lut file gets
    };
    static Seen look(ModuleHost& host, const WorkingDirectory& directory)
    {
        Seen seen{-1, {}, host.find<QComboBox>("objStandardComboBox").currentText(), {}};
        for (int i = 0; i < 5; ++i) {
            if (host.find<QRadioButton>(kRadios[i]).isChecked())
                seen.source = i;
        }
        QStringList values;
        for (const char* edit : kEdits)
            values << host.text(edit);
        seen.settings = values.join(' ');
        for (int i = 0; i < 3; ++i) {
            const char* const sliders[] = {"objGammaSlider", "objBrightnessSlider", "objContrastSlider"};
            if (host.slider(sliders[i]) != values[i].toInt())
                seen.settings += QString(" slider %1 %2").arg(i).arg(host.slider(sliders[i]));
        }
        const QString path = directory.path("looked.lut");
        QFile::remove(path);
        host.fileAnswers << path;
        host.click("objSaveLutButton");
        seen.saved = WorkingDirectory::read(path);
        // Which controls can be used, and which name shows.
        const bool adjustable = seen.source != Csv;
        for (const char* edit : kEdits) {
            if (host.enabled(edit) != adjustable)
                qFatal("%s is enabled wrongly", edit);
        }
        if (host.enabled("objGammaSlider") != adjustable ||
            host.enabled("objStandardComboBox") != (seen.source == Standard) ||
            host.find<QLabel>("objLutFileNameLabel").isVisible() != (seen.source == LutFile) ||
            host.find<QLabel>("objCSVFileNameLabel").isVisible() != (seen.source == Csv))
            qFatal("the controls don't fit the source");
        return seen;
    }

    static QByteArray registerOf(const FakeCamera& camera)
    {
        return camera.node<FakeCamera::Register>("LUTValueAll").bytes;
    }

    // Settings that differ from the untouched ones in every place, on the curve "negative".
    static void adjustEverything(ModuleHost& host)
    {
        host.click("objInitLutRadioButton");
        host.choose("negative");
        host.type("objGammaLineEdit", "200");
        host.type("objBrightnessLineEdit", "-20");
        host.type("objContrastLineEdit", "35");
        host.type("objLutRangeMinEdit", "100");
        host.type("objLutRangeMaxEdit", "3000");
    }

    static void disarrange(ModuleHost& host)
    {
        host.click("objDefaultRadioButton");
        host.type("objContrastLineEdit", "-99");
    }

    static void stepAndBack(ModuleHost& host)
    {
        host.wheel("objBrightnessSlider", {0, 120});
        host.wheel("objBrightnessSlider", {0, -120});
    }
};

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication app(argc, argv);
    tst_Sources test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_Sources.moc"
