#include "lut/StandardCatalogue.h"

#include <QDir>
#include <QFileInfo>

namespace orlune {

QVector<StandardCurve> ScanStandardCatalogue(const QString& directory, const QString& suffix)
{
    QDir dir(directory);
    dir.setFilter(QDir::Files | QDir::Hidden);
    QVector<StandardCurve> curves;
    for (const QFileInfo& file : dir.entryInfoList()) {
        if (file.isFile() && file.completeSuffix() == suffix)
            curves.append({file.completeBaseName(), file.canonicalFilePath()});
    }
    return curves;
}

} // namespace orlune
