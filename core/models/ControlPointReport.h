#pragma once

#include "models/ControlPointQuality.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>

class QPainter;
class QSizeF;

/// The quality of a control-point fit handed over as text, as JSON
/// (docs/control-point-report.md) and as a PDF page with a plot of the
/// residual vectors. Texts are in the application's language.
class ControlPointReport
{
    Q_DECLARE_TR_FUNCTIONS(ControlPointReport)
public:
    ControlPointReport(const ControlPointQuality& quality, const QString& source, const QString& target);

    const ControlPointQuality& Quality() const { return m_quality; }
    QString Text() const;
    /// `resultText` is the result block as the dialogs show it.
    QJsonObject Json(const QString& resultText) const;
    /// One line per point named by data snooping.
    QStringList Verdicts() const;

    /// Writes the PDF through a temporary file renamed over `path`; false with
    /// a message naming the file in `error`.
    bool WritePdf(const QString& path, QString* error) const;
    /// Draws the report on pages of `page` size (logical units, 1 = 1/72 in);
    /// `newPage` starts the next page and returns false when there is none.
    void Paint(QPainter& painter, const QSizeF& page, const std::function<bool()>& newPage) const;

private:
    QStringList ParameterNames() const;
    QString ModelName() const;

    ControlPointQuality m_quality;
    QString m_source, m_target;
};
