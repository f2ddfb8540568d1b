#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// Helpers shared by the sub-commands.
namespace CliSupport {

/// A coordinate system from a command-line argument: a path to a .prj or
/// .wkt file (any existing file, or any argument ending in .prj or .wkt), or
/// any text `SpatialReferenceFactory::CreateSpatialReference` accepts
/// ("EPSG:2435", WKT, a PROJ string). Null with a message naming the
/// argument in `error` when it is neither.
KivUtility::_ptr_t<KivGeometry::SpatialReference> loadSpatialReference(const QString& argument,
                                                                        QString* error);

/// Parses `args` (without program or command name) with `parser`; false with
/// the parser's message in `error` on an unknown option or a missing value.
bool parse(QCommandLineParser& parser, const QStringList& args, QString* error);

/// Comma-separated numbers ("1.5,-2,3e-6"); false unless each piece is a
/// finite number and there are exactly `count` of them (any count for -1).
bool parseNumberList(const QString& text, int count, QList<double>* values);

} // namespace CliSupport
