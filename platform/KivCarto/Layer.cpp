#include "KivCarto/Layer.h"

namespace KivCarto {

Layer::Layer(const QString& name, const QString& sourcePath)
    : m_name(name), m_sourcePath(sourcePath)
{
}

Layer::~Layer() = default;

} // namespace KivCarto
