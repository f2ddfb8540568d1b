#include "reprojection/BatchProjTransDlg.h"

#include "reprojection/ReprojectionSupport.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivUI/EnvironmentSetting.h"
#include "models/ModelStore.h"
#include "models/ModelEntryDialogs.h"
#include "ui_BatchProjTransDlg.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

/// The batch dialog reads the store through the program's own folder.
QString storePath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/..")
           + QStringLiteral("/data/Geograpic transformation model/coordtransform.xml");
}

} // namespace

BatchProjTransDlg::BatchProjTransDlg(QWidget* parent) : QDialog(parent), ui(new Ui::BatchProjTransDlg)
{
    ui->setupUi(this);

    m_models.Read(storePath());

    connect(ui->pushButton_Add, SIGNAL(clicked()), this, SLOT(OnBtnClickedAdd()));
    connect(ui->pushButton_Remove, SIGNAL(clicked()), this, SLOT(OnBtnClickedRemove()));
    connect(ui->pushButton_Bringup, SIGNAL(clicked()), this, SLOT(OnBtnClickedRemoveAll()));
    connect(ui->pushButton_OutputFolder, SIGNAL(clicked()), this, SLOT(slot_OutputFolder()));
    connect(ui->pushButton_OutputCoordSys, SIGNAL(clicked()), this, SLOT(slot_OutputCoordSys()));
    connect(ui->comboBox_7Param, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_ComboBox7Parameter(int)));
    connect(ui->pushButton_7Param, SIGNAL(clicked()), this, SLOT(slot_7Param()));
    connect(ui->pushButton_Ok, SIGNAL(clicked()), this, SLOT(slot_Ok()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(slot_Cancel()));
    connect(ui->checkBox_bCode, SIGNAL(clicked()), this, SLOT(slot_bCode()));
}

BatchProjTransDlg::~BatchProjTransDlg() = default;

void BatchProjTransDlg::OnBtnClickedAdd()
{
    KivUI::EnvironmentSetting* env = KivUI::EnvironmentSetting::Instance();
    const QStringList paths = QFileDialog::getOpenFileNames(this, tr("Select File"), env->GetCurrentWorkDir(),
                                                            tr("Raster Files(*.tiff *.tif *.img *.jp2);; Shape Files(*.shp)"));
    if (paths.isEmpty())
        return;
    env->SetCurrentWorkDir(QFileInfo(paths.first()).absolutePath());

    for (const QString& path : paths) {
        const auto report = [this, &path](const QString& message) {
            QMessageBox::information(this, tr("Error"), message + QStringLiteral("\r\n") + path, QMessageBox::Ok);
        };
        const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(path, 0, QString());
        if (!dataset) {
            report(tr("File Abnormity!"));
            continue;
        }
        // A container is judged by its second member, unlike in the single-dataset dialog.
        const _ptr_t<SpatialReference> reference = ReprojectionSupport::DatasetReference(*dataset, 1);
        if (!reference) {
            report(tr("There is no spatial reference!"));
            continue;
        }
        if (!m_source) {
            m_source = reference;
            ui->lineEdit_InputCoordSys->setText(reference->GetName());
            ui->listWidget->addItem(path);
        } else if (reference->IsSame(m_source.get())) {
            ui->listWidget->addItem(path);
        } else {
            report(tr("Different Spatial Reference!"));
        }
    }
    updateModelControls();
}

void BatchProjTransDlg::updateModelControls()
{
    if (!m_source || !m_target)
        return;
    m_models.fourParameters = ReprojectionSupport::SameGeographicSystem(m_source, m_target);
    fillModelCombo();
    const int enable = ReprojectionSupport::ModelControlsForKinds(m_source, m_target);
    if (enable < 0)
        return;
    ui->label_5->setEnabled(enable == 1);
    ui->comboBox_7Param->setEnabled(enable == 1);
    ui->pushButton_7Param->setEnabled(enable == 1);
}

void BatchProjTransDlg::fillModelCombo()
{
    ui->comboBox_7Param->clear();
    m_models.ClearChoice();
    ui->label_5->setText(m_models.fourParameters ? tr("Transform 4Parameter:") : tr("Transform 7Parameter:"));
    ui->comboBox_7Param->addItems(m_models.Names());
}

void BatchProjTransDlg::forgetInput()
{
    m_source = nullptr;
    ui->lineEdit_InputCoordSys->clear();
}

void BatchProjTransDlg::OnBtnClickedRemove()
{
    qDeleteAll(ui->listWidget->selectedItems());
    if (ui->listWidget->count() == 0)
        forgetInput();
}

void BatchProjTransDlg::OnBtnClickedRemoveAll()
{
    ui->listWidget->clear();
    forgetInput();
}

void BatchProjTransDlg::slot_OutputFolder()
{
    const QString dir = QFileDialog::getExistingDirectory(this, tr("Open Directory"),
                                                          KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
                                                          QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    if (!dir.isEmpty())
        ui->lineEdit_Folder->setText(dir);
}

void BatchProjTransDlg::slot_OutputCoordSys()
{
    KivAdapterUI::SpatialReferenceSelectorDlg dlg(this);
    if (dlg.exec() != QDialog::Accepted)
        return;
    const _ptr_t<SpatialReference> chosen = dlg.GetCoordinateSystem();
    if (!chosen)
        return;
    m_target = chosen;
    ui->lineEdit_OutputCoordSys->setText(chosen->GetName());
    if (m_source) {
        const _ptr_t<SpatialReference> source = m_source->Clone();
        const _ptr_t<SpatialReference> target = m_target->Clone();
        source->Normalize();
        target->Normalize();
        if (source->IsSame(target.get())) {
            QMessageBox::warning(this, tr("Warning"), tr("Source Spatial Reference is same with Target!"), QMessageBox::Ok);
            ui->lineEdit_OutputCoordSys->clear();
        }
    }
    updateModelControls();
}

void BatchProjTransDlg::slot_ComboBox7Parameter(int index)
{
    m_models.Choose(index);
}

void BatchProjTransDlg::slot_7Param()
{
    if (!ModelEntryDialogs::Run(this, m_models.fourParameters, m_source, m_target))
        return;
    // A model just stored can be chosen at once.
    m_models.Read(storePath());
    fillModelCombo();
}

void BatchProjTransDlg::slot_bCode()
{
    m_code = ui->checkBox_bCode->isChecked();
}

void BatchProjTransDlg::slot_Cancel()
{
    reject();
}

void BatchProjTransDlg::slot_Ok()
{
    QStringList inputs;
    for (int i = 0; i < ui->listWidget->count(); ++i)
        inputs << ui->listWidget->item(i)->text();
    if (inputs.isEmpty()) {
        QMessageBox::information(this, tr("Select Files"), tr("No File Is Selected!"), QMessageBox::Ok);
        return;
    }
    const auto warn = [this](const QString& text) { QMessageBox::warning(this, tr("Warning"), text, QMessageBox::Ok); };
    if (ui->lineEdit_InputCoordSys->text().isEmpty())
        return warn(tr("The input file has no spatial reference!"));
    if (ui->lineEdit_Folder->text().isEmpty())
        return warn(tr("The output file is empty!"));
    if (ui->lineEdit_OutputCoordSys->text().isEmpty())
        return warn(tr("The output file has no space for reference!"));

    m_inputs = inputs;
    m_info.lstInputFiles = inputs;
    m_info.strDstWkt = m_target ? m_target->ExportToWkt() : QString();
    m_info.strSrcWkt = m_source ? m_source->ExportToWkt() : QString();
    m_info.strOutputFolder = ui->lineEdit_Folder->text();
    m_models.WriteTo(m_info);
    m_info.bCode = m_code;
    accept();
}
