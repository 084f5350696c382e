// A histogram as a picture, codes from left to right, counts by their square roots so
// that few pixels show beside many.
#ifndef ORLUNE_HOST_APP_HISTOGRAMVIEW_H
#define ORLUNE_HOST_APP_HISTOGRAMVIEW_H

#include <QString>
#include <QWidget>

#include "host/app/Histogram.h"

namespace host {

class HistogramView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    void setHistogram(const Histogram& histogram, const QString& title);

    QSize sizeHint() const override { return {256, 110}; }
    QSize minimumSizeHint() const override { return {160, 60}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_title;
    Histogram m_histogram;
};

} // namespace host

#endif
