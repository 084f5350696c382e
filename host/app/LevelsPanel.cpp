#include "host/app/LevelsPanel.h"

#include <QVBoxLayout>

namespace host {

LevelsPanel::LevelsPanel(QWidget* parent)
    : QWidget(parent), m_before(new HistogramView(this)), m_after(new HistogramView(this)),
      m_loss(new QLabel(this))
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
    m_before->setVisible(frame.mapped);
    m_before->setHistogram(frame.codesBefore, tr("before"));
    m_after->setHistogram(frame.codesAfter, frame.mapped ? tr("after") : tr("as the camera sends it"));
    m_loss->setText(
        mappingText(frame) + '\n' +
        tr("Codes used: %1 of %2").arg(frame.codesAfter.usedCodes()).arg(frame.codesAfter.counts.size()));
}

QString LevelsPanel::mappingText(const ShownFrame& frame)
{
    if (!frame.mappingCode)
        return tr("No plug-in is at work.");
    if (*frame.mappingCode != 0)
        return tr("The plug-in refuses these frames (%1).").arg(*frame.mappingCode);
    if (!frame.mapped)
        return tr("The plug-in leaves the frames alone: the camera has a LUT of its own.");
    return tr("Codes clipped: %1 %\nCodes lost: %2 %")
        .arg(100 * frame.loss.clipped, 0, 'f', 1)
        .arg(100 * frame.loss.lost, 0, 'f', 1);
}

} // namespace host
