// What the dialog's tests can't look at: pixels, and what the window never asks for.
#include <QtTest>

#include "editor/Plotter.h"

using orlune::LutImage;

class tst_Plotter : public QObject
{
    Q_OBJECT

    LutImage& current() const { return *m_view->GetLut(); }
    LutImage& base() const { return *m_view->GetBaseLut(); }
    // The base table is in force.
    bool isBase() const
    {
        const auto published = m_view->PublishedLut().Acquire();
        return memcmp(&current(), &base(), sizeof(LutImage)) == 0 && published.entries() &&
               memcmp(published.entries(), base().Entries, sizeof base().Entries) == 0;
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

    void mapping()
    {
        const struct
        {
            QPoint entry, screen, back;
        } rows[] = {{{0, 100}, {2, 251}, {0, 96}},
                    {{4095, 4095}, {257, 2}, {4080, 4080}},
                    {{-1, -1}, {1, 258}, {0, 0}},
                    {{5000, 5000}, {314, -55}, {4080, 4080}}};
        for (const auto& [entry, screen, back] : rows) {
            QCOMPARE(m_view->LutToScreen(entry.x(), entry.y()), screen);
            QCOMPARE(m_view->ScreenToLut(screen), back);
        }
    }

    void failedRebuild()
    {
        m_view->SetBrightness(10);
        const QImage before = shot();
        m_view->SetGamma(500); // beyond its limit
        QCOMPARE(m_view->GetGamma(), 500);
        QVERIFY(isBase());
        QVERIFY(shot() == before);
    }

    void uninit()
    {
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_view->Uninit(), 0);
            QVERIFY(!m_view->GetLut() && !m_view->GetBaseLut());
            QVERIFY(!m_view->PublishedLut().Acquire().entries());
        }
        QCOMPARE(m_view->Init(), 0);
        QVERIFY(isBase());
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

    void picture()
    {
        const QRgb grid = qRgb(230, 230, 230), white = qRgb(255, 255, 255), black = qRgb(0, 0, 0);
        const QImage start = shot();
        for (int i = 4; i < 252; ++i)
            QCOMPARE(start.pixel(2 + i, 257 - i), black);
        std::fill_n(current().Entries, 4095, 0); // the last entry drawn is 4080
        m_view->RefreshCurve();
        const QImage image = shot();
        for (const int at : {0, 64, 129, 194, 259}) {
            QCOMPARE(image.pixel(at, 20), grid);
            QCOMPARE(image.pixel(20, 259 - at), grid);
        }
        QCOMPARE(image.pixel(100, 159), grid);  // the diagonal
        QCOMPARE(image.pixel(257, 4), white);   // ends at 255
        QCOMPARE(image.pixel(100, 257), black); // the curve over the grid
        for (const int x : {2, 257}) {
            QCOMPARE(image.pixel(x, 257), white);     // an end mark over the curve
            QCOMPARE(image.pixel(x - 2, 257), black); // and its frame
        }
    }
};

QTEST_MAIN(tst_Plotter)
#include "tst_Plotter.moc"
