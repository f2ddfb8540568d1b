#pragma once

#include "KivUtility/CRef.h"

#include <QString>

namespace KivCarto {

/// A map layer: a named view of one dataset file. A layer over a dataset in
/// GDAL's memory (a "/vsimem/" path, such as a plug-in's computed layer) owns
/// it: the dataset is deleted with the last reference to the layer.
class Layer : public KivUtility::CRef
{
public:
    Layer(const QString& name, const QString& sourcePath);
    ~Layer() override;

    QString GetName() const { return m_name; }
    void SetName(const QString& name) { m_name = name; }
    /// The path of the dataset the layer shows.
    QString GetSourcePath() const { return m_sourcePath; }
    bool IsVisible() const { return m_visible; }
    void SetVisible(bool visible) { m_visible = visible; }

private:
    QString m_name;
    QString m_sourcePath;
    bool m_visible = true;
};

} // namespace KivCarto
