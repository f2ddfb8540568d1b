#include "reprojection/ModelChoice.h"

#include "models/ModelStore.h"
#include "reprojection/stCoordsTransformInfo.h"

void ModelChoice::Read(const QString& storePath)
{
    m_models7 = ModelStore::List(ModelStore::Params7, storePath);
    m_models4 = ModelStore::List(ModelStore::Params4, storePath);
}

QStringList ModelChoice::Names() const
{
    QStringList names;
    for (const TransformModel& model : fourParameters ? m_models4 : m_models7)
        names << model.TransName;
    return names;
}

void ModelChoice::Choose(int index)
{
    if (index < 0)
        return;
    if (fourParameters)
        model4 = m_models4.value(index);
    else
        model7 = m_models7.value(index);
}

void ModelChoice::ClearChoice()
{
    model7 = TransformModel();
    model4 = TransformModel();
}

void ModelChoice::WriteTo(stCoordsTransformInfo& info) const
{
    info.model7 = model7;
    info.bUse7Params = !fourParameters;
    info.model4 = model4;
}
