#pragma once

#include "models/TransformModel.h"

#include <QList>
#include <QString>
#include <QStringList>

struct stCoordsTransformInfo;

/// The stored models a reprojection dialog offers and the one chosen: seven-
/// parameter models between two geographic bases, four-parameter ones within
/// one base. Both dialogs keep the two lists and both choices, since the
/// record carries both models.
class ModelChoice
{
public:
    /// Reads both lists from the store at `storePath`, in file order.
    void Read(const QString& storePath);
    /// The names the combo offers for the current kind.
    QStringList Names() const;
    /// Makes entry `index` of the current kind's list the chosen model.
    void Choose(int index);
    /// Forgets both chosen models.
    void ClearChoice();
    /// Puts both chosen models into the record, and whether the
    /// seven-parameter one applies.
    void WriteTo(stCoordsTransformInfo& info) const;

    /// Four-parameter models (the two systems share a geographic base).
    bool fourParameters = false;
    TransformModel model7;
    TransformModel model4;

private:
    QList<TransformModel> m_models7;
    QList<TransformModel> m_models4;
};
