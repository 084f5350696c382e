// The curve view, and the model behind the editor: it owns the two table images, the five settings and the
// curve engine. Whoever brings a new table fills the images through GetLut and GetBaseLut and calls
// RefreshCurve; a setting is changed through Set... (stores, rebuilds the current image from the base image,
// redraws, publishes) or Store... (stores only).
//
// The view shows and reacts to no input. Limits of the settings are the dialog's business: values outside
// them make the rebuild fail, and the current image is then a plain copy of the base image.
//
// Thread: the GUI thread, but for PublishedLut.
#ifndef ORLUNE_EDITOR_PLOTTER_H
#define ORLUNE_EDITOR_PLOTTER_H

#include <QPixmap>
#include <QVector>
#include <QWidget>

#include "lut/LutImage.h"
#include "lut/PublishedTable.h"

class CBezierCurve;

struct GridAxis
{
    double minValue;
    double maxValue;
    qint32 divisions;
};

class Plotter : public QWidget
{
public:
    explicit Plotter(QWidget* parent);
    ~Plotter() override; // does what Uninit does

    // Allocates images and engine, and starts with the identity table and untouched settings. The view's size
    // at this moment is the one that the curve is drawn for. Gives 0.
    int Init();
    // Releases what Init made; a second call does nothing. Gives 0.
    int Uninit();

    // Both images become the identity, without a trailer. The settings stay. Gives 0.
    int ResetIdentity();
    // Draws and publishes what the current image holds now.
    void RefreshCurve();
    // Both images become the table of the tone controls alone, without base table and range. Gives 0 or the
    // curve engine's code, and then the current image is zero and nothing is redrawn.
    int BuildFromControls();

    // The images, null after Uninit. Owned by the view.
    orlune::LutImage* GetLut() const { return m_pCurrentImage; }
    orlune::LutImage* GetBaseLut() const { return m_pBaseImage; }

    // The newest complete table for the frame path: never one in the middle of a change. Any thread, between
    // Init and Uninit.
    const orlune::PublishedTable& PublishedLut() const { return m_objPublished; }

    void SetGamma(qint32 nValue);
    void SetBrightness(qint32 nValue);
    void SetContrast(qint32 nValue);
    void SetRangeMin(qint32 nValue);
    void SetRangeMax(qint32 nValue);

    void StoreGamma(qint32 nValue) { m_nGamma = nValue; }
    void StoreBrightness(qint32 nValue) { m_nBrightness = nValue; }
    void StoreContrast(qint32 nValue) { m_nContrast = nValue; }
    void StoreRangeMin(qint32 nValue) { m_nRangeMin = nValue; }
    void StoreRangeMax(qint32 nValue) { m_nRangeMax = nValue; }

    qint32 GetGamma() const { return m_nGamma; } // hundredths
    qint32 GetBrightness() const { return m_nBrightness; }
    qint32 GetContrast() const { return m_nContrast; }
    qint32 GetRangeMin() const { return m_nRangeMin; }
    qint32 GetRangeMax() const { return m_nRangeMax; }

    // A table position and value as a point of the view, 16 to a pixel, and back. The first limits nothing;
    // the second takes a point outside the plot as the nearest edge.
    QPoint LutToScreen(qint32 nPosition, qint32 nValue) const;
    QPoint ScreenToLut(const QPoint& point) const;

    // The curve in view coordinates, and the two end marks; for whoever looks at the picture as numbers.
    const QVector<QPoint>& Polyline() const { return m_vecPolyline; }
    const QVector<QPoint*>& Handles() const { return m_vecHandles; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Current image from base image and settings. Gives 0 or the curve engine's code.
    int ApplyAdjustments();
    void ResetHandles();
    void RebuildPolyline();
    void RefreshPixmap();
    void DrawGrid(QPainter& painter) const;
    void DrawCurve(QPainter& painter) const;
    void DrawHandles(QPainter& painter) const;

    GridAxis m_stGridX{};
    GridAxis m_stGridY{};
    QRect* m_pPlotRect = nullptr;  // where table values are mapped to; owned
    QVector<QPoint*> m_vecHandles; // start and end of the curve; owned
    QPixmap m_objPixmap;
    CBezierCurve* m_pBezierCurve = nullptr; // owned
    QVector<QPoint> m_vecPolyline;
    qint32 m_nBrightness = 0;
    qint32 m_nContrast = 0;
    qint32 m_nGamma = 0;
    qint32 m_nRangeMin = 0;
    qint32 m_nRangeMax = 0;
    orlune::LutImage* m_pCurrentImage = nullptr; // owned
    orlune::LutImage* m_pBaseImage = nullptr;    // owned
    orlune::PublishedTable m_objPublished;
};

#endif
