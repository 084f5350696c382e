// The histograms before and after the mapping, and what the mapping took from the frame.
#ifndef ORLUNE_HOST_APP_LEVELSPANEL_H
#define ORLUNE_HOST_APP_LEVELSPANEL_H

#include <QLabel>
#include <QWidget>

#include "host/app/FrameMailbox.h"
#include "host/app/HistogramView.h"

namespace host {

class LevelsPanel : public QWidget
{
    Q_OBJECT

public:
    explicit LevelsPanel(QWidget* parent = nullptr);

    void setFrame(const ShownFrame& frame);

private:
    static QString mappingText(const ShownFrame& frame);

    HistogramView* m_before;
    HistogramView* m_after;
    QLabel* m_loss;
};

} // namespace host

#endif
