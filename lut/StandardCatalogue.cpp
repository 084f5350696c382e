#include "lut/StandardCatalogue.h"

#include <QDir>
#include <QFileInfo>

#include "lut/PlainString.h"

namespace orlune {

QVector<StandardCurve> ScanStandardCatalogue(const QString& directory, const QString& suffix)
{
    const FileNamesAsBefore encoding;
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
