#include "KivCarto/Layer.h"

#include <cpl_vsi.h>

namespace KivCarto {

Layer::Layer(const QString& name, const QString& sourcePath)
    : m_name(name), m_sourcePath(sourcePath)
{
}

Layer::~Layer()
{
    // Nothing else holds a dataset made in GDAL's memory for the map; an open
    // handle keeps its data until it is closed.
    if (m_sourcePath.startsWith(QLatin1String("/vsimem/")))
        VSIUnlink(m_sourcePath.toUtf8().constData());
}

} // namespace KivCarto
