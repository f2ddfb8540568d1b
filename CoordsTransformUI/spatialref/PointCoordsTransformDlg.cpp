#include "spatialref/PointCoordsTransformDlg.h"

#include "models/ModelStore.h"
#include "models/Set4ParamsDlg.h"
#include "models/Set7ParamsDlg.h"
#include "spatialref/CoordinateConversion.h"
#include "ui_PointCoordsTransformDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QMessageBox>
#include <QRegExp>
#include <QRegExpValidator>

using KivGeometry::CoordFuncLibrary;
using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

namespace {

// The angle literals are held as UTF-8 bytes and go through the local 8-bit
// codec, like every other text of this kind in the plug-in.
QString zeroAngle()
{
    return QString::fromLocal8Bit("0°0′0.000000″");
}

QString latitudeMask()
{
    return QString::fromLocal8Bit("00°00′00.000000″");
}

QString longitudeMask()
{
    return QString::fromLocal8Bit("000°00′00.000000″");
}

/// Shows a degree-minute-second text under its mask. Such a text is no
/// number, so the number validator goes while the mask is on (left on, it can
/// refuse keystrokes); and a mask has no place for a sign, so a negative angle
/// is shown whole, without one.
void showAngle(QLineEdit* edit, const QString& mask, const QString& text)
{
    edit->setValidator(nullptr);
    edit->setInputMask(text.startsWith(QLatin1Char('-')) ? QString() : mask);
    edit->setText(text);
}

} // namespace

PointCoordsTransformDlg::PointCoordsTransformDlg(QWidget* parent)
    : QDialog(parent), ui(new Ui::PointCoordsTransformDlg)
{
    ui->setupUi(this);

    m_validator = new QRegExpValidator(QRegExp(QStringLiteral("100|-?([0-9]*[\\.][0-9]*)")), this);
    ui->lineEdit_OrigL->setValidator(m_validator);
    ui->lineEdit_OrigB->setValidator(m_validator);
    ui->lineEdit_OrigH->setValidator(m_validator);

    loadModels();

    connect(ui->pushButton_Original, SIGNAL(clicked()), this, SLOT(slot_Original()));
    connect(ui->pushButton_Target, SIGNAL(clicked()), this, SLOT(slot_Target()));
    connect(ui->pushButton_7Parameter, SIGNAL(clicked()), this, SLOT(slot_7Parameter()));
    connect(ui->pushButton_Transform, SIGNAL(clicked()), this, SLOT(slot_Transform()));
    connect(ui->checkBox_bCode, SIGNAL(clicked()), this, SLOT(slot_bCode()));
    connect(ui->comboBox_7Parameter, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_ComboBox7Parameter(int)));
    connect(ui->radioButton_5, SIGNAL(toggled(bool)), this, SLOT(slot_SrcMeter(bool)));
    connect(ui->radioButton_6, SIGNAL(toggled(bool)), this, SLOT(slot_DesMeter(bool)));
}

PointCoordsTransformDlg::~PointCoordsTransformDlg() = default;

PointCoordsTransformDlg::Side PointCoordsTransformDlg::source()
{
    return {ui->lineEdit_Original, ui->lineEdit_OrigB, ui->lineEdit_OrigL, ui->lineEdit_OrigH,
            ui->label_2,           ui->label_3,        ui->radioButton,    ui->radioButton_2,
            ui->radioButton_5,     &m_srcRef,          &m_bSrcDec};
}

PointCoordsTransformDlg::Side PointCoordsTransformDlg::target()
{
    return {ui->lineEdit_Target, ui->lineEdit_TargetB, ui->lineEdit_TargetL, ui->lineEdit_TargetH,
            ui->label_7,         ui->label_8,          ui->radioButton_3,    ui->radioButton_4,
            ui->radioButton_6,   &m_desRef,            &m_bDesDec};
}

bool PointCoordsTransformDlg::isGeographic(const SpatialReferencePtr& system) const
{
    return system && system->GetType() == KivGeometry::SRT_Geographic;
}

bool PointCoordsTransformDlg::isProjected(const SpatialReferencePtr& system) const
{
    return system && system->GetType() == KivGeometry::SRT_Projected;
}

void PointCoordsTransformDlg::loadModels()
{
    m_models7 = ModelStore::List(ModelStore::Params7, ModelStore::ReaderPath());
    m_models4 = ModelStore::List(ModelStore::Params4, ModelStore::ReaderPath());
}

void PointCoordsTransformDlg::fillModelCombo()
{
    ui->comboBox_7Parameter->clear();
    // Adding the first name selects it, which takes its values.
    for (const TransformModel& model : m_b4Param ? m_models4 : m_models7)
        ui->comboBox_7Parameter->addItem(model.TransName);
}

void PointCoordsTransformDlg::chooseSystem(const Side& side, const Side& other)
{
    KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
    if (selector.exec() != QDialog::Accepted)
        return;
    const SpatialReferencePtr chosen = selector.GetCoordinateSystem();
    if (!chosen)
        return;
    if (*other.system && (*other.system)->IsSame(chosen)) {
        QMessageBox::warning(this, tr("Warning"), tr("Source Spatial Reference is same with Target!"),
                             QMessageBox::Ok);
        return;
    }
    const SpatialReferencePtr system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(chosen->ExportToWkt());
    if (!system)
        return;
    *side.system = system;
    side.name->setText(system->GetName());
    side.name->setCursorPosition(0);  // long names show their beginning

    if (isGeographic(system)) {
        side.labelB->setText(tr("B"));
        side.labelL->setText(tr("L"));
        side.degree->setEnabled(true);
        side.dms->setEnabled(true);
        side.dms->setChecked(true);
        side.meter->setEnabled(false);
        showAngle(side.b, latitudeMask(), latitudeMask());
        showAngle(side.l, longitudeMask(), longitudeMask());
        side.h->setText(QStringLiteral("0"));
    } else if (isProjected(system)) {
        side.labelB->setText(tr("X"));
        side.labelL->setText(tr("Y"));
        side.degree->setEnabled(false);
        side.dms->setEnabled(false);
        side.meter->setEnabled(true);
        side.meter->setChecked(true);
        for (QLineEdit* edit : {side.b, side.l}) {
            edit->setValidator(m_validator);
            edit->setInputMask(QString());
        }
        side.b->clear();
        side.l->clear();
        side.h->clear();
    }
    // The side now shows DMS or metres. A "Degree" radio that was unchecked
    // while its side was projected left the flag set; clear it here.
    *side.decimal = false;

    const bool sourceProjected = isProjected(m_srcRef);
    ui->checkBox_bCode->setEnabled(sourceProjected);
    if (!sourceProjected) {
        // Unchecked with the flag, so that box and flag keep agreeing.
        ui->checkBox_bCode->setChecked(false);
        m_bCode = false;
    }

    if (m_srcRef && m_desRef) {
        m_srcRef->MorphToESRI();
        m_desRef->MorphToESRI();
        m_b4Param = CoordinateConversion::DialogMode(m_srcRef.get(), m_desRef.get())
                    == CoordinateConversion::FourParameters;
        ui->label_11->setText(m_b4Param ? tr("Transform 4Parameter:") : tr("Transform 7Parameter:"));
        fillModelCombo();
    }

    const bool bothProjected = isProjected(m_srcRef) && isProjected(m_desRef);
    ui->label_11->setEnabled(bothProjected);
    ui->comboBox_7Parameter->setEnabled(bothProjected);
    ui->pushButton_7Parameter->setEnabled(bothProjected);
}

void PointCoordsTransformDlg::slot_Original()
{
    try {
        chooseSystem(source(), target());
    } catch (...) {
    }
}

void PointCoordsTransformDlg::slot_Target()
{
    try {
        chooseSystem(target(), source());
    } catch (...) {
    }
}

void PointCoordsTransformDlg::slot_ComboBox7Parameter(int index)
{
    if (index < 0)
        return;
    const QList<TransformModel>& models = m_b4Param ? m_models4 : m_models7;
    if (index >= models.size())
        return;
    (m_b4Param ? m_4Params : m_7Params) = models.at(index).Params;
}

void PointCoordsTransformDlg::slot_7Parameter()
{
    try {
        int result = QDialog::Rejected;
        if (m_b4Param) {
            Set4ParamsDlg dlg(this);
            result = dlg.exec();
        } else {
            Set7ParamsDlg dlg(this);
            dlg.SetSpatialReferences(m_srcRef, m_desRef);
            result = dlg.exec();
        }
        if (result != QDialog::Accepted)
            return;
        ui->comboBox_7Parameter->clear();
        loadModels();
        fillModelCombo();
    } catch (...) {
    }
}

QString PointCoordsTransformDlg::format(double value) const
{
    if (m_bDesDec || isProjected(m_desRef))
        return QString::number(value, 'f', 6);
    return CoordFuncLibrary::ConvertDegToDegMinSec(value);
}

void PointCoordsTransformDlg::slot_Transform()
{
    try {
        const QString textB = ui->lineEdit_OrigB->text();
        const QString textL = ui->lineEdit_OrigL->text();
        if (textB.isEmpty() || textL.isEmpty()) {
            QMessageBox::warning(this, tr("Warning"), tr("Please enter coordinates!"), QMessageBox::Ok);
            return;
        }
        const QString textH = ui->lineEdit_OrigH->text();
        bool okH = true;
        double h = textH.isEmpty() ? 0.0 : textH.toDouble(&okH);

        if (ui->lineEdit_Original->text().isEmpty()) {
            QMessageBox::warning(this, tr("Warning"), tr("Please enter original coordinate system!"),
                                 QMessageBox::Ok);
            return;
        }
        if (ui->lineEdit_Target->text().isEmpty()) {
            QMessageBox::warning(this, tr("Warning"), tr("Please enter target coordinate system!"), QMessageBox::Ok);
            return;
        }
        if (!m_srcRef || !m_desRef)
            return;

        // B, L (or X, Y) in the surveying order: north first, east second.
        bool okNorth = false, okEast = false;
        double north = 0.0, east = 0.0;
        if (isGeographic(m_srcRef) && !m_bSrcDec) {
            north = CoordFuncLibrary::ConvertDegMinSecToDeg(textB, &okNorth);
            east = CoordFuncLibrary::ConvertDegMinSecToDeg(textL, &okEast);
        } else {
            north = textB.toDouble(&okNorth);
            east = textL.toDouble(&okEast);
        }
        // A lone "-" or ".", or a half-typed angle, is not a point: the last
        // result stays. The height only matters where it is converted.
        if (!okNorth || !okEast || (!m_b4Param && !okH))
            return;

        CoordinateConversion conversion(m_srcRef, m_desRef);
        conversion.SetMode(m_b4Param ? CoordinateConversion::FourParameters : CoordinateConversion::SevenParameters);
        // A seven-parameter model of any other size than seven leaves the
        // conversion not ready, and the result fields as they are. A
        // four-parameter model of fewer than four values is no model.
        conversion.SetParams(m_b4Param ? m_4Params : m_7Params);
        // As in the file conversion and the command-line tool: a projected
        // source's Y carries its zone number in front, removed before
        // converting. Results are written without one.
        conversion.SetCodeNumber(m_bCode);
        if (!conversion.Convert(north, east, h))
            return;

        const QString resultB = format(north);
        const QString resultL = format(east);
        if (m_bDesDec || !isGeographic(m_desRef)) {
            ui->lineEdit_TargetB->setText(resultB);
            ui->lineEdit_TargetL->setText(resultL);
        } else {
            showAngle(ui->lineEdit_TargetB, latitudeMask(), resultB);
            showAngle(ui->lineEdit_TargetL, longitudeMask(), resultL);
        }
        // A plane model leaves the height alone: it is shown as it was typed.
        ui->lineEdit_TargetH->setText(m_b4Param ? textH : QString::number(h, 'f', 6));
    } catch (...) {
    }
}

void PointCoordsTransformDlg::slot_bCode()
{
    m_bCode = ui->checkBox_bCode->checkState() == Qt::Checked;
}

void PointCoordsTransformDlg::toggleDecimal(const Side& side, bool checked)
{
    if (!isGeographic(*side.system))
        return;
    if (checked) {
        *side.decimal = true;
        const double b = CoordFuncLibrary::ConvertDegMinSecToDeg(side.b->text());
        const double l = CoordFuncLibrary::ConvertDegMinSecToDeg(side.l->text());
        for (QLineEdit* edit : {side.b, side.l}) {
            edit->setInputMask(QString());
            edit->setValidator(m_validator);
        }
        side.b->setText(QString::number(b, 'f', 12));
        side.l->setText(QString::number(l, 'f', 12));
    } else {
        *side.decimal = false;
        QString b = CoordFuncLibrary::ConvertDegToDegMinSec(side.b->text().toDouble());
        QString l = CoordFuncLibrary::ConvertDegToDegMinSec(side.l->text().toDouble());
        if (b == zeroAngle())
            b = latitudeMask();
        if (l == zeroAngle())
            l = longitudeMask();
        showAngle(side.b, latitudeMask(), b);
        showAngle(side.l, longitudeMask(), l);
    }
}

void PointCoordsTransformDlg::OnRadioToggledTargDec(bool checked)
{
    try {
        toggleDecimal(target(), checked);
    } catch (...) {
    }
}

void PointCoordsTransformDlg::OnRadioToggledSrcDec(bool checked)
{
    try {
        toggleDecimal(source(), checked);
    } catch (...) {
    }
}

void PointCoordsTransformDlg::meter(const Side& side, bool checked)
{
    if (!checked || !isGeographic(*side.system))
        return;
    for (QLineEdit* edit : {side.b, side.l}) {
        edit->setValidator(m_validator);
        edit->setInputMask(QString());
        edit->clear();
    }
}

void PointCoordsTransformDlg::slot_SrcMeter(bool checked)
{
    try {
        meter(source(), checked);
    } catch (...) {
    }
}

void PointCoordsTransformDlg::slot_DesMeter(bool checked)
{
    try {
        meter(target(), checked);
    } catch (...) {
    }
}
