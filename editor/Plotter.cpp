#include "editor/Plotter.h"

#include <QPainter>
#include <QPen>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "curve/BezierCurve.h"

using orlune::LutImage;

namespace {

constexpr GridAxis kGridAxis = {0.0, 4096.0, 4};
constexpr int kMargin = 2;     // pixels around the plot
constexpr int kPixelShift = 4; // table positions and values to pixels
constexpr int kPointStep = 1 << kPixelShift;
constexpr int kDiagonalPoints = 256;
constexpr int kHandleSize = 4;
constexpr int kTableBits = 12;
const QColor kGridColour(230, 230, 230);

} // namespace

Plotter::Plotter(QWidget* parent) : QWidget(parent) {}

Plotter::~Plotter()
{
    Uninit();
}

int Plotter::Init()
{
    Uninit();
    m_stGridX = kGridAxis;
    m_stGridY = kGridAxis;
    m_pBezierCurve = new CBezierCurve;
    m_pCurrentImage = new LutImage{};
    m_pBaseImage = new LutImage{};
    m_pPlotRect = new QRect(kMargin, kMargin, width() - 2 * kMargin, height() - 2 * kMargin);

    const orlune::LutSettings untouched;
    StoreBrightness(untouched.Brightness);
    StoreContrast(untouched.Contrast);
    StoreGamma(untouched.Gamma);
    StoreRangeMax(untouched.RangeMax);
    StoreRangeMin(untouched.RangeMin);

    ResetHandles();
    return ResetIdentity();
}

int Plotter::Uninit()
{
    m_objPublished.Clear();
    delete m_pBezierCurve;
    m_pBezierCurve = nullptr;
    delete m_pCurrentImage;
    m_pCurrentImage = nullptr;
    delete m_pBaseImage;
    m_pBaseImage = nullptr;
    delete m_pPlotRect;
    m_pPlotRect = nullptr;
    qDeleteAll(m_vecHandles);
    m_vecHandles.clear();
    return 0;
}

void Plotter::ResetHandles()
{
    qDeleteAll(m_vecHandles);
    m_vecHandles.clear();
    m_vecHandles.append(new QPoint(kMargin, height() - kMargin));
    m_vecHandles.append(new QPoint(width() - kMargin, kMargin));
}

int Plotter::ResetIdentity()
{
    orlune::MakeIdentity(*m_pCurrentImage);
    *m_pBaseImage = *m_pCurrentImage;
    RefreshCurve();
    return 0;
}

void Plotter::RefreshCurve()
{
    m_objPublished.Publish(m_pCurrentImage->Entries);
    RebuildPolyline();
    RefreshPixmap();
}

int Plotter::ApplyAdjustments()
{
    *m_pCurrentImage = *m_pBaseImage;
    const int code = m_pBezierCurve->AdjustLutRange(m_nBrightness, m_nContrast, m_nGamma / 100.0, m_nRangeMin,
                                                    m_nRangeMax, m_pCurrentImage->Entries);
    if (code != 0) {
        // The editor goes on with the base table; the picture stays as it was.
        m_objPublished.Publish(m_pCurrentImage->Entries);
        return code;
    }
    RefreshCurve();
    return 0;
}

int Plotter::BuildFromControls()
{
    *m_pCurrentImage = LutImage{};
    const int code = m_pBezierCurve->CreateCompositeLut(m_nBrightness, m_nContrast, m_nGamma / 100.0,
                                                        kTableBits, m_pCurrentImage->Entries);
    if (code != 0)
        return code;
    *m_pBaseImage = *m_pCurrentImage;
    RefreshCurve();
    return 0;
}

void Plotter::SetGamma(qint32 nValue)
{
    StoreGamma(nValue);
    ApplyAdjustments();
}

void Plotter::SetBrightness(qint32 nValue)
{
    StoreBrightness(nValue);
    ApplyAdjustments();
}

void Plotter::SetContrast(qint32 nValue)
{
    StoreContrast(nValue);
    ApplyAdjustments();
}

void Plotter::SetRangeMin(qint32 nValue)
{
    StoreRangeMin(nValue);
    ApplyAdjustments();
}

void Plotter::SetRangeMax(qint32 nValue)
{
    StoreRangeMax(nValue);
    ApplyAdjustments();
}

QPoint Plotter::LutToScreen(qint32 nPosition, qint32 nValue) const
{
    return QPoint(m_pPlotRect->left() + (nPosition >> kPixelShift),
                  m_pPlotRect->bottom() - (nValue >> kPixelShift));
}

QPoint Plotter::ScreenToLut(const QPoint& point) const
{
    const int column = qBound(0, point.x() - m_pPlotRect->left(), m_pPlotRect->width() - 1);
    const int row = qBound(0, m_pPlotRect->bottom() - point.y(), m_pPlotRect->height() - 1);
    return QPoint(column << kPixelShift, row << kPixelShift);
}

void Plotter::RebuildPolyline()
{
    m_vecPolyline.clear();
    for (int i = 0; i < orlune::kLutEntries; i += kPointStep)
        m_vecPolyline.append(LutToScreen(i, m_pCurrentImage->Entries[i]));
    *m_vecHandles.first() = m_vecPolyline.first();
    *m_vecHandles.last() = m_vecPolyline.last();
}

void Plotter::RefreshPixmap()
{
    const qreal ratio = devicePixelRatioF();
    m_objPixmap = QPixmap(size() * ratio);
    m_objPixmap.setDevicePixelRatio(ratio);
    if (m_objPixmap.isNull())
        return;
    QPainter painter(&m_objPixmap);
    painter.fillRect(rect(), palette().brush(backgroundRole()));
    DrawGrid(painter);
    DrawCurve(painter);
    DrawHandles(painter);
    update();
}

void Plotter::DrawGrid(QPainter& painter) const
{
    const QRect area = rect();
    painter.setPen(QPen(kGridColour));
    for (int i = 0; i <= m_stGridX.divisions; ++i) {
        const int x = area.left() + i * (area.width() - 1) / m_stGridX.divisions;
        painter.drawLine(x, area.top(), x, area.bottom());
    }
    for (int j = 0; j <= m_stGridY.divisions; ++j) {
        const int y = area.bottom() - j * (area.height() - 1) / m_stGridY.divisions;
        painter.drawLine(area.left(), y, area.right(), y);
    }
    QPolygonF diagonal;
    for (int i = 0; i < kDiagonalPoints; ++i)
        diagonal.append(QPointF(i, area.bottom() - i));
    painter.drawPolyline(diagonal);
    painter.drawRect(area);
}

void Plotter::DrawCurve(QPainter& painter) const
{
    painter.setPen(QPen(Qt::black));
    painter.drawPolyline(QPolygon(m_vecPolyline));
}

void Plotter::DrawHandles(QPainter& painter) const
{
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.setPen(QPen(Qt::black));
    for (const QPoint* handle : m_vecHandles)
        painter.drawRect(
            QRect(handle->x() - kHandleSize / 2, handle->y() - kHandleSize / 2, kHandleSize, kHandleSize));
}

void Plotter::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_objPixmap);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.backgroundColor = palette().dark().color();
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
