#pragma once

#include "KivCarto/Layer.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

namespace KivCarto {

/// Makes the layers that show dataset files on a map.
class LayerFactory
{
public:
    /// A visible layer named after the file for a raster or a vector dataset
    /// (for a container, the layer shows the whole file); null when the path
    /// cannot be opened as a dataset.
    static KivUtility::_ptr_t<Layer> CreateDefaultLayer(const QString& path);
};

} // namespace KivCarto
