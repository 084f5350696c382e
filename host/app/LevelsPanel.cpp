#include "host/app/LevelsPanel.h"

#include <QVBoxLayout>

namespace host {

LevelsPanel::LevelsPanel(QWidget* parent)
    : QWidget(parent), m_before(new HistogramView(tr("before"), this)),
      m_after(new HistogramView(tr("after"), this)), m_loss(new QLabel(this))
{
    m_loss->setWordWrap(true);
    m_loss->setToolTip(
        tr("Of the codes in the frame before the mapping: those mapped onto the lowest or the highest "
           "code, and those that can no longer be told apart."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_before, 1);
    layout->addWidget(m_after, 1);
    layout->addWidget(m_loss);
}

void LevelsPanel::setFrame(const ShownFrame& frame)
{
    m_before->setVisible(frame.mapped); // the same as after
    m_before->setHistogram(frame.codesBefore);
    m_after->setHistogram(frame.codesAfter);
    const auto percent = [](double share) { return QString::number(100 * share, 'f', 1); };
    m_loss->setText(
        frame.mapped
            ? tr("Codes clipped: %1 %\nCodes lost: %2 %\nCodes used: %3 of %4")
                  .arg(percent(frame.loss.clipped), percent(frame.loss.lost))
                  .arg(frame.codesAfter.usedCodes())
                  .arg(frame.codesAfter.counts.size())
            : tr("The plug-in leaves the frames alone: the camera has a LUT of its own.\nCodes used: "
                 "%1 of %2")
                  .arg(frame.codesAfter.usedCodes())
                  .arg(frame.codesAfter.counts.size()));
}

} // namespace host
