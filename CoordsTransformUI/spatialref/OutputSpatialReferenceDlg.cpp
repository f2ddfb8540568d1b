#include "spatialref/OutputSpatialReferenceDlg.h"

#include "spatialref/DatasetSpatialReference.h"
#include "spatialref/NewGeoCoorSysDlg.h"
#include "spatialref/NewProjCoorSysDlg.h"
#include "ui_OutputSpatialReferenceDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivUI/EnvironmentSetting.h"

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QSaveFile>
#include <QTextStream>

OutputSpatialReferenceDlg::OutputSpatialReferenceDlg(QWidget* parent)
    : QDialog(parent), ui(new Ui::OutputSpatialReferenceDlg)
{
    ui->setupUi(this);
    setWindowTitle(tr("Spatial Reference Information"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    ui->content_textEdit->setReadOnly(true);

    // The menu has no parent; the button does not own it either, so the
    // dialog deletes it (see the destructor).
    auto* menu = new QMenu();
    auto* geographic = new QAction(tr("Geography Coordinate System"), menu);
    auto* projected = new QAction(tr("Projection Coordinate System"), menu);
    menu->addAction(geographic);
    menu->addAction(projected);
    ui->NewProj_pushButton->setMenu(menu);

    ui->modify_pushButton->setEnabled(false);
    ui->Clear_pushButton->setEnabled(false);
    ui->Export_pushButton->setEnabled(false);

    connect(geographic, SIGNAL(triggered()), this, SLOT(OnNewGeoCoorSys()));
    connect(projected, SIGNAL(triggered()), this, SLOT(OnNewProjCoorSys()));
    connect(ui->Select_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnClickedSelect()));
    connect(ui->import_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnImportSRS()));
    connect(ui->modify_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnModify()));
    connect(ui->Clear_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnClear()));
    connect(ui->Export_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnExport()));
    connect(ui->okButton, SIGNAL(clicked()), this, SLOT(OnBtnOk()));
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(OnBtnCancel()));
}

OutputSpatialReferenceDlg::~OutputSpatialReferenceDlg()
{
    delete ui->NewProj_pushButton->menu();
}

void OutputSpatialReferenceDlg::refreshButtons()
{
    if (ui->content_textEdit->toPlainText().isEmpty())
        return;
    ui->Export_pushButton->setEnabled(true);
    ui->modify_pushButton->setEnabled(true);
    ui->Clear_pushButton->setEnabled(true);
}

void OutputSpatialReferenceDlg::showThroughGeographic(const QString& wkt)
{
    ui->content_textEdit->clear();
    KivGeometry::GeographicCoordinateSystem system;
    system.ImportFromWkt(wkt);
    ui->content_textEdit->append(system.ExportToPrettyWkt());
}

void OutputSpatialReferenceDlg::OnBtnClickedSelect()
{
    try {
        KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
        if (selector.exec() == QDialog::Accepted) {
            ui->content_textEdit->clear();
            if (const auto system = selector.GetCoordinateSystem()) {
                ui->content_textEdit->append(system->ExportToPrettyWkt());
                m_strWkt = system->ExportToWkt();
                ui->lname_ineEdit->setText(system->GetName());
            }
        }
        refreshButtons();
    } catch (...) {
    }
}

template <class NewSystemDialog>
void OutputSpatialReferenceDlg::composeSystem(QString& remembered)
{
    NewSystemDialog dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        remembered = dialog.GetSrsWkt();
    if (!remembered.isEmpty())
        showThroughGeographic(remembered);
    // Also after Cancel: the last accepted system comes back.
    m_strWkt = remembered;
    ui->lname_ineEdit->setText(dialog.GetSrsName());
    refreshButtons();
}

void OutputSpatialReferenceDlg::OnNewGeoCoorSys()
{
    try {
        composeSystem<NewGeoCoorSysDlg>(m_strGeoWkt);
    } catch (...) {
    }
}

void OutputSpatialReferenceDlg::OnNewProjCoorSys()
{
    try {
        composeSystem<NewProjCoorSysDlg>(m_strProjWkt);
    } catch (...) {
    }
}

void OutputSpatialReferenceDlg::OnBtnImportSRS()
{
    try {
        const QString path = QFileDialog::getOpenFileName(
            this, QCoreApplication::translate("OutputSpatialRefernceDlg", "Import From File"),
            KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
            QCoreApplication::translate("OutputSpatialRefernceDlg",
                                        "Shape Files (*.shp);;Raster Files (*.tif *.tiff *.img *.ldf *.dat *.1bd "
                                        "*.1b);;Image Files(*.bmp *.jpg);;Projection Files(*.prj);;All files(*.*)"));
        if (path.isEmpty())
            return;
        // Anywhere in the path and case-sensitive: "x.prj.bak" is a projection
        // file, "a.PRJ" goes to the data source.
        if (path.contains(".prj"))
            importProjectionFile(path);
        else
            importDataset(path);
    } catch (...) {
    }
}

void OutputSpatialReferenceDlg::importProjectionFile(const QString& path)
{
    QFile file(path);
    QString line;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        // Only the first line, its terminator included.
        line = QString::fromUtf8(file.readLine());
        if (line.isEmpty()) {
            QMessageBox::information(this, windowTitle(), tr("The projection file is null!"), QMessageBox::Ok);
            return;
        }
        KivGeometry::ProjectedCoordinateSystem system;
        system.ImportFromWkt(line);
        ui->content_textEdit->clear();
        if (line.contains("PROJECTION")) {
            ui->lname_ineEdit->setText(system.GetName());
            ui->content_textEdit->setText(system.ExportToPrettyWkt());
        } else {
            const auto geographic = system.GetGeographicCoordinateSystem();
            ui->lname_ineEdit->setText(geographic ? geographic->GetName() : QString());
            ui->content_textEdit->setText(geographic ? geographic->ExportToPrettyWkt() : QString());
        }
    }
    // The line exactly as read (empty when the file could not be opened), so
    // that Export writes back what the user imported.
    m_strWkt = line;
    refreshButtons();
}

void OutputSpatialReferenceDlg::importDataset(const QString& path)
{
    bool opened = false;
    const auto system = DatasetSpatialReference::Read(path, &opened);
    if (!opened)
        return;
    if (!system) {
        QMessageBox::information(this, windowTitle(), tr("Data doesn't have spatial reference!"), QMessageBox::Ok);
        return;
    }
    ui->content_textEdit->clear();
    ui->content_textEdit->setText(system->ExportToPrettyWkt());
    m_strWkt = system->ExportToWkt();
    refreshButtons();
}

void OutputSpatialReferenceDlg::OnBtnModify()
{
    try {
        const QString text = ui->content_textEdit->toPlainText();
        if (!text.contains("PROJCS")) {
            NewGeoCoorSysDlg dialog(this);
            dialog.setWindowTitle(tr("Geographic Coordinate System"));
            if (!dialog.ModifyAssistant(text))
                return;
            if (dialog.exec() == QDialog::Accepted)
                m_strGeoWkt = dialog.GetSrsWkt();
            if (!m_strGeoWkt.isEmpty())
                showThroughGeographic(m_strGeoWkt);
            m_strWkt = m_strGeoWkt;
            ui->lname_ineEdit->setText(dialog.GetSrsName());
            return;
        }
        NewProjCoorSysDlg dialog(this);
        dialog.setWindowTitle(tr("Projection Coordinate System"));
        if (!dialog.ModifyAssistant(text))
            return;
        if (dialog.exec() == QDialog::Accepted)
            m_strProjWkt = dialog.GetSrsWkt();
        if (!m_strProjWkt.isEmpty())
            showThroughGeographic(m_strProjWkt);
        // The result is the last accepted geographic system, not the modified
        // projected one: callers have always received it so.
        m_strWkt = m_strGeoWkt;
        ui->lname_ineEdit->setText(dialog.GetSrsName());
    } catch (...) {
    }
}

void OutputSpatialReferenceDlg::OnBtnClear()
{
    ui->lname_ineEdit->clear();
    ui->content_textEdit->clear();
    if (!m_strWkt.isEmpty())
        m_strWkt.clear();
    ui->Export_pushButton->setEnabled(false);
    ui->modify_pushButton->setEnabled(false);
    ui->Clear_pushButton->setEnabled(false);
}

void OutputSpatialReferenceDlg::OnBtnExport()
{
    try {
        // The import caption is the one this dialog has always shown here.
        const QString path = QFileDialog::getSaveFileName(
            this, QCoreApplication::translate("OutputSpatialRefernceDlg", "Import From File"),
            KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
            QCoreApplication::translate("OutputSpatialRefernceDlg", "Projection Files(*.prj);;All files(*.*)"));
        if (path.isEmpty())
            return;
        // Written under a temporary name and renamed when complete, so a
        // failed write never leaves half a file. The message does not depend
        // on the outcome: the dialog has always reported the attempt.
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            QTextStream stream(&file);
            stream << m_strWkt;
            stream.flush();
            file.commit();
        }
        QMessageBox::information(this, windowTitle(), tr("Export success!"), QMessageBox::Ok);
    } catch (...) {
    }
}

void OutputSpatialReferenceDlg::OnBtnOk()
{
    accept();
}

void OutputSpatialReferenceDlg::OnBtnCancel()
{
    reject();
}
