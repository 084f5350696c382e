// The five settings under real keys, tabs, wheel steps and mouse presses, on each kind of camera.
#include "contract/ModuleHost.h"

namespace {

const QString kDifference = "Error|The value is out of range, \nThe right value minus the left value is "
                            "greater than or equal to 63! ";
const char* const kMin = "objLutRangeMinEdit";
const char* const kMax = "objLutRangeMaxEdit";
// Typed one after the other.
const struct
{
    const char* edit;
    const char* value;
    bool isAccepted;
} kRanges[] = {{kMin, "4033", false}, {kMin, "4032", true}, {kMin, "0", true},    {kMax, "62", false},
               {kMax, "63", true},    {kMax, "200", true},  {kMin, "138", false}, {kMin, "137", true},
               {kMin, "100", true},   {kMax, "162", false}, {kMax, "163", true}};

} // namespace

class tst_Editing : public QObject
{
    Q_OBJECT

private slots:
    void typed_data() { addRows(kKinds); }

    void typed()
    {
        const Kind& kind = currentRow(kKinds);
        const QString first = kind.hasEnable ? "LUTEnable.SetTrue+verify" : "TLParamsLocked.GetValue";
        const QStringList log =
            kind.hasRegister ? QStringList{first, "LUTValueAll.Set+verify"} : QStringList();
        Session host(kind);
        for (const Control& row : kControls) {
            const QString start = QString::number(row.start);
            for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
                const QString value = end == Qt::Key_Tab ? start : QString::number(row.value);
                host.type(row.edit, value, end);
                QCOMPARE(host.text(row.edit), value);
                QVERIFY(!host.settings().contains("but")); // the slider too
                QCOMPARE(std::exchange(host.camera.log, {}), log);
                if (kind.hasRegister)
                    QCOMPARE(host.contradiction(host.table()), QString());
            }
            host.type(row.edit, ""); // no value yet: nothing happens
            QCOMPARE(host.text(row.edit), QString());
            QTest::keyClick(&host.find<QLineEdit>(row.edit), Qt::Key_Tab);
            QCOMPARE(host.text(row.edit), start);
        }
        QCOMPARE(host.camera.log, QStringList());
        QCOMPARE(host.boxes, QStringList());
        QCOMPARE(host.messages, QVector<int>());
    }

    // Another locale's separators and digits change nothing.
    void limited()
    {
        const std::tuple<int, QString, QString> rows[] = {
            {0, "400", "400"},  {0, "401", "40"},    {0, "500", "50"},     {0, "-5", "5"},
            {0, "007", "007"},  {1, "200", "20"},    {1, "-150", "-150"},  {1, "-151", "-15"},
            {4, "5000", "500"}, {4, "4095", "4095"}, {4, "1,200", "1200"}, {4, "0x1e23", "0123"}};
        for (const QLocale& locale : {QLocale(QLocale::English), QLocale(QLocale::Arabic), QLocale::c()}) {
            QLocale::setDefault(locale);
            Session host;
            for (const auto& [control, keys, text] : rows) {
                host.type(kControls[control].edit, keys);
                QCOMPARE(host.text(kControls[control].edit), text);
            }
        }
    }

    void rejected()
    {
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            Session host;
            for (const auto& row : kRanges) {
                const QString old = host.text(row.edit);
                QString shownInBox = old;
                host.whileBoxOpen = [&] { shownInBox = host.text(row.edit); };
                host.camera.log.clear();
                host.type(row.edit, row.value, end);
                QCOMPARE(host.text(row.edit), row.isAccepted ? row.value : old);
                QCOMPARE(host.takeBoxes(), row.isAccepted ? QStringList() : QStringList{kDifference});
                QCOMPARE(host.writes(), int(row.isAccepted));
                QCOMPARE(shownInBox, old);
            }
        }
    }

    void sliderMoves_data() { addRows(kKinds); }

    void sliderMoves()
    {
        const Kind& kind = currentRow(kKinds);
        const std::pair<QPoint, int> turns[] = {{{0, 120}, 10}, {{0, -120}, 0}, {{120, 0}, 10},
                                                {{-120, 0}, 0}, {{0, 1}, 10},   {{0, 0}, 0}};
        Session host(kind);
        int written = 0;
        for (const Control& row : kControls) {
            if (!row.slider)
                continue;
            const auto check = [&](int value, int more = 1) {
                written += kind.hasRegister ? more : 0;
                QCOMPARE(host.slider(row.slider), value);
                QCOMPARE(host.text(row.edit), QString::number(value));
                QCOMPARE(host.writes(), written);
            };
            for (const auto& [angle, up] : turns) {
                QVERIFY(host.wheel(row.slider, angle));
                check(row.start + up);
            }
            auto& slider = host.find<QSlider>(row.slider);
            slider.setFocus();
            QTest::keyClick(&slider, Qt::Key_Left); // Qt's single step
            check(row.start - 10);
            QTest::keyClick(&slider, Qt::Key_End);
            check(slider.maximum());
            host.wheel(row.slider, {0, 120}); // at the end: nothing changes, nothing is written
            check(slider.maximum(), 0);
            QTest::keyClick(&slider, Qt::Key_Home);
            check(slider.minimum());
        }
        QCOMPARE(host.boxes, QStringList());
    }

    void pressed()
    {
        // From a value, at a part of the width.
        const std::tuple<int, double, Qt::MouseButton, int> rows[] = {
            {-100, 0.35, Qt::LeftButton, -90}, {100, 0.2, Qt::LeftButton, 90},
            {-100, 0.9, Qt::RightButton, -90}, {145, 0.999, Qt::RightButton, 150},
            {150, 0.5, Qt::LeftButton, 140},   {0, 0.5, Qt::LeftButton, 0}}; // the last on the handle
        Session host;
        auto& slider = host.find<QSlider>("objBrightnessSlider");
        for (const auto& [value, at, button, after] : rows) {
            slider.setValue(value);
            host.camera.log.clear();
            QTest::mousePress(&slider, button, {}, QPoint(int(at * slider.width()), 10));
            QCOMPARE(slider.value(), after);
            QTest::qWait(20); // holding adds nothing
            QTest::mouseRelease(&slider, button);
            QCOMPARE(slider.value(), after);
            QCOMPARE(host.writes(), int(after != value));
        }
    }

    void dragged()
    {
        Session host;
        auto& slider = host.find<QSlider>("objBrightnessSlider"); // its handle is in the middle
        QTest::mousePress(&slider, Qt::LeftButton, {}, slider.rect().center());
        int steps = 0;
        for (int x = slider.width() / 2; x < slider.width(); x += 3) {
            const int last = slider.value();
            QMouseEvent move(QEvent::MouseMove, {double(x), 10}, Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&slider, &move);
            QVERIFY(slider.value() >= last);
            steps += slider.value() > last;
            QCOMPARE(host.text("objBrightnessLineEdit"), QString::number(slider.value()));
        }
        QVERIFY(slider.value() == 150 && steps > 5);
        QCOMPARE(host.writes(), steps); // every step is written, none twice
        QCOMPARE(host.contradiction(host.table()), QString());
    }

    void unchanged()
    {
        Session host;
        host.type("objGammaLineEdit", "7");
        QCOMPARE(host.writes(), 1);
        host.type("objGammaLineEdit", "007", Qt::Key_Tab); // the same value, as it was typed
        QCOMPARE(host.text("objGammaLineEdit"), QString("007"));
        QCOMPARE(host.writes(), 1);
    }

    void untouchedOnStart()
    {
        for (const Kind& kind : kKinds) {
            FakeCamera camera(kind.hasEnable, kind.hasRegister);
            if (kind.hasEnable)
                camera.any("LUTEnable").mode = GenApi_3_0::NA; // as a camera may say for now
            WorkingDirectory directory;
            ModuleHost host(&camera);
            QCOMPARE(camera.log,
                     kind.hasRegister ? QStringList{"LUTSelector.SetIntValue+verify"} : QStringList());
            QCOMPARE(host.settings(), QString("100 0 0 0 4095"));
            auto& combo = host.find<QComboBox>("objStandardComboBox");
            QVERIFY(!combo.isEnabled() && combo.count() == 2 && !combo.itemData(0).isValid());
            QCOMPARE(combo.itemText(0) + ' ' + combo.itemText(1), QString("lut4_11 negative"));
            QCOMPARE(
                host.find<QPushButton>("objWriteLutButton").toolTip(),
                QString("This operation will save the user sets and set the UserSetDefault to UserSet0!"));
            host.wheel("objGammaSlider", {0, 120});
            QCOMPARE(camera.log.contains("LUTEnable.SetTrue+verify"), kind.hasEnable);
        }
    }
};

QTEST_MAIN(tst_Editing)
#include "tst_Editing.moc"
