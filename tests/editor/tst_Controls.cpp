// The slider and the validator on their own.
#include <QtTest>

#include <QLineEdit>
#include <QSignalSpy>

#include "editor/BoundedIntValidator.h"
#include "editor/IntSlider.h"
#include "lut/LutImage.h"

class tst_Controls : public QObject
{
    Q_OBJECT

private slots:
    void press_data();
    void press();
    void wheel_data();
    void wheel();
    void typing_data();
    void typing();
};

void tst_Controls::press_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("at"); // share of the width
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("after");
    QTest::newRow("just right of the handle") << -100 << 0.35 << int(Qt::LeftButton) << -90;
    QTest::newRow("far right") << -100 << 0.99 << int(Qt::LeftButton) << -90;
    QTest::newRow("left") << 100 << 0.2 << int(Qt::LeftButton) << 90;
    QTest::newRow("right button") << -100 << 0.9 << int(Qt::RightButton) << -90;
    QTest::newRow("stops at the end") << 145 << 0.999 << int(Qt::RightButton) << 150;
    QTest::newRow("at the end") << 150 << 0.5 << int(Qt::LeftButton) << 140;
    QTest::newRow("on the handle") << 0 << 0.5 << int(Qt::LeftButton) << 0;
}

void tst_Controls::press()
{
    QFETCH(int, value);
    QFETCH(double, at);
    QFETCH(int, button);
    CIntSlider slider(nullptr);
    slider.setOrientation(Qt::Horizontal);
    slider.setRange(-150, 150);
    slider.setValue(value);
    slider.resize(301, 20);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QSignalSpy spy(&slider, &QSlider::valueChanged);
    QTest::mousePress(&slider, Qt::MouseButton(button), {}, QPoint(int(at * slider.width()), 10));
    QTEST(slider.value(), "after");
    QTest::qWait(20); // holding adds nothing
    QTest::mouseRelease(&slider, Qt::MouseButton(button));
    QTEST(slider.value(), "after");
    QCOMPARE(spy.count(), slider.value() == value ? 0 : 1);
}

void tst_Controls::wheel_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("after");
    QTest::newRow("up") << QPoint(0, 120) << 110;
    QTest::newRow("up a little") << QPoint(0, 1) << 110;
    QTest::newRow("down") << QPoint(0, -120) << 90;
    QTest::newRow("nothing") << QPoint(0, 0) << 90;
    QTest::newRow("left") << QPoint(120, 0) << 110;
    QTest::newRow("right") << QPoint(-120, 0) << 90;
}

void tst_Controls::wheel()
{
    QFETCH(QPoint, angle);
    CIntSlider slider(nullptr);
    slider.setRange(0, 400);
    slider.setValue(100);
    QWheelEvent event({5, 5}, {5, 5}, {}, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&slider, &event);
    QTEST(slider.value(), "after");
    QVERIFY(event.isAccepted());
}

void tst_Controls::typing_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    const orlune::ControlLimits gamma = orlune::kGammaLimits, tone = orlune::kToneLimits,
                                range = orlune::kRangeLimits;
    QTest::newRow("gamma at its end") << gamma.low << gamma.high << "400"
                                      << "400";
    QTest::newRow("gamma beyond") << gamma.low << gamma.high << "401"
                                  << "40";
    QTest::newRow("gamma far beyond") << gamma.low << gamma.high << "500"
                                      << "50";
    QTest::newRow("no minus") << gamma.low << gamma.high << "-5"
                              << "5";
    QTest::newRow("leading zeros") << gamma.low << gamma.high << "007"
                                   << "007";
    QTest::newRow("tone beyond") << tone.low << tone.high << "200"
                                 << "20";
    QTest::newRow("negative tone") << tone.low << tone.high << "-150"
                                   << "-150";
    QTest::newRow("negative tone beyond") << tone.low << tone.high << "-151"
                                          << "-15";
    QTest::newRow("range beyond") << range.low << range.high << "5000"
                                  << "500";
    QTest::newRow("range at its end") << range.low << range.high << "4095"
                                      << "4095";
    QTest::newRow("group separator") << range.low << range.high << "1,2"
                                     << "12";
    QTest::newRow("letters") << range.low << range.high << "0x1e2"
                             << "012";
}

void tst_Controls::typing()
{
    QFETCH(int, low);
    QFETCH(int, high);
    QFETCH(QString, keys);
    const QLocale before;
    // Another locale's separators and digits change nothing.
    for (const QLocale& locale : {QLocale::c(), QLocale(QLocale::English), QLocale(QLocale::Arabic)}) {
        QLocale::setDefault(locale);
        QLineEdit edit;
        edit.setValidator(new BoundedIntValidator(low, high, &edit));
        QTest::keyClicks(&edit, keys);
        QTEST(edit.text(), "text");
    }
    QLocale::setDefault(before);
}

QTEST_MAIN(tst_Controls)
#include "tst_Controls.moc"
