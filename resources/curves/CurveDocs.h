// The page about the standard curves and their plots, made from the rows of StandardCurves.h.
#ifndef ORLUNE_CURVES_CURVEDOCS_H
#define ORLUNE_CURVES_CURVEDOCS_H

#include <QByteArray>
#include <QMap>
#include <QString>

namespace orlune {

// Contents by file name, relative to docs/. The same on every run.
QMap<QString, QByteArray> CurveDocs();

} // namespace orlune

#endif
