#include "reprojection/DataProjTransDlg.h"

#include "reprojection/ReprojectionSupport.h"

#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/Dataset.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "KivUI/EnvironmentSetting.h"
#include "models/ModelStore.h"
#include "models/ModelEntryDialogs.h"
#include "spatialref/OutputSpatialReferenceDlg.h"
#include "ui_DataProjTransDlg.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

bool isRasterSuffix(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    for (const char* raster : {"tif", "tiff", "img"}) {
        if (suffix.compare(QLatin1String(raster), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace

DataProjTransDlg::DataProjTransDlg(QWidget* parent, const _ptr_t<KivCarto::Map>& map)
    : QDialog(parent), ui(new Ui::DataProjTransDlg), m_map(map)
{
    ui->setupUi(this);
    setFixedSize(size());
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint & ~Qt::WindowMinMaxButtonsHint);

    ui->checkBox_bCode->setChecked(false);
    ui->checkBox_bCode->hide();
    ui->label_OutFolder->hide();
    ui->lineEdit_Folder->hide();
    ui->pushButton_Folder->hide();

    connect(ui->pushButton_Input, SIGNAL(clicked()), this, SLOT(slot_InputFile()));
    connect(ui->pushButton_Output, SIGNAL(clicked()), this, SLOT(slot_OutputFile()));
    connect(ui->pushButton_Folder, SIGNAL(clicked()), this, SLOT(slot_OutputFolder()));
    connect(ui->pushButton_OutputCoordSys, SIGNAL(clicked()), this, SLOT(slot_TargetCoordSystem()));
    connect(ui->comboBox_7Param, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_ComboBox7Parameter(int)));
    connect(ui->pushButton_7Param, SIGNAL(clicked()), this, SLOT(slot_7Parameter()));
    connect(ui->pushButton_Transform, SIGNAL(clicked()), this, SLOT(slot_Transform()));
    connect(ui->checkBox_bCode, SIGNAL(clicked()), this, SLOT(slot_bCode()));

    // The combo is connected first, so that its first model is the chosen one.
    m_models.Read(ModelStore::ReaderPath());
    ui->comboBox_7Param->addItems(m_models.Names());
}

DataProjTransDlg::~DataProjTransDlg() = default;

void DataProjTransDlg::showFileRow(bool file)
{
    ui->label_OutFile->setVisible(file);
    ui->lineEdit_Output->setVisible(file);
    ui->pushButton_Output->setVisible(file);
    ui->label_OutFolder->setVisible(!file);
    ui->lineEdit_Folder->setVisible(!file);
    ui->pushButton_Folder->setVisible(!file);
    (file ? ui->lineEdit_Folder : ui->lineEdit_Output)->clear();
}

void DataProjTransDlg::slot_InputFile()
{
    KivUI::EnvironmentSetting* env = KivUI::EnvironmentSetting::Instance();
    const QString path = QFileDialog::getOpenFileName(this, tr("Open  Data"), env->GetCurrentWorkDir(),
                                                      tr("Raster Files(*.tiff *.tif *.img);; Shape Files(*.shp);; PGDB Files(*.mdb)"));
    if (path.isEmpty())
        return;
    env->SetCurrentWorkDir(QFileInfo(path).absolutePath());

    const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(path, 0, QString());
    if (!dataset) {
        QMessageBox::warning(this, tr("Warning"), tr("File Abnormity!"), QMessageBox::Ok);
        return;
    }
    const _ptr_t<SpatialReference> reference = ReprojectionSupport::DatasetReference(*dataset, 0);
    // A container of layers is written into a folder, one output per layer.
    showFileRow(dataset->GetKind() != KivDataSource::DK_Container);
    if (!reference) {
        QMessageBox::warning(this, tr("Warning"), tr("This Data has no spatialreference!"), QMessageBox::Ok);
        return;
    }

    ui->lineEdit_Input->setText(path);
    m_source = reference;
    m_sourceWkt = reference->ExportToWkt();
    ui->lineEdit_InputCoordSys->setText(reference->GetName());
    const bool projected = reference->GetType() == KivGeometry::SRT_Projected;
    ui->checkBox_bCode->setEnabled(projected);
    if (!projected)
        m_code = false;

    if (m_target) {
        updateSameGeographicSystem();
        fillModelCombo();
        applyKindsToModelControls();
    }
}

void DataProjTransDlg::slot_OutputFile()
{
    if (ui->lineEdit_Input->text().isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("Please select input file!"), QMessageBox::Ok);
        return;
    }
    const QString filter = isRasterSuffix(ui->lineEdit_Input->text())
                               ? tr("GeoTIFF Files(*.tif *.tiff);;ERDAS IMG(*.img);;ENVI IMG(*.img)")
                               : tr("Shape Files(*.shp)");
    QString chosenFilter;
    const QString path = QFileDialog::getSaveFileName(this, tr("Output File"),
                                                      KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(), filter,
                                                      &chosenFilter);
    if (path.isEmpty())
        return;
    if (chosenFilter == tr("GeoTIFF Files(*.tif *.tiff)"))
        m_rasterFormat = QStringLiteral("GTiff");
    else if (chosenFilter == tr("ERDAS IMG(*.img)"))
        m_rasterFormat = QStringLiteral("HFA");
    else
        m_rasterFormat = QStringLiteral("ENVI");
    ui->lineEdit_Output->setText(path);
}

void DataProjTransDlg::slot_OutputFolder()
{
    const QString dir = QFileDialog::getExistingDirectory(this, tr("Open Directory"),
                                                          KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
                                                          QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    if (dir.isEmpty())
        return;
    ui->lineEdit_Folder->setText(dir);
    ui->lineEdit_Output->clear();
}

void DataProjTransDlg::slot_TargetCoordSystem()
{
    OutputSpatialReferenceDlg dlg(this);
    if (dlg.exec() != QDialog::Accepted)
        return;
    const QString wkt = dlg.GetWkt();
    if (wkt.isEmpty())
        return;
    const auto target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(wkt);
    if (!target)
        return;
    m_target = target;
    m_targetWkt = wkt;
    ui->lineEdit_OutputCoordSys->setText(target->GetName());
    if (!m_source)
        return;
    updateSameGeographicSystem();
    fillModelCombo();
}

void DataProjTransDlg::updateSameGeographicSystem()
{
    m_models.fourParameters = ReprojectionSupport::SameGeographicSystem(m_source, m_target);
}

void DataProjTransDlg::fillModelCombo()
{
    ui->comboBox_7Param->clear();
    m_models.ClearChoice();
    if (!m_models.fourParameters) {
        ui->label_5->setEnabled(true);
        ui->comboBox_7Param->setEnabled(true);
        ui->pushButton_7Param->setEnabled(true);
        ui->label_5->setText(tr("Transform 7Parameter:"));
    } else {
        ui->label_5->setText(tr("Transform 4Parameter:"));
    }
    ui->comboBox_7Param->addItems(m_models.Names());
}

void DataProjTransDlg::applyKindsToModelControls()
{
    const int enable = ReprojectionSupport::ModelControlsForKinds(m_source, m_target);
    if (enable < 0)
        return;
    ui->label_5->setEnabled(enable == 1);
    ui->comboBox_7Param->setEnabled(enable == 1);
    ui->pushButton_7Param->setEnabled(enable == 1);
}

void DataProjTransDlg::slot_ComboBox7Parameter(int index)
{
    m_models.Choose(index);
}

void DataProjTransDlg::slot_7Parameter()
{
    if (!ModelEntryDialogs::Run(this, m_models.fourParameters, m_source, m_target))
        return;
    // The store may have a new model: read it again and offer it at once.
    m_models.Read(ModelStore::ReaderPath());
    ui->comboBox_7Param->clear();
    ui->comboBox_7Param->addItems(m_models.Names());
}

void DataProjTransDlg::slot_bCode()
{
    m_code = ui->checkBox_bCode->isChecked();
}

void DataProjTransDlg::slot_Transform()
{
    const auto warn = [this](const QString& text) { QMessageBox::warning(this, tr("Warning"), text, QMessageBox::Ok); };
    const QString input = ui->lineEdit_Input->text();
    const QString output = ui->lineEdit_Output->text();
    if (input.isEmpty())
        return warn(tr("Please select input file!"));
    if (ui->lineEdit_InputCoordSys->text().isEmpty())
        return warn(tr("The input file has no space for reference!"));
    if (output.isEmpty() && ui->lineEdit_Folder->text().isEmpty())
        return warn(tr("The output file is empty!"));
    if (ui->lineEdit_OutputCoordSys->text().isEmpty())
        return warn(tr("The output file has no space for reference!"));
    if (QFileInfo(input).suffix() == QLatin1String("shp")
        && QFileInfo(output).suffix().compare(QLatin1String("shp"), Qt::CaseInsensitive) != 0)
        return warn(tr("The input file does not match the output file type!"));
    if (ReprojectionSupport::SpheroidsDiffer(m_sourceWkt, m_targetWkt)
        && QMessageBox::warning(nullptr, tr("Warning"),
                                tr("Please confirm whether the correct 7-parameter model has been set. If it has been "
                                   "set,please click OK. If not, please click Cancel to go back to set."),
                                QMessageBox::Ok | QMessageBox::Cancel)
               == QMessageBox::Cancel)
        return;

    m_info.strInputFile = input;
    m_info.strDstWkt = m_targetWkt;
    m_info.strSrcWkt = m_sourceWkt;
    m_info.strOutputFile = output;
    m_info.strOutputFolder = ui->lineEdit_Folder->text();
    m_models.WriteTo(m_info);
    m_info.bCode = m_code;
    m_info.strRasterFormat = m_rasterFormat;
    accept();
}
