#include <QtTest>

#include <QPainter>

#include "editor/Plotter.h"

using orlune::LutImage;

class tst_Plotter : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_view = std::make_unique<Plotter>(nullptr);
        m_view->setPalette(QPalette(Qt::white));
        m_view->resize(260, 260);
        QCOMPARE(m_view->Init(), 0);
    }

    void start();
    void mapping_data();
    void mapping();
    void adjustsFromBase();
    void storedSettingsWait();
    void failedRebuild_data();
    void failedRebuild();
    void publishes();
    void buildFromControls();
    void handlesAnyEntry();
    void picture();
    void uninit();

private:
    LutImage& current() const { return *m_view->GetLut(); }
    LutImage& base() const { return *m_view->GetBaseLut(); }
    const std::int32_t* published() const { return m_view->PublishedLut().Acquire().entries(); }
    bool published(const LutImage& image) const
    {
        const auto snapshot = m_view->PublishedLut().Acquire();
        return snapshot.entries() && memcmp(snapshot.entries(), image.Entries, sizeof image.Entries) == 0;
    }
    QImage shot() const { return m_view->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    std::unique_ptr<Plotter> m_view;
};

void tst_Plotter::start()
{
    LutImage identity;
    orlune::MakeIdentity(identity);
    QVERIFY(memcmp(&current(), &identity, sizeof identity) == 0);
    QVERIFY(memcmp(&base(), &identity, sizeof identity) == 0);
    QCOMPARE(m_view->GetGamma(), 100);
    QCOMPARE(m_view->GetBrightness(), 0);
    QCOMPARE(m_view->GetContrast(), 0);
    QCOMPARE(m_view->GetRangeMin(), 0);
    QCOMPARE(m_view->GetRangeMax(), 4095);

    const QVector<QPoint>& line = m_view->Polyline();
    QCOMPARE(line.size(), 256);
    QCOMPARE(line.first(), QPoint(2, 257));
    QCOMPARE(line.last(), QPoint(257, 2));
    for (const QPoint& point : line)
        QCOMPARE(point.x() + point.y(), 259);
    QCOMPARE(m_view->Handles().size(), 2);
    QCOMPARE(*m_view->Handles().first(), QPoint(2, 257));
    QCOMPARE(*m_view->Handles().last(), QPoint(257, 2));
}

void tst_Plotter::mapping_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("value");
    QTest::addColumn<QPoint>("screen");
    QTest::addColumn<QPoint>("back");
    QTest::newRow("origin") << 0 << 0 << QPoint(2, 257) << QPoint(0, 0);
    QTest::newRow("value 100") << 0 << 100 << QPoint(2, 251) << QPoint(0, 96);
    QTest::newRow("end") << 4095 << 4095 << QPoint(257, 2) << QPoint(4080, 4080);
    QTest::newRow("above") << 0 << 5000 << QPoint(2, -55) << QPoint(0, 4080);
    QTest::newRow("below") << 0 << -1 << QPoint(2, 258) << QPoint(0, 0);
    QTest::newRow("left") << -1 << 0 << QPoint(1, 257) << QPoint(0, 0);
    QTest::newRow("right") << 5000 << 0 << QPoint(314, 257) << QPoint(4080, 0);
}

void tst_Plotter::mapping()
{
    QFETCH(int, position);
    QFETCH(int, value);
    QFETCH(QPoint, screen);
    QCOMPARE(m_view->LutToScreen(position, value), screen);
    QTEST(m_view->ScreenToLut(screen), "back");
}

void tst_Plotter::adjustsFromBase()
{
    base().Trailer[7] = 9; // travels along
    m_view->SetGamma(200);
    QCOMPARE(current().Entries[2048], 2906);
    QCOMPARE(current().Trailer[7], uchar(9));
    m_view->SetGamma(50); // starts again from the base, not from the adjusted table
    QCOMPARE(current().Entries[2048], 1024);
    QCOMPARE(base().Entries[2048], 2048);
    m_view->SetGamma(0);
    QCOMPARE(*m_view->Handles().last(), QPoint(257, 257)); // the last entry drawn is 4080
    QCOMPARE(current().Entries[4095], 4095);
    m_view->SetGamma(100);
    QVERIFY(memcmp(&current(), &base(), sizeof(LutImage)) == 0);
}

void tst_Plotter::storedSettingsWait()
{
    m_view->StoreGamma(200);
    QCOMPARE(current().Entries[2048], 2048);
    m_view->SetBrightness(0);
    QCOMPARE(current().Entries[2048], 2906);
    m_view->SetRangeMin(100);
    m_view->SetRangeMax(1000);
    QCOMPARE(current().Entries[99], 99);
    QCOMPARE(current().Entries[500], 700);
    QCOMPARE(current().Entries[1001], 1001);
}

void tst_Plotter::failedRebuild_data()
{
    QTest::addColumn<int>("gamma");
    QTest::addColumn<int>("rangeMin");
    QTest::addColumn<int>("entry");
    QTest::newRow("gamma beyond its limit") << 500 << 0 << 0;
    QTest::newRow("hostile gamma") << INT_MIN << 0 << 0;
    QTest::newRow("range too narrow") << 200 << 4033 << 0;
    QTest::newRow("hostile range") << 200 << INT_MIN << 0;
    QTest::newRow("entry above") << 200 << 0 << 5000;
    QTest::newRow("entry below") << 200 << 0 << INT_MIN;
}

void tst_Plotter::failedRebuild()
{
    QFETCH(int, gamma);
    QFETCH(int, rangeMin);
    QFETCH(int, entry);
    m_view->SetBrightness(10);
    const QImage before = shot();
    base().Entries[2048] = entry;
    m_view->StoreRangeMin(rangeMin);
    m_view->SetGamma(gamma);
    QCOMPARE(m_view->GetGamma(), gamma);
    QVERIFY(memcmp(&current(), &base(), sizeof(LutImage)) == 0);
    QVERIFY(published(base()));
    QCOMPARE(shot(), before);
}

void tst_Plotter::publishes()
{
    current().Entries[5] = 1; // in the middle of a change
    QCOMPARE(published()[5], 5);
    m_view->RefreshCurve();
    QVERIFY(published(current()));
    m_view->SetContrast(20);
    QVERIFY(published(current()));
    m_view->ResetIdentity();
    QCOMPARE(published()[5], 5);
}

void tst_Plotter::buildFromControls()
{
    base().Entries[0] = 77;
    m_view->StoreRangeMin(4000); // plays no part
    m_view->StoreBrightness(150);
    QCOMPARE(m_view->BuildFromControls(), 0);
    QCOMPARE(current().Entries[3000], 4061);
    QVERIFY(memcmp(&current(), &base(), sizeof(LutImage)) == 0);
    m_view->StoreBrightness(151);
    QCOMPARE(m_view->BuildFromControls(), -102);
}

void tst_Plotter::handlesAnyEntry()
{
    const int hostile[] = {INT_MIN, INT_MAX, -1, 4096};
    for (int i = 0; i < orlune::kLutEntries; ++i)
        current().Entries[i] = hostile[(i / 16) % 4];
    m_view->RefreshCurve();
    QCOMPARE(shot().size(), QSize(260, 260));
}

void tst_Plotter::picture()
{
    base().Entries[4080] = 0; // the end mark stands in the corner, away from the lines looked at
    current() = base();
    for (int i = 0; i < orlune::kLutEntries; ++i)
        current().Entries[i] = 0;
    m_view->RefreshCurve();
    const QImage image = shot();
    const QRgb grid = qRgb(230, 230, 230);
    for (const int at : {0, 64, 129, 194, 259}) {
        QCOMPARE(image.pixel(at, 20), grid);
        QCOMPARE(image.pixel(20, 259 - at), grid);
    }
    QCOMPARE(image.pixel(100, 159), grid);              // the diagonal
    QCOMPARE(image.pixel(257, 4), qRgb(255, 255, 255)); // ends at 255
    QCOMPARE(image.pixel(100, 257), qRgb(0, 0, 0));     // the curve over the grid
    QCOMPARE(image.pixel(2, 257), qRgb(255, 255, 255)); // an end mark over the curve
    QCOMPARE(image.pixel(0, 257), qRgb(0, 0, 0));       // and its frame
}

void tst_Plotter::uninit()
{
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(m_view->Uninit(), 0);
        QVERIFY(!m_view->GetLut() && !m_view->GetBaseLut() && !published());
    }
    QCOMPARE(m_view->Init(), 0);
    QVERIFY(published(current()));
}

QTEST_MAIN(tst_Plotter)
#include "tst_Plotter.moc"
