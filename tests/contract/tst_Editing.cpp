// The five settings under real keys, tabs, wheel steps and mouse presses, on each kind of camera.
#include "contract/ModuleHost.h"

namespace {

const QString kDifference = "Error|The value is out of range, \nThe right value minus the left value is "
                            "greater than or equal to 63! ";
const char* const kMin = "objLutRangeMinEdit";
const char* const kMax = "objLutRangeMaxEdit";
const struct
{
    const char* name;
    const char* first; // typed before, when there is one
    const char* firstValue;
    const char* edit;
    const char* value;
    bool isAccepted;
} kRanges[] = {{"min at its end", nullptr, "", kMin, "4032", true},
               {"min beyond", nullptr, "", kMin, "4033", false},
               {"min far beyond", nullptr, "", kMin, "4095", false},
               {"max at its end", nullptr, "", kMax, "63", true},
               {"max below", nullptr, "", kMax, "62", false},
               {"max zero", nullptr, "", kMax, "0", false},
               {"min near max", kMax, "200", kMin, "137", true},
               {"min too near max", kMax, "200", kMin, "138", false},
               {"max near min", kMin, "100", kMax, "163", true},
               {"max too near min", kMin, "100", kMax, "162", false}};

} // namespace

class tst_Editing : public QObject
{
    Q_OBJECT

private slots:
    void typed_data() { addControls(); }

    void typed()
    {
        QFETCH(int, kind);
        QFETCH(int, control);
        const Control& row = kControls[control];
        Session host(kKinds[kind]);
        const QStringList logs[] = {{"TLParamsLocked.GetValue", "LUTValueAll.Set+verify"},
                                    {"LUTEnable.SetTrue+verify", "LUTValueAll.Set+verify"},
                                    {}};
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            const QString value = QString::number(end == Qt::Key_Tab ? row.start : row.value);
            host.type(row.edit, value, end);
            QCOMPARE(host.text(row.edit), value);
            QVERIFY(!host.settings().contains("but")); // the slider too
            QCOMPARE(std::exchange(host.camera.log, {}), logs[kind]);
            if (kKinds[kind].hasRegister)
                QCOMPARE(host.contradiction(host.table()), QString());
        }
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.messages, QVector<int>());
    }

    void rejected_data() { addRows(kRanges); }

    void rejected()
    {
        const auto& row = currentRow(kRanges);
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            Session host;
            if (row.first)
                host.type(row.first, row.firstValue);
            const QString old = host.text(row.edit);
            host.camera.log.clear();
            QString shownInBox = old;
            host.whileBoxOpen = [&] { shownInBox = host.text(row.edit); };
            host.type(row.edit, row.value, end);
            QCOMPARE(host.text(row.edit), row.isAccepted ? row.value : old);
            QCOMPARE(host.boxes, row.isAccepted ? QStringList() : QStringList{kDifference});
            QCOMPARE(host.writes(), int(row.isAccepted));
            QCOMPARE(shownInBox, old);
        }
    }

    // One box however the edit is left: edit and model agree while it is open.
    void failedWrite()
    {
        Session host;
        host.failure("LUTValueAll") = FakeCamera::Failure::Camera;
        for (const Control& row : kControls) {
            QString shownInBox;
            host.whileBoxOpen = [&] { shownInBox = host.text(row.edit); };
            for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
                host.type(row.edit, QString::number(row.value), end);
                QCOMPARE(host.takeBoxes(), QStringList{QString("Error|") + FakeCamera::kFailureText});
                QCOMPARE(shownInBox, QString::number(row.value));
                QCOMPARE(host.settings(), QString("100 0 0 0 4095"));
            }
        }
    }

    void sliderMoves_data() { addControls(3); }

    void sliderMoves()
    {
        QFETCH(int, kind);
        QFETCH(int, control);
        const Control& row = kControls[control];
        Session host(kKinds[kind]);
        int written = 0;
        const auto check = [&](int value, int more = 1) {
            written += kKinds[kind].hasRegister ? more : 0;
            QCOMPARE(host.slider(row.slider), value);
            QCOMPARE(host.text(row.edit), QString::number(value));
            QCOMPARE(host.writes(), written);
        };
        host.wheel(row.slider, {0, 120});
        check(row.start + 10);
        host.wheel(row.slider, {0, -120});
        check(row.start);
        auto& slider = host.find<QSlider>(row.slider);
        QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(slider.width() - 2, 10));
        check(row.start + 10);
        slider.setFocus();
        QTest::keyClick(&slider, Qt::Key_Left); // Qt's single step
        check(row.start);
        QTest::keyClick(&slider, Qt::Key_End);
        check(slider.maximum());
        host.wheel(row.slider, {0, 120}); // at the end: nothing changes, nothing is written
        check(slider.maximum(), 0);
        QTest::keyClick(&slider, Qt::Key_Home);
        check(slider.minimum());
        QCOMPARE(host.boxes, QStringList());
    }

    void dragged()
    {
        Session host;
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
        QCOMPARE(host.writes(), steps); // every step is written, none twice
        QCOMPARE(entry(host, 3000), 4061);
    }

    void halfTyped()
    {
        Session host;
        for (const Control& row : kControls) {
            for (const QString text : {"", row.slider && row.start == 0 ? "-" : ""}) {
                host.type(row.edit, text, Qt::Key_Return); // no value yet: nothing happens
                QCOMPARE(host.text(row.edit), text);
                QTest::keyClick(&host.find<QLineEdit>(row.edit), Qt::Key_Tab);
                QCOMPARE(host.text(row.edit), QString::number(row.start));
            }
        }
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.writes(), 0);
    }

    void unchanged()
    {
        Session host;
        host.type("objGammaLineEdit", "7");
        QCOMPARE(host.writes(), 1);
        host.type("objGammaLineEdit", "007", Qt::Key_Tab); // the same value, as it was typed
        QCOMPARE(host.text("objGammaLineEdit"), QString("007"));
        QCOMPARE(host.writes(), 1);
        host.type("objGammaLineEdit", "0");
        QCOMPARE(entry(host, 4094), 0);
        QCOMPARE(entry(host, 4095), 4095);
    }

    void untouchedOnStart()
    {
        for (const Kind& kind : kKinds) {
            FakeCamera camera(kind.hasEnable, kind.hasRegister);
            WorkingDirectory directory;
            ModuleHost host(&camera);
            QCOMPARE(camera.log,
                     kind.hasRegister ? QStringList{"LUTSelector.SetIntValue+verify"} : QStringList());
            QCOMPARE(host.settings(), QString("100 0 0 0 4095"));
            QVERIFY(host.find<QRadioButton>(kRadios[Default]).isChecked());
            auto& combo = host.find<QComboBox>("objStandardComboBox");
            QVERIFY(!combo.isEnabled() && combo.count() == 2 && !combo.itemData(0).isValid());
            QCOMPARE(combo.itemText(0) + ' ' + combo.itemText(1), QString("lut4_11 negative"));
            QCOMPARE(host.enabled(kRadios[Device]), kind.hasRegister);
            QCOMPARE(host.enabled("objWriteLutButton"), kind.hasRegister);
            QCOMPARE(
                host.find<QPushButton>("objWriteLutButton").toolTip(),
                QString("This operation will save the user sets and set the UserSetDefault to UserSet0!"));
        }
    }

private:
    // Of each kind of camera.
    static void addControls(int count = 5)
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("control");
        for (int kind = 0; kind < int(std::size(kKinds)); ++kind) {
            for (int i = 0; i < count; ++i)
                QTest::addRow("%s, %s", kKinds[kind].name, kControls[i].edit) << kind << i;
        }
    }
    static int entry(const Session& host, int i)
    {
        return qFromLittleEndian<qint32>(host.table().constData() + 4 * i);
    }
};

QTEST_MAIN(tst_Editing)
#include "tst_Editing.moc"
