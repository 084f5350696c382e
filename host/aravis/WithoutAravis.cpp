// In place of the rest of this room where Aravis is not installed.
#include "host/aravis/AravisCameras.h"

namespace host {

static QString noAravis()
{
    return Camera::tr("This build of the viewer knows no real cameras: Aravis was missing when it was made.");
}

QVector<FoundCamera> listAravisCameras(QString* problem)
{
    *problem = noAravis();
    return {};
}

std::unique_ptr<Camera> openAravisCamera(const AravisRequest&, QString* error)
{
    *error = noAravis();
    return nullptr;
}

} // namespace host
