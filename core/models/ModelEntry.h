#pragma once

#include "models/TransformModel.h"

#include "KivGeometry/SpatialReference.h"

#include <QString>
#include <QStringList>

/// The checks and records of a model on its way into the store, shared by the
/// save and entry dialogs and the command line. Messages are the untranslated
/// texts the dialogs show (translated in the context of each dialog).
class ModelEntry
{
public:
    static constexpr const char* kNoSource = "Please input source spatialreference name! ";
    static constexpr const char* kNoTarget = "Please input target spatialreference name! ";
    static constexpr const char* kNoName = "Please input transform model name! ";
    static constexpr const char* kNoParameter = "Please input valid parameter ! ";
    static constexpr const char* kNameTaken = "The TransModelName has been taken,Please input another one! ";
    static constexpr const char* kSameSpheroid = "The Source Spheroid must be different with target Spheroid!";
    static constexpr const char* kNotProjected = "Please select a  Projected Coordinate System! ";

    /// The first of source, target and model name that is empty, as its
    /// message; null when all are given.
    static const char* MissingName(const QString& source, const QString& target, const QString& name);
    /// kNoParameter when a parameter text is empty; null otherwise.
    static const char* MissingParameter(const QStringList& texts);
    /// A hand-entered model: its target name is its own name (the chosen
    /// target is not kept), and parameter text that is not a number stores 0.
    static TransformModel Entered(const QString& source, const QString& name, const QStringList& texts);
    /// Source + "-to-" + target.
    static QString ProposedName(const QString& source, const QString& target);
    /// The name a seven-parameter model keeps of one side: a projected
    /// system goes by its geographic system, any other by its own name.
    static QString SevenParameterSideName(const KivGeometry::SpatialReference* reference);
};
