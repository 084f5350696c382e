#include <QtTest>

#include "editor/Plotter.h"

using orlune::LutImage;

class tst_Plotter : public QObject
{
    Q_OBJECT

    LutImage& current() const { return *m_view->GetLut(); }
    LutImage& base() const { return *m_view->GetBaseLut(); }
    bool isBase() const { return memcmp(&current(), &base(), sizeof(LutImage)) == 0; }
    const std::int32_t* published() const { return m_view->PublishedLut().Acquire().entries(); }
    bool isPublished() const
    {
        const auto snapshot = m_view->PublishedLut().Acquire();
        return snapshot.entries() &&
               memcmp(snapshot.entries(), current().Entries, sizeof current().Entries) == 0;
    }
    QImage shot() const { return m_view->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    std::unique_ptr<Plotter> m_view;

private slots:
    void init()
    {
        m_view = std::make_unique<Plotter>(nullptr);
        m_view->setPalette(QPalette(Qt::white));
        m_view->resize(260, 260);
        QCOMPARE(m_view->Init(), 0);
    }

    void start()
    {
        LutImage identity;
        orlune::MakeIdentity(identity);
        QVERIFY(isBase() && memcmp(&current(), &identity, sizeof identity) == 0);
        QCOMPARE((QVector<int>{m_view->GetGamma(), m_view->GetBrightness(), m_view->GetContrast(),
                               m_view->GetRangeMin(), m_view->GetRangeMax()}),
                 (QVector<int>{100, 0, 0, 0, 4095}));
        const QVector<QPoint>& line = m_view->Polyline();
        QCOMPARE(line.size(), 256);
        QCOMPARE(line.first(), QPoint(2, 257));
        QCOMPARE(line.last(), QPoint(257, 2));
        for (const QPoint& point : line)
            QCOMPARE(point.x() + point.y(), 259);
        QCOMPARE(m_view->Handles().size(), 2);
        QCOMPARE(*m_view->Handles().first(), line.first());
        QCOMPARE(*m_view->Handles().last(), line.last());
    }

    void mapping()
    {
        const struct
        {
            QPoint entry, screen, back;
        } rows[] = {{{0, 0}, {2, 257}, {0, 0}},        {{0, 100}, {2, 251}, {0, 96}},
                    {{0, 5000}, {2, -55}, {0, 4080}},  {{4095, 4095}, {257, 2}, {4080, 4080}},
                    {{0, -1}, {2, 258}, {0, 0}},       {{-1, 0}, {1, 257}, {0, 0}},
                    {{5000, 0}, {314, 257}, {4080, 0}}};
        for (const auto& [entry, screen, back] : rows) {
            QCOMPARE(m_view->LutToScreen(entry.x(), entry.y()), screen);
            QCOMPARE(m_view->ScreenToLut(screen), back);
        }
    }

    void adjustsFromBase()
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
        QVERIFY(isBase());
        m_view->StoreGamma(200); // waits for the next one that is set
        QCOMPARE(current().Entries[2048], 2048);
        m_view->SetBrightness(0);
        QCOMPARE(current().Entries[2048], 2906);
        m_view->SetRangeMin(100);
        m_view->SetRangeMax(1000);
        QCOMPARE(current().Entries[99], 99);
        QCOMPARE(current().Entries[500], 700);
        QCOMPARE(current().Entries[1001], 1001);
    }

    void failedRebuild()
    {
        const std::tuple<int, int, int> rows[] = {{500, 0, 0},    {INT_MIN, 0, 0}, // a gamma beyond its limit
                                                  {200, 4033, 0}, {200, INT_MIN, 0},  // no range
                                                  {200, 0, 5000}, {200, 0, INT_MIN}}; // no entry
        for (const auto& [gamma, rangeMin, entry] : rows) {
            init();
            m_view->SetBrightness(10);
            const QImage before = shot();
            base().Entries[2048] = entry;
            m_view->StoreRangeMin(rangeMin);
            m_view->SetGamma(gamma);
            QCOMPARE(m_view->GetGamma(), gamma);
            QVERIFY(isBase() && isPublished());
            QVERIFY(shot() == before);
        }
    }

    void publishes()
    {
        current().Entries[5] = 1; // in the middle of a change
        QCOMPARE(published()[5], 5);
        m_view->RefreshCurve();
        QVERIFY(isPublished());
        m_view->SetContrast(20);
        QVERIFY(isPublished());
        m_view->ResetIdentity();
        QCOMPARE(published()[5], 5);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_view->Uninit(), 0);
            QVERIFY(!m_view->GetLut() && !m_view->GetBaseLut() && !published());
        }
        QCOMPARE(m_view->Init(), 0);
        QVERIFY(isPublished());
    }

    void buildFromControls()
    {
        base().Entries[0] = 77;
        m_view->StoreRangeMin(4000); // plays no part
        m_view->StoreBrightness(150);
        QCOMPARE(m_view->BuildFromControls(), 0);
        QCOMPARE(current().Entries[3000], 4061);
        QVERIFY(isBase());
        m_view->StoreBrightness(151);
        QCOMPARE(m_view->BuildFromControls(), -102);
    }

    void handlesAnyEntry()
    {
        const int hostile[] = {INT_MIN, INT_MAX, -1, 4096};
        for (int i = 0; i < orlune::kLutEntries; ++i)
            current().Entries[i] = hostile[(i / 16) % 4];
        m_view->RefreshCurve();
        QCOMPARE(shot().size(), QSize(260, 260));
    }

    void picture()
    {
        base().Entries[4080] = 0; // the end mark stands in the corner, away from the lines looked at
        current() = base();
        std::fill(std::begin(current().Entries), std::end(current().Entries), 0);
        m_view->RefreshCurve();
        const QImage image = shot();
        const QRgb grid = qRgb(230, 230, 230), white = qRgb(255, 255, 255), black = qRgb(0, 0, 0);
        for (const int at : {0, 64, 129, 194, 259}) {
            QCOMPARE(image.pixel(at, 20), grid);
            QCOMPARE(image.pixel(20, 259 - at), grid);
        }
        QCOMPARE(image.pixel(100, 159), grid);  // the diagonal
        QCOMPARE(image.pixel(257, 4), white);   // ends at 255
        QCOMPARE(image.pixel(100, 257), black); // the curve over the grid
        QCOMPARE(image.pixel(2, 257), white);   // an end mark over the curve
        QCOMPARE(image.pixel(0, 257), black);   // and its frame
    }
};

QTEST_MAIN(tst_Plotter)
#include "tst_Plotter.moc"
