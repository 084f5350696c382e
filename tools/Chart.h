// A drawing of lines over one axis, with grid, numbers and legend.
#ifndef ORLUNE_TOOLS_CHART_H
#define ORLUNE_TOOLS_CHART_H

#include <QPen>
#include <QRectF>
#include <QString>
#include <QVector>

class QPainter;

namespace tools {

struct ChartLine
{
    QString name; // in the legend
    QPen pen;
    QVector<double> values; // 2 or more, 0 to 1, evenly over the width
    bool isFilled = false;  // down to the axis
};

struct Chart
{
    QString xLabel;
    QString yLabel;
    int xMaximum; // numbers at the axes go from 0 to these; 0: no numbers
    int yMaximum;
    QVector<ChartLine> lines;
};

// Draws into the area, in letters of that height in pixels. Needs a QGuiApplication.
void drawChart(QPainter& painter, const QRectF& area, int letters, const Chart& chart);

} // namespace tools

#endif
