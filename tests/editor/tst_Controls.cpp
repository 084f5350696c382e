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
    void press_data()
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
    void press()
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

    void wheel()
    {
        const std::pair<QPoint, int> rows[] = {{{0, 120}, 110}, {{0, 1}, 110},   {{0, -120}, 90},
                                               {{0, 0}, 90},    {{120, 0}, 110}, {{-120, 0}, 90}};
        for (const auto& [angle, after] : rows) {
            CIntSlider slider(nullptr);
            slider.setRange(0, 400);
            slider.setValue(100);
            QWheelEvent event({5, 5}, {5, 5}, {}, angle, Qt::NoButton, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&slider, &event);
            QCOMPARE(qMakePair(angle, slider.value()), qMakePair(angle, after));
            QVERIFY(event.isAccepted());
        }
    }

    // Another locale's separators and digits change nothing.
    void typing()
    {
        const orlune::ControlLimits gamma = orlune::kGammaLimits, tone = orlune::kToneLimits,
                                    range = orlune::kRangeLimits;
        const std::tuple<orlune::ControlLimits, QString, QString> rows[] = {
            {gamma, "400", "400"},  {gamma, "401", "40"},    {gamma, "500", "50"},   {gamma, "-5", "5"},
            {gamma, "007", "007"},  {tone, "200", "20"},     {tone, "-150", "-150"}, {tone, "-151", "-15"},
            {range, "5000", "500"}, {range, "4095", "4095"}, {range, "1,2", "12"},   {range, "0x1e2", "012"}};
        const QLocale before;
        for (const QLocale& locale : {QLocale::c(), QLocale(QLocale::English), QLocale(QLocale::Arabic)}) {
            QLocale::setDefault(locale);
            for (const auto& [limits, keys, text] : rows) {
                QLineEdit edit;
                edit.setValidator(new BoundedIntValidator(limits.low, limits.high, &edit));
                QTest::keyClicks(&edit, keys);
                QVERIFY2(edit.text() == text, qPrintable(locale.name() + ' ' + keys + ": " + edit.text()));
            }
        }
        QLocale::setDefault(before);
    }
};

QTEST_MAIN(tst_Controls)
#include "tst_Controls.moc"
