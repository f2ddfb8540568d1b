#include "textfiles/FileDataProjTransDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "KivUI/EnvironmentSetting.h"
#include "models/ModelStore.h"
#include "models/ModelEntryDialogs.h"
#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatXMLManagerDlg.h"
#include "textfiles/TextFileFormat.h"
#include "ui_FileDataProjTransDlg.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMessageBox>
#include <QScrollBar>
#include <QTableWidgetItem>

#include <algorithm>
#include <limits>
#include <new>

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

enum Column { ColId, ColSrcY, ColSrcX, ColSrcZ, ColTargetY, ColTargetX, ColTargetZ, ColumnCount };

QTableWidgetItem* cell(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    return item;
}

QTableWidgetItem* cell(double value)
{
    return cell(QString::number(value, 'f', 6));
}

bool isProjected(const _ptr_t<SpatialReference>& sr)
{
    return sr && sr->GetType() == KivGeometry::SRT_Projected;
}

} // namespace

FileDataProjTransDlg::FileDataProjTransDlg(QWidget* parent) : QDialog(parent), ui(new Ui::FileDataProjTransDlg)
{
    ui->setupUi(this);
    setFixedSize(795, 376);

    QTableWidget* table = ui->tableWidget;
    table->setColumnCount(ColumnCount);
    table->setHorizontalHeaderLabels({tr("Point ID"), tr("Src Y"), tr("Src X"), tr("Src Z"), tr("Target Y"),
                                      tr("Target X"), tr("Target Z")});
    // A coordinate with its zone number and six decimals shows whole.
    table->horizontalHeader()->setDefaultSectionSize(fontMetrics().horizontalAdvance(QStringLiteral("38512345.678901")) + 16);
    table->setRowCount(8);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(table->verticalScrollBar(), &QScrollBar::valueChanged, this, &FileDataProjTransDlg::fillVisibleRows);

    ui->comboBox->addItems(FileFormatDirectory::LoadRecords(FileFormatDirectory::ListFiles()));
    m_format = ui->comboBox->currentText();

    // Which kind of model is offered depends on both systems; until both are
    // chosen there is nothing to offer.
    ui->label_5->setEnabled(false);
    ui->comboBox_Model->setEnabled(false);
    ui->pushButton_Import->setEnabled(false);
    ui->checkBox_bCode->setEnabled(false);

    for (const TransformModel& m : ModelStore::List(ModelStore::Params7)) {
        m_model7Names << m.TransName;
        m_model7Params << m.Params;
    }
    for (const TransformModel& m : ModelStore::List(ModelStore::Params4)) {
        m_model4Names << m.TransName;
        m_model4Params << m.Params;
    }

    connect(ui->pushButton_Input, SIGNAL(clicked()), this, SLOT(slot_InputFile()));
    connect(ui->pushButton_Original, SIGNAL(clicked()), this, SLOT(slot_Original()));
    connect(ui->pushButton_Output, SIGNAL(clicked()), this, SLOT(slot_OutputFile()));
    connect(ui->pushButton_Target, SIGNAL(clicked()), this, SLOT(slot_Target()));
    connect(ui->comboBox_Model, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_TransformModel(int)));
    connect(ui->comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_ComboBoxFileFormat(int)));
    connect(ui->pushButton_Format, SIGNAL(clicked()), this, SLOT(slot_Format()));
    connect(ui->pushButton_Transform, SIGNAL(clicked()), this, SLOT(slot_Transform()));
    connect(ui->checkBox_bCode, SIGNAL(clicked()), this, SLOT(slot_bCode()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(slot_Cancel()));
    connect(ui->pushButton_Import, SIGNAL(clicked()), this, SLOT(slot_Import()));
}

FileDataProjTransDlg::~FileDataProjTransDlg() = default;

// ---------------------------------------------------------------- files

void FileDataProjTransDlg::slot_InputFile()
{
    KivUI::EnvironmentSetting* env = KivUI::EnvironmentSetting::Instance();
    const QString path = QFileDialog::getOpenFileName(this, tr("Open Text File"), env->GetCurrentWorkDir(),
                                                      tr("Text Files (*.txt);;CSV Files(*.csv)"));
    if (path.isEmpty())
        return;
    env->SetCurrentWorkDir(QFileInfo(path).absolutePath());

    int result = CoordsFileStreamConverter::BadData;
    try {
        result = ReadInputFile(path);
    } catch (const std::bad_alloc&) {
        // Not even the preview fits: drop what was read and say so.
        clearPoints();
        resetPreview(0);
        ui->lineEdit_Input->clear();
        QMessageBox::information(this, tr("Coordinate Conversion"), tr("Not enough memory to read the file!"),
                                 QMessageBox::Ok);
        return;
    }
    switch (result) {
    case CoordsFileStreamConverter::Success:
        ui->lineEdit_Input->setText(path);
        break;
    case CoordsFileStreamConverter::BadData:
        ui->lineEdit_Input->clear();
        QMessageBox::information(this, tr("Coordinate Conversion"),
                                 tr("Input data is incorrect, please reset the file format in the interface!"),
                                 QMessageBox::Ok);
        break;
    case CoordsFileStreamConverter::CannotOpen:
    case CoordsFileStreamConverter::ReadFailed:
        ui->lineEdit_Input->clear();
        QMessageBox::information(this, tr("Coordinate Conversion"), tr("Failed to open the file,please try again!"),
                                 QMessageBox::Ok);
        break;
    case CoordsFileStreamConverter::CodeNumber:
        ui->lineEdit_Input->clear();
        QMessageBox::information(this, tr("Coordinate Conversion"),
                                 tr("The coordinate Y may have a code,please remove the code!"), QMessageBox::Ok);
        break;
    default:
        break;
    }
}

int FileDataProjTransDlg::ReadInputFile(const QString& path)
{
    clearPoints();
    m_readRecord = m_format;
    // The whole file is read to know it fits the format; the preview shows
    // every point, and nothing else of the file stays.
    CoordsFileStreamConverter stream;
    stream.SetKeptPoints(std::numeric_limits<int>::max());
    int result = CoordsFileStreamConverter::CannotOpen;
    if (stream.Open(path))
        result = stream.Run(m_format, {nullptr}, nullptr, QString());
    if (result == CoordsFileStreamConverter::Success) {
        m_points = stream.TakeKeptPoints();
        m_is3D = TextFileFormat::FromRecord(m_format).is3D;
    }
    resetPreview(static_cast<int>(m_points.Size()));
    return result;
}

void FileDataProjTransDlg::clearPoints()
{
    m_points.Clear();
    m_results.Clear();
    m_is3D = false;
}

void FileDataProjTransDlg::slot_OutputFile()
{
    KivUI::EnvironmentSetting* env = KivUI::EnvironmentSetting::Instance();
    const QString path = QFileDialog::getSaveFileName(this, tr("Output File"), env->GetCurrentWorkDir(),
                                                      tr("Text Files(*.txt);;CSV Files(*.csv)"));
    if (path.isEmpty())
        return;
    ui->lineEdit_Output->setText(path);
    env->SetCurrentWorkDir(QFileInfo(path).absolutePath());
}

void FileDataProjTransDlg::slot_ComboBoxFileFormat(int index)
{
    m_format = index >= 0 ? ui->comboBox->itemText(index) : QString();
}

void FileDataProjTransDlg::slot_Format()
{
    FileFormatXMLManagerDlg manager(this);
    manager.exec();
    ui->comboBox->clear();
    ui->comboBox->addItems(manager.GetFormatRecords());
    ui->comboBox->setCurrentIndex(ui->comboBox->count() - 1);
}

// ---------------------------------------------------------------- preview

void FileDataProjTransDlg::resetPreview(int rows)
{
    QTableWidget* table = ui->tableWidget;
    table->clearContents();
    table->setRowCount(rows);
    table->verticalScrollBar()->setValue(0);
    fillPreviewRows(0, std::min(rows, PreviewFilledRows) - 1);
}

void FileDataProjTransDlg::fillPreviewRows(int first, int last)
{
    QTableWidget* table = ui->tableWidget;
    const CoordsPointStore& points = m_points;
    last = std::min(last, std::min(table->rowCount(), static_cast<int>(points.Size())) - 1);
    const bool is3D = m_is3D;
    table->setUpdatesEnabled(false);
    for (int row = std::max(first, 0); row <= last; ++row) {
        if (!table->item(row, ColId)) {
            table->setItem(row, ColId, cell(points.Id(size_t(row))));
            table->setItem(row, ColSrcY, cell(points.East(size_t(row))));
            table->setItem(row, ColSrcX, cell(points.North(size_t(row))));
            if (is3D)
                table->setItem(row, ColSrcZ, cell(points.H(size_t(row))));
        }
        if (!table->item(row, ColTargetY) && size_t(row) < m_results.Size() && m_results.Converted(size_t(row))) {
            table->setItem(row, ColTargetY, cell(m_results.East(size_t(row))));
            table->setItem(row, ColTargetX, cell(m_results.North(size_t(row))));
            if (is3D)
                table->setItem(row, ColTargetZ, cell(m_results.H(size_t(row))));
        }
    }
    table->setUpdatesEnabled(true);
}

void FileDataProjTransDlg::fillVisibleRows()
{
    QTableWidget* table = ui->tableWidget;
    if (table->rowCount() <= PreviewFilledRows)
        return;
    const int top = table->rowAt(0);
    int bottom = table->rowAt(table->viewport()->height() - 1);
    if (bottom < 0)
        bottom = table->rowCount() - 1;
    if (top >= 0)
        fillPreviewRows(top, std::min(bottom, top + 200));
}

void FileDataProjTransDlg::showResults()
{
    QTableWidget* table = ui->tableWidget;
    const int rows = table->rowCount();
    for (int row = 0; row < rows; ++row) {
        for (int c = ColTargetY; c <= ColTargetZ; ++c)
            delete table->takeItem(row, c);
    }
    fillPreviewRows(0, std::min(rows, PreviewFilledRows) - 1);
    fillVisibleRows();
}

// ---------------------------------------------------------------- systems and models

void FileDataProjTransDlg::slot_Original()
{
    chooseSystem(true);
}

void FileDataProjTransDlg::slot_Target()
{
    chooseSystem(false);
}

void FileDataProjTransDlg::chooseSystem(bool source)
{
    _ptr_t<SpatialReference> chosen;
    {
        KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
        if (selector.exec() != QDialog::Accepted)
            return;
        chosen = selector.GetCoordinateSystem();
    }
    if (!chosen)
        return;
    const _ptr_t<SpatialReference>& other = source ? m_target : m_source;
    if (other && chosen->IsSame(other.get())) {
        QMessageBox::warning(this, tr("Warning"), tr("Source Spatial Reference is same with Target!"),
                             QMessageBox::Ok);
        return;
    }

    if (source) {
        m_source = chosen;
        m_sourceText = chosen->ExportToWkt();
        ui->lineEdit_Original->setText(chosen->GetName());
    } else {
        m_target = chosen;
        m_targetText = chosen->ExportToWkt();
        ui->lineEdit_Target->setText(chosen->GetName());
    }

    const bool projectedSource = isProjected(m_source);
    ui->checkBox_bCode->setEnabled(projectedSource);
    if (!projectedSource) {
        ui->checkBox_bCode->setChecked(false);
        m_codeNumber = false;
    }

    if (m_source && m_target)
        updateModelChoice();
}

void FileDataProjTransDlg::updateModelChoice()
{
    m_sameDatum = CoordinateConversion::DialogMode(m_source.get(), m_target.get())
                  == CoordinateConversion::FourParameters;
    ui->label_5->setText(m_sameDatum ? tr("4Parameter:") : tr("7Parameter:"));
    fillModelCombo();
    const bool enabled = !m_sameDatum || (isProjected(m_source) && isProjected(m_target));
    ui->label_5->setEnabled(enabled);
    ui->comboBox_Model->setEnabled(enabled);
    ui->pushButton_Import->setEnabled(enabled);
}

void FileDataProjTransDlg::fillModelCombo()
{
    ui->comboBox_Model->clear();
    m_comboParams = m_sameDatum ? m_model4Params : m_model7Params;
    ui->comboBox_Model->addItems(m_sameDatum ? m_model4Names : m_model7Names);
}

void FileDataProjTransDlg::slot_TransformModel(int index)
{
    if (index < 0 || index >= m_comboParams.size())
        return;
    if (m_sameDatum)
        m_params4 = m_comboParams.at(index);
    else
        m_params7 = m_comboParams.at(index);
}

void FileDataProjTransDlg::slot_Import()
{
    if (!ModelEntryDialogs::Run(this, m_sameDatum, m_source, m_target))
        return;

    const ModelStore::Kind kind = m_sameDatum ? ModelStore::Params4 : ModelStore::Params7;
    QStringList& names = m_sameDatum ? m_model4Names : m_model7Names;
    QList<QList<double>>& params = m_sameDatum ? m_model4Params : m_model7Params;
    names.clear();
    params.clear();
    for (const TransformModel& m : ModelStore::List(kind)) {
        names << m.TransName;
        params << m.Params;
    }
    fillModelCombo();
    ui->comboBox_Model->setCurrentIndex(ui->comboBox_Model->count() - 1);
}

void FileDataProjTransDlg::slot_bCode()
{
    m_codeNumber = ui->checkBox_bCode->isChecked();
}

void FileDataProjTransDlg::slot_Cancel()
{
    clearPoints();
    reject();
}

// ---------------------------------------------------------------- converting

void FileDataProjTransDlg::slot_Transform()
{
    const QString input = ui->lineEdit_Input->text();
    const QString output = ui->lineEdit_Output->text();
    if (input.isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("Select correct input file!"), QMessageBox::Ok);
        return;
    }
    if (output.isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("Select correct output file!"), QMessageBox::Ok);
        return;
    }
    // Another spelling of the same file (a relative path, a link) would
    // overwrite the input just the same.
    const QString inputCanonical = QFileInfo(input).canonicalFilePath();
    if (output == input
        || (!inputCanonical.isEmpty() && QFileInfo(output).canonicalFilePath() == inputCanonical)) {
        QMessageBox::warning(this, tr("Warning"), tr("Input file is matching to output file!"), QMessageBox::Ok);
        return;
    }
    if (m_sourceText.isEmpty()) {
        QMessageBox::information(this, tr("Warning"), tr("Select original projection!"), QMessageBox::Ok);
        return;
    }
    if (m_targetText.isEmpty()) {
        QMessageBox::information(this, tr("Warning"), tr("Please select the output coordinate system!"),
                                 QMessageBox::Ok);
        return;
    }
    if (m_sourceText == m_targetText) {
        QMessageBox::warning(this, tr("Warning"),
                             tr("Input file and output file projection same,do not need to transform!"),
                             QMessageBox::Ok);
        return;
    }

    const _ptr_t<SpatialReference> source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(m_sourceText);
    const _ptr_t<SpatialReference> target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(m_targetText);
    if (!source || !target)
        return;

    CoordinateConversion conversion(source, target);
    conversion.SetMode(m_sameDatum ? CoordinateConversion::FourParameters : CoordinateConversion::SevenParameters);
    conversion.SetParams(m_sameDatum ? m_params4 : m_params7);
    conversion.SetCodeNumber(m_codeNumber);

    // Not ready: a seven-parameter model without exactly seven values;
    // nothing is converted or written.
    if (!conversion.IsReady())
        return;

    // The file is read again, converted and written as it goes; the shown
    // points are kept converted for the preview. The layout written is the
    // one the file was read with.
    CoordsFileStreamConverter stream;
    stream.SetKeptPoints(static_cast<int>(m_points.Size()));
    int result = CoordsFileStreamConverter::CannotOpen;
    QString error;
    try {
        if (stream.Open(input))
            result = stream.RunToFile(m_readRecord, {&conversion}, output, output, &error);
    } catch (const std::bad_alloc&) {
        QMessageBox::warning(this, tr("Warning"), tr("Not enough memory to convert the file!"), QMessageBox::Ok);
        return;
    }
    switch (result) {
    case CoordsFileStreamConverter::Success:
        break;
    case CoordsFileStreamConverter::WriteFailed:
        return; // an output that cannot be written ends the conversion silently
    case CoordsFileStreamConverter::BadData:
        // The file changed since it was chosen.
        QMessageBox::information(this, tr("Coordinate Conversion"),
                                 tr("Input data is incorrect, please reset the file format in the interface!"),
                                 QMessageBox::Ok);
        return;
    default:
        QMessageBox::information(this, tr("Coordinate Conversion"), tr("Failed to open the file,please try again!"),
                                 QMessageBox::Ok);
        return;
    }
    m_results = stream.TakeKeptPoints();
    showResults();
}
