#pragma once

#include "models/ModelStore.h"

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

/// For --code: why Y values of `source` cannot carry a zone number in front,
/// or an empty text when they can. A system whose false easting already
/// holds the zone (38,500,000 m) takes Y as written, zone and all.
QString codeNumberRefusal(const KivGeometry::SpatialReference& source);

/// The central meridian of a projected system, NaN for any other.
double centralMeridian(const KivGeometry::SpatialReference& system);

/// Why a zone number in front of Y does not belong to a system with this
/// central meridian (neither its 3-degree nor its 6-degree zone), or an empty
/// text when it does.
QString zoneMismatch(int zone, double centralMeridian);

/// Worker threads for --threads: the option's value (1 or more), or when it
/// is not given the machine's hardware threads (1 when unknown). 0 with a
/// message in `error` for anything but a positive number.
int threadCount(const QCommandLineParser& parser, const QString& optionName, QString* error);

/// Lines a worker takes at once: COORDSTRANSFORM_CHUNK_LINES when it holds
/// a positive number (tests use tiny chunks to cross chunk borders), else
/// `defaultLines`.
int chunkLines(int defaultLines);

} // namespace CliSupport
