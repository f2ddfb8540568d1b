#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"
#include "textfiles/CoordsPointStore.h"

#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Ui {
class FileDataProjTransDlg;
}

/// Converts every point of a coordinate text file from a source to a target
/// coordinate system and writes a file of the same layout.
///
/// The file is never held whole: choosing it reads it through once (the
/// whole file must fit the format) keeping only the points the preview
/// shows, and Transform reads it again while converting and writing it.
///
/// The preview table holds one row per point, however long the file (a
/// table row costs about 80 bytes before any cell is filled). The first
/// `PreviewFilledRows` rows have every cell filled when read; the rows beyond
/// are filled as they are scrolled into view, so a million-point file neither
/// waits for nor holds seven million cells.
///
/// A point that cannot be converted is left out of the output file; its row
/// in the preview keeps empty target cells.
class FileDataProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit FileDataProjTransDlg(QWidget* parent = nullptr);
    ~FileDataProjTransDlg() override;

    /// Rows filled at once when a file is read.
    static constexpr int PreviewFilledRows = 10000;

    /// Reads `path` with the current format and fills the preview, as the
    /// input button does after its file dialog; returns the reader's result
    /// (see `CoordsFileStreamConverter::Result`).
    int ReadInputFile(const QString& path);

private slots:
    void slot_InputFile();
    void slot_Original();
    void slot_OutputFile();
    void slot_Target();
    void slot_TransformModel(int index);
    void slot_ComboBoxFileFormat(int index);
    void slot_Format();
    void slot_Transform();
    void slot_bCode();
    void slot_Cancel();
    void slot_Import();

private:
    void chooseSystem(bool source);
    void updateModelChoice();
    void fillModelCombo();
    void resetPreview(int rows);
    void fillPreviewRows(int first, int last);
    void fillVisibleRows();
    void showResults();
    void clearPoints();

    std::unique_ptr<Ui::FileDataProjTransDlg> ui;

    QString m_format;  ///< the current format record
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_source;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_target;
    QString m_sourceText;
    QString m_targetText;
    bool m_sameDatum = false;
    bool m_codeNumber = false;

    QStringList m_model7Names;
    QList<QList<double>> m_model7Params;
    QStringList m_model4Names;
    QList<QList<double>> m_model4Params;
    QList<QList<double>> m_comboParams;  ///< parameters of the entries in the model combo
    QList<double> m_params7;
    QList<double> m_params4;

    QString m_readRecord;               ///< the format the file was read with
    bool m_is3D = false;
    CoordsPointStore m_points;  ///< the points shown, as read
    CoordsPointStore m_results; ///< the same points after converting; `Converted` tells which were
};
