// The library's one entry point, found by KivAlgo::AlgoFactory by name.

#include "BatchProjectTransAlgo.h"
#include "ImgProjectTransAlgo.h"
#include "ShapeDataCoordTransformAlgo.h"

extern "C" __attribute__((visibility("default"))) KivAlgo::Algorithm* KivCreateAlgorithm(const char* name)
{
    try {
        const QString algorithm = QString::fromUtf8(name ? name : "");
        if (algorithm == QLatin1String("ImgProjectTransAlgo"))
            return new ImgProjectTransAlgo;
        if (algorithm == QLatin1String("ShapeDataCoordTransformAlgo"))
            return new ShapeDataCoordTransformAlgo;
        if (algorithm == QLatin1String("BatchProjectTransAlgo"))
            return new BatchProjectTransAlgo;
    } catch (...) {
    }
    return nullptr;
}
