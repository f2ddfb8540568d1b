#pragma once

#include <QString>
#include <QStringList>

struct stCoordsTransformInfo;

/// The raster options of the command line and batch work beyond the dialogs:
/// resampling, target pixel size and GDAL creation options. They travel in
/// the record's `strExtra1`, which the dialogs leave empty, so a dialog's
/// job always runs with the defaults (nearest neighbour, the grid GDAL
/// suggests, the built-in creation options).
///
/// In the record: "key=value" pairs joined by ";", values percent-encoded,
/// e.g. "resampling=cubic;resolution=10,10;co=COMPRESS=DEFLATE;co=TILED=YES".
class RasterOptions
{
public:
    /// near, bilinear, cubic, cubicspline, lanczos, average, mode.
    static QStringList ResamplingNames();

    /// Each setter returns empty when the text is good, else the reason.
    QString SetResampling(const QString& name);
    /// "XRES,YRES", both positive, in the target's units.
    QString SetResolution(const QString& text);
    /// "KEY=VALUE"; a later value of a key replaces an earlier one.
    QString AddCreationOption(const QString& text);

    QString Resampling() const { return m_resampling; }
    /// The GDALResampleAlg of the resampling.
    int GdalResampling() const;
    /// 0 when the grid GDAL suggests keeps its own pixel size.
    double XResolution() const { return m_xResolution; }
    double YResolution() const { return m_yResolution; }
    QStringList CreationOptions() const { return m_creationOptions; }
    /// `defaults` with the given options replacing those of the same key.
    QStringList CreationOptions(const QStringList& defaults) const;
    /// The record's raster format was named by the user (`--format`): it
    /// wins over an output's suffix, and outputs named after their input
    /// take the format's suffix. Dialogs never name one.
    void SetFormatNamed(bool named) { m_formatNamed = named; }
    bool FormatNamed() const { return m_formatNamed; }
    /// GDAL's objection to the creation options for writing `format`
    /// (a GDAL driver name), or empty.
    QString CreationProblem(const QString& format) const;

    QString ToText() const;
    /// Empty text gives the defaults; `*error` is set for text not understood.
    static RasterOptions FromText(const QString& text, QString* error);

    void WriteTo(stCoordsTransformInfo& info) const;
    static RasterOptions FromRecord(const stCoordsTransformInfo& info, QString* error);

private:
    QString m_resampling = QStringLiteral("near");
    double m_xResolution = 0.0;
    double m_yResolution = 0.0;
    QStringList m_creationOptions;
    bool m_formatNamed = false;
};
