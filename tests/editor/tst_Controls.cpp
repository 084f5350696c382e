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
    void press()
    {
        const std::tuple<const char*, int, double, Qt::MouseButton, int> rows[] = {
            {"just right of the handle", -100, 0.35, Qt::LeftButton, -90},
            {"far right", -100, 0.99, Qt::LeftButton, -90},
            {"left", 100, 0.2, Qt::LeftButton, 90},
            {"right button", -100, 0.9, Qt::RightButton, -90},
            {"stops at the end", 145, 0.999, Qt::RightButton, 150},
            {"at the end", 150, 0.5, Qt::LeftButton, 140},
            {"on the handle", 0, 0.5, Qt::LeftButton, 0}};
        for (const auto& [name, value, at, button, after] : rows) {
            CIntSlider slider(nullptr);
            slider.setOrientation(Qt::Horizontal);
            slider.setRange(-150, 150);
            slider.setValue(value);
            slider.resize(301, 20);
            slider.show();
            QVERIFY(QTest::qWaitForWindowExposed(&slider));
            QSignalSpy spy(&slider, &QSlider::valueChanged);
            QTest::mousePress(&slider, button, {}, QPoint(int(at * slider.width()), 10));
            QVERIFY2(slider.value() == after, name);
            QTest::qWait(20); // holding adds nothing
            QTest::mouseRelease(&slider, button);
            QVERIFY2(slider.value() == after && spy.count() == (after == value ? 0 : 1), name);
        }
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
