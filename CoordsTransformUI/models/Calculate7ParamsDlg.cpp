#include "models/Calculate7ParamsDlg.h"

#include "models/ControlPointCalculation.h"
#include "models/ControlPointSession.h"
#include "models/ControlPointTable.h"
#include "models/ModelEntry.h"
#include "models/Save7ParamsResultDlg.h"
#include "ui_Calculate7ParamsDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QMessageBox>

using KivGeometry::CoordFuncLibrary;

namespace {

// The systems the dialog opens with (tabs as the texts have always had them).
const char kDefaultSourceWkt[] =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137,298.257223563]],\t\t"
    "PRIMEM[\"Greenwich\",0],UNIT[\"Degree\",0.017453292519943295]]";
const char kDefaultTargetWkt[] =
    "PROJCS[\"Beijing_1954_3_Degree_GK_CM_102E\", \t\tGEOGCS[\"GCS_Beijing_1954\",\t\t"
    "DATUM[\"D_Beijing_1954\",\t\tSPHEROID[\"Krasovsky_1940\", 6378245.0, 298.3]],\t\t"
    "PRIMEM[\"Greenwich\", 0.0],\t\tUNIT[\"Degree\", 0.0174532925199433]],\t\t"
    "PROJECTION[\"Transverse_Mercator\"],\t\tPARAMETER[\"False_Easting\", 500000.0],\t\t"
    "PARAMETER[\"False_Northing\", 0.0],\t\tPARAMETER[\"Central_Meridian\", 102.0],\t\t"
    "PARAMETER[\"Scale_Factor\", 1.0],\t\tPARAMETER[\"Latitude_Of_Origin\", 0.0],\t\tUNIT[\"Meter\", 1.0]]";

// The degree-minute-second masks carry degree and prime signs in UTF-8 bytes.
QString latitudeZero()
{
    return QString::fromLocal8Bit("00°00′00.000000″");
}

QString longitudeZero()
{
    return QString::fromLocal8Bit("000°00′00.000000″");
}

bool isGeographic(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& reference)
{
    return reference && reference->GetType() == KivGeometry::SRT_Geographic;
}

QString nameOf(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& reference)
{
    return reference ? reference->GetName() : QString();
}

} // namespace

Calculate7ParamsDlg::Calculate7ParamsDlg(QWidget* parent, KivFramework::IApplication* application)
    : QDialog(parent), ui(new Ui::Calculate7ParamsDlg)
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~(Qt::WindowContextHelpButtonHint | Qt::WindowMinimizeButtonHint
                                     | Qt::WindowMaximizeButtonHint));
    setFixedSize(size());
    m_session.reset(new ControlPointSession(
        this, ControlPointFile::SevenParameters,
        {ui->tableWidget, ui->label_Result, ui->pushButton_Edit,
         {ui->pushButton_Add, ui->pushButton_Remove, ui->pushButton_Run, ui->pushButton_Save},
         {ui->lineEdit_SrcB, ui->lineEdit_SrcL, ui->lineEdit_SrcH, ui->lineEdit_DesX, ui->lineEdit_DesY,
          ui->lineEdit_DesH}}));
    m_session->SetApplication(application);

    m_pSrcSpatialRef = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QString::fromLatin1(kDefaultSourceWkt));
    m_pDesSpatialRef = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QString::fromLatin1(kDefaultTargetWkt));
    // Shown under the names their texts give, as chosen systems are.
    for (RefPtr* reference : {&m_pSrcSpatialRef, &m_pDesSpatialRef}) {
        if (*reference)
            (*reference)->MorphToESRI();
    }
    ui->comboBox_srcSpaRef->addItem(tr("Click to select spatial reference"));
    ui->comboBox_srcSpaRef->addItem(nameOf(m_pSrcSpatialRef));
    ui->comboBox_srcSpaRef->setCurrentIndex(1);
    ui->comboBox_desSpaRef->addItem(tr("Click to select spatial reference"));
    ui->comboBox_desSpaRef->addItem(nameOf(m_pDesSpatialRef));
    ui->comboBox_desSpaRef->setCurrentIndex(1);

    connect(ui->comboBox_srcSpaRef, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboxCurrentIndexChanged_src(int)));
    connect(ui->comboBox_desSpaRef, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboxCurrentIndexChanged_des(int)));
    connect(ui->pushButton_Add, SIGNAL(clicked()), this, SLOT(OnBtnClickedAdd()));
    connect(ui->pushButton_Edit, SIGNAL(clicked()), this, SLOT(OnBtnClickedEdit()));
    connect(ui->pushButton_Remove, SIGNAL(clicked()), this, SLOT(OnBtnClickedRemove()));
    connect(ui->pushButton_Run, SIGNAL(clicked()), this, SLOT(OnBtnClickedRun()));
    connect(ui->pushButton_Save, SIGNAL(clicked()), this, SLOT(OnBtnClickedSave()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(OnBtnClickedCancel()));
    connect(ui->pushButton_Export, SIGNAL(clicked()), this, SLOT(slot_Export()));
    connect(ui->pushButton_Import, SIGNAL(clicked()), this, SLOT(slot_Import()));
    connect(ui->pushButton_QualityReport, &QPushButton::clicked, this, &Calculate7ParamsDlg::slot_QualityReport);
    connect(ui->comboBox_SrcCoordStyle, SIGNAL(currentIndexChanged(int)), this,
            SLOT(OnComboxCurrentIndexChanged_SrcCoordStyle(int)));
    connect(ui->comboBox_DesCoordStyle, SIGNAL(currentIndexChanged(int)), this,
            SLOT(OnComboxCurrentIndexChanged_DesCoordStyle(int)));
    connect(ui->radioButton_srcXYH, SIGNAL(toggled(bool)), this, SLOT(OnRadiobtnToggled_SrcXYH(bool)));
    connect(ui->radioButton_desXYH, SIGNAL(toggled(bool)), this, SLOT(OnRadiobtnToggled_DesXYH(bool)));
    connect(ui->tableWidget, SIGNAL(currentCellChanged(int, int, int, int)), this,
            SLOT(OnTabWidgetCurrentCellChanged(int, int, int, int)));
    // Write-back before the range checks: a refused value is then overwritten
    // in the table by the reset text, not the other way round.
    connect(ui->lineEdit_SrcB, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_SrcB(QString)));
    connect(ui->lineEdit_SrcL, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_SrcL(QString)));
    connect(ui->lineEdit_SrcH, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_SrcH(QString)));
    connect(ui->lineEdit_DesX, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_DesX(QString)));
    connect(ui->lineEdit_DesY, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_DesY(QString)));
    connect(ui->lineEdit_DesH, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged_DesH(QString)));
    connect(ui->lineEdit_SrcB, SIGNAL(textChanged(QString)), this, SLOT(slot_LineSrcBChanged(QString)));
    connect(ui->lineEdit_SrcL, SIGNAL(textChanged(QString)), this, SLOT(slot_LineSrcLChanged(QString)));
    connect(ui->lineEdit_DesX, SIGNAL(textChanged(QString)), this, SLOT(slot_LineDesXChanged(QString)));
    connect(ui->lineEdit_DesY, SIGNAL(textChanged(QString)), this, SLOT(slot_LineDesLChanged(QString)));
}

Calculate7ParamsDlg::~Calculate7ParamsDlg() = default;

QString Calculate7ParamsDlg::PairText() const
{
    return nameOf(m_pSrcSpatialRef) + QStringLiteral(" -- ") + nameOf(m_pDesSpatialRef);
}

void Calculate7ParamsDlg::OnComboxCurrentIndexChanged_src(int index)
{
    if (index == 0)
        ChooseReference(ui->comboBox_srcSpaRef, m_pSrcSpatialRef, true);
}

void Calculate7ParamsDlg::OnComboxCurrentIndexChanged_des(int index)
{
    if (index == 0)
        ChooseReference(ui->comboBox_desSpaRef, m_pDesSpatialRef, false);
}

bool Calculate7ParamsDlg::ChooseReference(QComboBox* combo, RefPtr& reference, bool source)
{
    const int firstHeader = source ? 1 : 4;
    RefPtr chosen;
    {
        KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
        if (selector.exec() == QDialog::Accepted)
            chosen = selector.GetCoordinateSystem();
    }
    if (!chosen) {
        combo->setCurrentIndex(combo->count() - 1);
        return false;
    }
    chosen->MorphToESRI();
    if (chosen->GetType() == KivGeometry::SRT_Geographic) {
        (source ? ui->radioButton_srcBLH : ui->radioButton_desBLH)->setChecked(true);
        m_session->Table().SetHeaderText(firstHeader, source ? tr("SourceB") : tr("TargetB"));
        m_session->Table().SetHeaderText(firstHeader + 1, source ? tr("SourceL") : tr("TargetL"));
    } else if (chosen->GetType() == KivGeometry::SRT_Projected) {
        (source ? ui->radioButton_srcXYH : ui->radioButton_desXYH)->setChecked(true);
        m_session->Table().SetHeaderText(firstHeader, source ? tr("SourceX") : tr("TargetX"));
        m_session->Table().SetHeaderText(firstHeader + 1, source ? tr("SourceY") : tr("TargetY"));
    }
    reference = chosen;
    if (combo->count() > 1)
        combo->removeItem(combo->count() - 1);
    combo->addItem(chosen->GetName());
    combo->setCurrentIndex(combo->count() - 1);
    return true;
}

void Calculate7ParamsDlg::OnComboxCurrentIndexChanged_SrcCoordStyle(int index)
{
    if (ui->radioButton_srcBLH->isChecked())
        ApplyCoordStyle(index, ui->lineEdit_SrcB, ui->lineEdit_SrcL);
}

void Calculate7ParamsDlg::OnComboxCurrentIndexChanged_DesCoordStyle(int index)
{
    if (ui->radioButton_desBLH->isChecked())
        ApplyCoordStyle(index, ui->lineEdit_DesX, ui->lineEdit_DesY);
}

void Calculate7ParamsDlg::ApplyCoordStyle(int index, QLineEdit* latitude, QLineEdit* longitude)
{
    QString latitudeMask;
    QString longitudeMask;
    switch (index) {
    case 0:
        latitudeMask = QStringLiteral("00:00:00.000000");
        longitudeMask = QStringLiteral("000:00:00.000000");
        break;
    case 1:
        latitudeMask = QStringLiteral("00:00.00000000");
        longitudeMask = QStringLiteral("000:00.00000000");
        break;
    case 4:
        latitudeMask = latitudeZero();
        longitudeMask = longitudeZero();
        break;
    default:
        break;
    }
    // The field shows the mask itself, ready to be typed over; without a
    // mask it is emptied.
    latitude->setInputMask(latitudeMask);
    latitude->setText(latitudeMask);
    longitude->setInputMask(longitudeMask);
    longitude->setText(longitudeMask);
}

void Calculate7ParamsDlg::OnRadiobtnToggled_SrcXYH(bool checked)
{
    SetPlaneMode(checked, ui->lineEdit_SrcB, ui->lineEdit_SrcL, ui->label_srcB, ui->label_srcL);
}

void Calculate7ParamsDlg::OnRadiobtnToggled_DesXYH(bool checked)
{
    SetPlaneMode(checked, ui->lineEdit_DesX, ui->lineEdit_DesY, ui->label_desX, ui->label_desY);
}

void Calculate7ParamsDlg::SetPlaneMode(bool plane, QLineEdit* latitude, QLineEdit* longitude, QLabel* latLabel,
                                       QLabel* lonLabel)
{
    latLabel->setText(plane ? tr("X=") : tr("B="));
    lonLabel->setText(plane ? tr("Y=") : tr("L="));
    if (!plane)
        return;
    // Plane coordinates are plain numbers: an angle mask would garble them.
    for (QLineEdit* edit : {latitude, longitude}) {
        if (!edit->inputMask().isEmpty()) {
            edit->setInputMask(QString());
            edit->clear();
        }
    }
}

void Calculate7ParamsDlg::CheckRange(QLineEdit* edit, const RefPtr& reference, const QString& text, int limit)
{
    if (!isGeographic(reference) || CoordFuncLibrary::ConvertDegMinSecToDeg(text) < limit)
        return;
    if (limit == 90) {
        edit->setText(latitudeZero());
        QMessageBox::warning(this, tr("Error"), tr("Input should be between 0 and 90"));
    } else {
        edit->setText(longitudeZero());
        QMessageBox::warning(this, tr("Error"), tr("Input should be between 0 and 180"));
    }
}

void Calculate7ParamsDlg::slot_LineSrcBChanged(QString text)
{
    CheckRange(ui->lineEdit_SrcB, m_pSrcSpatialRef, text, 90);
}

void Calculate7ParamsDlg::slot_LineSrcLChanged(QString text)
{
    CheckRange(ui->lineEdit_SrcL, m_pSrcSpatialRef, text, 180);
}

void Calculate7ParamsDlg::slot_LineDesXChanged(QString text)
{
    CheckRange(ui->lineEdit_DesX, m_pDesSpatialRef, text, 90);
}

void Calculate7ParamsDlg::slot_LineDesLChanged(QString text)
{
    CheckRange(ui->lineEdit_DesY, m_pDesSpatialRef, text, 180);
}

QString Calculate7ParamsDlg::TableAngle(const QString& text)
{
    const double degrees = CoordFuncLibrary::ConvertDegMinSecToDeg(text);
    return degrees == 0.0 ? QStringLiteral("0") : CoordFuncLibrary::ConvertDegToDegMinSec(degrees);
}

void Calculate7ParamsDlg::OnBtnClickedAdd()
{
    QStringList cells;
    for (QLineEdit* edit : {ui->lineEdit_SrcB, ui->lineEdit_SrcL, ui->lineEdit_SrcH, ui->lineEdit_DesX,
                            ui->lineEdit_DesY, ui->lineEdit_DesH}) {
        if (edit->text().isEmpty()) {
            QMessageBox::warning(this, tr("Error"),
                                 tr("There is one or more coordinate is empty, Please input the coordinate"));
            return;
        }
        cells << edit->text();
    }
    if (isGeographic(m_pSrcSpatialRef)) {
        cells[0] = TableAngle(cells.at(0));
        cells[1] = TableAngle(cells.at(1));
    }
    if (isGeographic(m_pDesSpatialRef)) {
        cells[3] = TableAngle(cells.at(3));
        cells[4] = TableAngle(cells.at(4));
    }
    m_session->AddPoint(cells);
}

void Calculate7ParamsDlg::OnBtnClickedEdit()
{
    m_session->ToggleEdit();
}

void Calculate7ParamsDlg::OnTabWidgetCurrentCellChanged(int currentRow, int, int previousRow, int)
{
    m_session->CurrentRowChanged(currentRow, previousRow);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_SrcB(QString str)
{
    m_session->WriteBack(1, str);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_SrcL(QString str)
{
    m_session->WriteBack(2, str);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_SrcH(QString str)
{
    m_session->WriteBack(3, str);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_DesX(QString str)
{
    m_session->WriteBack(4, str);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_DesY(QString str)
{
    m_session->WriteBack(5, str);
}

void Calculate7ParamsDlg::OnLineEditTextChanged_DesH(QString str)
{
    m_session->WriteBack(6, str);
}

void Calculate7ParamsDlg::OnBtnClickedRemove()
{
    m_session->Remove();
}

void Calculate7ParamsDlg::OnBtnClickedRun()
{
    if (m_session->Table().CheckedCount() < ControlPointCalculation::MinimumPoints7) {
        QMessageBox::warning(this, tr("Error"), tr("Need 3 GCPs at least!"));
        return;
    }
    const QString imported = ui->lineEdit_ImportModel->text();
    if (!imported.isEmpty() && imported.compare(PairText(), Qt::CaseInsensitive) != 0) {
        QMessageBox::warning(this, tr("Warning"),
                             tr("The Transformation model for the imported data is different from the currently "
                                "selected elipsoid.Please reselect the ellipsoid!"));
        return;
    }
    if (ControlPointCalculation::SharesGeographicSystem(m_pSrcSpatialRef.get(), m_pDesSpatialRef.get())) {
        QMessageBox::warning(this, tr("Error"), tr("The Source Spheroid must be different with target Spheroid!"));
        return;
    }
    ControlPointCalculation calculation;
    const ControlPointCalculation::Status status =
        calculation.Calculate7(m_pSrcSpatialRef, m_pDesSpatialRef, m_session->Table().CheckedPoints(6));
    m_session->ShowRun(calculation, status == ControlPointCalculation::Succeeded);
}

void Calculate7ParamsDlg::OnBtnClickedSave()
{
    m_session->Save([this](const double* result) {
        const QString source = ModelEntry::SevenParameterSideName(m_pSrcSpatialRef.get());
        const QString target = ModelEntry::SevenParameterSideName(m_pDesSpatialRef.get());
        return Save7ParamsResultDlg(result, source, target, ModelEntry::ProposedName(source, target), this).exec();
    });
}

void Calculate7ParamsDlg::OnBtnClickedCancel()
{
    reject();
}

void Calculate7ParamsDlg::slot_Export()
{
    m_session->Export(PairText());
}

void Calculate7ParamsDlg::slot_Import()
{
    QString pair;
    m_session->Import(&pair);
    if (!pair.isEmpty())
        ui->lineEdit_ImportModel->setText(pair);
}

void Calculate7ParamsDlg::slot_QualityReport()
{
    m_session->ShowQualityReport(ModelEntry::SevenParameterSideName(m_pSrcSpatialRef.get()),
                                 ModelEntry::SevenParameterSideName(m_pDesSpatialRef.get()));
}
