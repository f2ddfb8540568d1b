#pragma once

#include "spatialref/ConversionSetup.h"

#include <QCommandLineOption>
#include <QString>

class QCommandLineParser;

/// The options by which every converting command (transform, convert,
/// reproject) names its conversion: --from, --to, --params7, --params4,
/// --model and --code, read into one `ConversionSetup` with one set of
/// checks and messages.
class ConversionOptions
{
public:
    /// Adds the options to `parser`.
    explicit ConversionOptions(QCommandLineParser& parser);

    /// After `parser` has parsed: fills `setup`. Without --from the source is
    /// `defaultSource` (reproject: the input's own system); null makes --from
    /// required. A name given to --model is looked up in both lists of the
    /// store, a name in both taking the kind `rule` gives the pair. False
    /// with the message in `error`; `*usage` tells whether the options
    /// themselves were wrong (worth a pointer to --help).
    bool Read(const QCommandLineParser& parser, ConversionSetup::SameBaseRule rule,
              const KivUtility::_ptr_t<KivGeometry::SpatialReference>& defaultSource, ConversionSetup* setup,
              QString* error, bool* usage) const;

    /// Whether a model was given at all.
    bool HasModel(const QCommandLineParser& parser) const;

    /// The help lines of these options.
    static QString Help();

private:
    QCommandLineOption m_from;
    QCommandLineOption m_to;
    QCommandLineOption m_params7;
    QCommandLineOption m_params4;
    QCommandLineOption m_model;
    QCommandLineOption m_code;
};
