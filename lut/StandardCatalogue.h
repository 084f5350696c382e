// The catalogue of standard curves: the table images that are delivered as files in one directory. A curve's
// name is its file's name without the suffix.
//
// A name longer than 16 characters or with characters outside Latin-1 is listed and can be used like any
// other. It only doesn't fit the trailer: see StampTrailer.
#ifndef ORLUNE_LUT_STANDARDCATALOGUE_H
#define ORLUNE_LUT_STANDARDCATALOGUE_H

#include <QLatin1String>
#include <QString>
#include <QVector>

namespace orlune {

// Relative to the process's working directory.
inline const QLatin1String kStandardDirectory{"./resource/lqplugins/LookUpTable/StandardLut"};

// The identity curve, which every catalogue must hold.
inline const QLatin1String kDefaultStandardName{"lut4_11"};

struct StandardCurve
{
    QString Name;
    QString Path; // canonical
};

// The regular files of the directory, hidden ones and links to files included, whose complete suffix
// (everything behind the first dot of the name) equals suffix to the letter, sorted by name without regard to
// case. Reads no file's contents. A directory that can't be read, or isn't there, gives none.
QVector<StandardCurve> ScanStandardCatalogue(const QString& directory, const QString& suffix);

} // namespace orlune

#endif
