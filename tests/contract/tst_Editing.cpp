// The five settings under real keys, tabs, wheel steps and mouse presses, on each kind of camera.
#include "contract/ModuleHost.h"

#include <QTextCodec>

namespace {

const QString kDifference = "Error|The value is out of range, \nThe right value minus the left value is "
                            "greater than or equal to 63! ";
const QString kCamera = QLatin1String("Error|") + QLatin1String(FakeCamera::kFailureText);

} // namespace

class tst_Editing : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void typed_data() { kinds(); }

    void typed()
    {
        QFETCH(QString, kind);
        QFETCH(int, control);
        const Control& row = kControls[control];
        FakeCamera device(kind == "enable");
        if (kind == "none")
            device.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        device.log.clear();

        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            const int value = end == Qt::Key_Tab ? row.start : row.value;
            host.type(row.edit, QString::number(value), end);
            QCOMPARE(host.text(row.edit), QString::number(value));
            if (row.slider)
                QCOMPARE(host.slider(row.slider), value);
            const QStringList one =
                kind == "lut"      ? QStringList{"TLParamsLocked.GetValue", "LUTValueAll.Set+verify"}
                : kind == "enable" ? QStringList{"LUTEnable.SetTrue+verify", "LUTValueAll.Set+verify"}
                                   : QStringList{};
            QCOMPARE(std::exchange(device.log, {}), one);
            if (kind != "none") { // the trailer that was stamped
                const char* trailer =
                    device.node<FakeCamera::Register>("LUTValueAll").bytes.constData() + 16384;
                QCOMPARE(QByteArray(trailer, 4), QByteArray("CBG0"));
                QCOMPARE(qFromLittleEndian<qint32>(trailer + 4 + 4 * control), value);
                QCOMPARE(QByteArray(trailer + 24), QByteArray("lut4_11"));
            }
        }
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.messages, QVector<int>());
    }

    void rejected_data()
    {
        QTest::addColumn<QByteArray>("first"); // typed before, when not empty
        QTest::addColumn<QString>("firstValue");
        QTest::addColumn<QByteArray>("edit");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("accepted");
        const QByteArray low("objLutRangeMinEdit"), high("objLutRangeMaxEdit");
        QTest::newRow("min at its end") << QByteArray() << "" << low << "4032" << true;
        QTest::newRow("min beyond") << QByteArray() << "" << low << "4033" << false;
        QTest::newRow("min far beyond") << QByteArray() << "" << low << "4095" << false;
        QTest::newRow("max at its end") << QByteArray() << "" << high << "63" << true;
        QTest::newRow("max below") << QByteArray() << "" << high << "62" << false;
        QTest::newRow("max zero") << QByteArray() << "" << high << "0" << false;
        QTest::newRow("min near max") << high << "200" << low << "137" << true;
        QTest::newRow("min too near max") << high << "200" << low << "138" << false;
        QTest::newRow("max near min") << low << "100" << high << "163" << true;
        QTest::newRow("max too near min") << low << "100" << high << "162" << false;
    }

    void rejected()
    {
        QFETCH(QByteArray, first);
        QFETCH(QString, firstValue);
        QFETCH(QByteArray, edit);
        QFETCH(QString, value);
        QFETCH(bool, accepted);
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            FakeCamera device;
            WorkingDirectory directory;
            ModuleHost host(&device);
            host.show();
            if (!first.isEmpty())
                host.type(first, firstValue);
            const QString old = host.text(edit);
            device.log.clear();
            QString shownInBox;
            host.whileBoxOpen = [&] { shownInBox = host.text(edit); };
            host.type(edit, value, end);
            QCOMPARE(host.text(edit), accepted ? value : old);
            QCOMPARE(host.boxes, accepted ? QStringList() : QStringList{kDifference});
            QCOMPARE(writes(device), accepted ? 1 : 0);
            if (!accepted)
                QCOMPARE(shownInBox, old);
        }
    }

    void failedWrite_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("control");
        QTest::addColumn<QByteArray>("node");
        for (int i = 0; i < 5; ++i) {
            QTest::addRow("write %d", i) << "lut" << i << QByteArray("LUTValueAll");
            QTest::addRow("lock %d", i) << "lut" << i << QByteArray("TLParamsLocked");
            QTest::addRow("enable %d", i) << "enable" << i << QByteArray("LUTEnable");
        }
    }

    void failedWrite()
    {
        QFETCH(QString, kind);
        QFETCH(int, control);
        QFETCH(QByteArray, node);
        const Control& row = kControls[control];
        FakeCamera device(kind == "enable");
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        host.type("objBrightnessLineEdit", "30"); // so that the range has something to act on
        const QString old = host.text(row.edit);
        const QByteArray before = device.node<FakeCamera::Register>("LUTValueAll").bytes;
        const QImage picture = host.find<QWidget>("objPlotterWidget").grab().toImage();
        device.any(node).failure = FakeCamera::Failure::Camera;
        QString shownInBox;
        host.whileBoxOpen = [&] { shownInBox = host.text(row.edit); };

        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            host.type(row.edit, QString::number(row.value), end);
            QCOMPARE(host.takeBoxes(), QStringList{kCamera});
            QCOMPARE(shownInBox, QString::number(row.value)); // edit and model agree while the box is open
            QCOMPARE(host.text(row.edit), old);
            if (row.slider)
                QCOMPARE(host.slider(row.slider), old.toInt());
        }
        if (row.slider) {
            host.wheel(row.slider, {0, 120});
            QCOMPARE(host.takeBoxes(), QStringList{kCamera});
            QCOMPARE(host.slider(row.slider), old.toInt());
            QCOMPARE(host.text(row.edit), old);
        }
        host.find<QWidget>("objGammaSlider").setFocus();
        QCOMPARE(device.node<FakeCamera::Register>("LUTValueAll").bytes, before);
        QCOMPARE(host.find<QWidget>("objPlotterWidget").grab().toImage(), picture);

        // The next good action brings camera and editor together.
        device.any(node).failure = FakeCamera::Failure::None;
        host.type(row.edit, QString::number(row.value));
        QCOMPARE(host.boxes, QStringList());
        QVERIFY(device.node<FakeCamera::Register>("LUTValueAll").bytes != before);
    }

    void sliderMoves_data() { kinds(); }

    void sliderMoves()
    {
        QFETCH(QString, kind);
        QFETCH(int, control);
        const Control& row = kControls[control];
        if (!row.slider)
            return;
        FakeCamera device(kind == "enable");
        if (kind == "none")
            device.remove("LUTValueAll");
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        device.log.clear();
        const auto check = [&](int value, int written) {
            QCOMPARE(host.slider(row.slider), value);
            QCOMPARE(host.text(row.edit), QString::number(value));
            QCOMPARE(writes(device), kind == "none" ? 0 : written);
        };
        host.wheel(row.slider, {0, 120});
        check(row.start + 10, 1);
        host.wheel(row.slider, {0, -120});
        check(row.start, 2);
        auto& slider = host.find<QSlider>(row.slider);
        QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(slider.width() - 2, 10));
        check(row.start + 10, 3);
        slider.setFocus();
        QTest::keyClick(&slider, Qt::Key_Left); // Qt's single step
        check(row.start, 4);
        QTest::keyClick(&slider, Qt::Key_End);
        check(slider.maximum(), 5);
        host.wheel(row.slider, {0, 120}); // at the end: nothing changes, nothing is written
        check(slider.maximum(), 5);
        QTest::keyClick(&slider, Qt::Key_Home);
        check(slider.minimum(), 6);
        QCOMPARE(host.boxes, QStringList());
    }

    void dragged()
    {
        FakeCamera device;
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        auto& slider = host.find<QSlider>("objBrightnessSlider"); // its handle is in the middle
        QTest::mousePress(&slider, Qt::LeftButton, {}, slider.rect().center());
        QCOMPARE(slider.value(), 0);
        int last = 0;
        int steps = 0;
        for (int x = slider.width() / 2; x < slider.width(); x += 3) {
            QTest::mouseMove(&slider, QPoint(x, 10));
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 10), Qt::LeftButton, Qt::LeftButton,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(&slider, &move);
            QVERIFY(slider.value() >= last);
            steps += slider.value() != last;
            last = slider.value();
            QCOMPARE(host.text("objBrightnessLineEdit"), QString::number(last));
        }
        QTest::mouseRelease(&slider, Qt::LeftButton);
        QCOMPARE(last, 150);
        QVERIFY(steps > 5);
        QCOMPARE(writes(device), steps); // every step is written, none twice
        QCOMPARE(entry(device, 3000), 4061);
    }

    void halfTyped_data()
    {
        QTest::addColumn<QByteArray>("edit");
        QTest::addColumn<QString>("text");
        for (const Control& row : kControls)
            QTest::newRow(QByteArray("empty ") + row.edit) << QByteArray(row.edit) << "";
        QTest::newRow("sign, brightness") << QByteArray("objBrightnessLineEdit") << "-";
        QTest::newRow("sign, contrast") << QByteArray("objContrastLineEdit") << "-";
    }

    void halfTyped()
    {
        QFETCH(QByteArray, edit);
        QFETCH(QString, text);
        FakeCamera device;
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        const QString old = host.text(edit);
        host.type(edit, text, Qt::Key_Return); // no value yet: nothing happens
        QCOMPARE(host.text(edit), text);
        QTest::keyClick(&host.find<QLineEdit>(edit), Qt::Key_Tab);
        QCOMPARE(host.text(edit), old);
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(writes(device), 0);
    }

    void unchanged()
    {
        FakeCamera device;
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        host.type("objGammaLineEdit", "7");
        QCOMPARE(writes(device), 1);
        host.type("objGammaLineEdit", "007", Qt::Key_Tab); // the same value, as it was typed
        QCOMPARE(host.text("objGammaLineEdit"), QStringLiteral("007"));
        QCOMPARE(writes(device), 1);
        host.type("objGammaLineEdit", "0");
        QCOMPARE(entry(device, 4094), 0);
        QCOMPARE(entry(device, 4095), 4095);
    }

    void untouchedOnStart()
    {
        FakeCamera device(true);
        WorkingDirectory directory;
        ModuleHost host(&device);
        QCOMPARE(device.log, QStringList{"LUTSelector.SetIntValue+verify"});
        host.show();
        for (const Control& row : kControls) {
            QCOMPARE(host.text(row.edit), QString::number(row.start));
            if (row.slider)
                QCOMPARE(host.slider(row.slider), row.start);
        }
        QVERIFY(host.find<QRadioButton>("objDefaultRadioButton").isChecked());
        QVERIFY(!host.enabled("objStandardComboBox"));
        QVERIFY(host.enabled("objDeviceLutRadioButton") && host.enabled("objWriteLutButton"));
        QCOMPARE(
            host.find<QPushButton>("objWriteLutButton").toolTip(),
            QStringLiteral("This operation will save the user sets and set the UserSetDefault to UserSet0!"));
    }

    void bracket()
    {
        FakeCamera device;
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        auto& locked = device.node<FakeCamera::Integer>("TLParamsLocked");
        locked.value = 1;
        QStringList order;
        host.onCode = [&](int code) {
            order << QString::number(code) + '/' + QString::number(writes(device));
        };
        host.wheel("objGammaSlider", {0, 120});
        QCOMPARE(order, (QStringList{"11/0", "10/1"}));

        // A failed write: its box stands while the bracket is open.
        order.clear();
        device.any("LUTValueAll").failure = FakeCamera::Failure::Standard;
        host.whileBoxOpen = [&] { order << "box"; };
        host.wheel("objGammaSlider", {0, 120});
        QCOMPARE(order, (QStringList{"11/1", "box", "10/1"}));

        order.clear();
        device.any("LUTValueAll").failure = FakeCamera::Failure::None;
        locked.value = 0;
        host.wheel("objGammaSlider", {0, 120});
        QCOMPARE(order, QStringList());
    }

    void storeInCamera()
    {
        FakeCamera device;
        WorkingDirectory directory;
        ModuleHost host(&device);
        host.show();
        device.log.clear();
        host.click("objWriteLutButton");
        QCOMPARE(device.log,
                 (QStringList{"UserSetSelector.GetIntValue", "UserSetSelector.SetIntValue+verify",
                              "UserSetSave.Execute+verify", "UserSetDefault.SetIntValue+verify"}));
        QCOMPARE(host.boxes, QStringList());
        device.remove("UserSetSave");
        host.click("objWriteLutButton");
        QCOMPARE(host.boxes, QStringList{"Error|Get xml value failed! "});
    }

private:
    static int entry(const FakeCamera& camera, int i)
    {
        return qFromLittleEndian<qint32>(camera.node<FakeCamera::Register>("LUTValueAll").bytes.constData() +
                                         4 * i);
    }

    static int writes(const FakeCamera& camera) { return camera.log.filter("LUTValueAll.Set").size(); }
    static void kinds()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("control");
        for (const char* kind : {"lut", "enable", "none"}) {
            for (int i = 0; i < 5; ++i)
                QTest::newRow(QByteArray(kind) + ' ' + kControls[i].edit) << kind << i;
        }
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    tst_Editing test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_Editing.moc"
