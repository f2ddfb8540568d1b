#include "spatialref/NewGeoCoorSysDlg.h"

#include "spatialref/SystemComposer.h"
#include "ui_NewGeoCoorSysDlg.h"

#include "KivGeometry/GeographicCoordinateSystem.h"

#include <QMessageBox>

NewGeoCoorSysDlg::NewGeoCoorSysDlg(QWidget* parent) : QDialog(parent), ui(new Ui::NewGeoCoorSysDlg)
{
    ui->setupUi(this);
    setWindowTitle(tr("New Geographic Coordinate System"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    ui->SemiMaj_lineEdit->setReadOnly(true);
    ui->SemiMin_lineEdit->setReadOnly(true);
    ui->inverFlatt_lineEdit->setReadOnly(true);
    ui->radians_lineEdit->setReadOnly(true);

    // A name typed into an editable combo stays its text; adding it as an
    // item would break the link between item i and catalogue record i - 1.
    for (QComboBox* combo : {ui->datumName_comboBox, ui->unitName_comboBox, ui->centrlMerName_comboBox})
        combo->setInsertPolicy(QComboBox::NoInsert);
    const QString custom = "<Custom>";
    ui->datumName_comboBox->insertItem(0, custom);
    ui->unitName_comboBox->insertItem(0, custom);
    ui->centrlMerName_comboBox->insertItem(0, custom);

    const QString folder = SpatialReferenceCatalogue::Folder();
    readCatalogue(folder + "//SPHEROID.xml", 5, &m_spheroids);
    readCatalogue(folder + "//AngularUnit.xml", 2, &m_angularUnits);
    readCatalogue(folder + "//PrimeMeridian.xml", 4, &m_primeMeridians);
    m_datumNames = SpatialReferenceCatalogue::Column(m_spheroids, 0);
    ui->datumName_comboBox->addItems(m_datumNames);
    ui->spheroidName_comboBox->addItems(SpatialReferenceCatalogue::Column(m_spheroids, 1));
    const QStringList unitNames = SpatialReferenceCatalogue::Column(m_angularUnits, 0);
    ui->unitName_comboBox->addItems(unitNames);
    const QStringList meridianNames = SpatialReferenceCatalogue::Column(m_primeMeridians, 0);
    ui->centrlMerName_comboBox->addItems(meridianNames);

    connect(ui->unitName_comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(OnAngularCombo(int)));
    connect(ui->datumName_comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(OnDatumCombo(int)));
    connect(ui->centrlMerName_comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(OnPrimeMerdianCombo(int)));
    connect(ui->okButton, SIGNAL(clicked()), this, SLOT(OnBtnOk()));
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(OnBtnCancel()));

    // A default missing from its catalogue selects "<Custom>". Every default
    // runs its handler, also when the combo already stands at that index (it
    // then emits nothing), so the value fields always match the selection.
    const auto select = [this](QComboBox* combo, int index, void (NewGeoCoorSysDlg::*handler)(int)) {
        if (combo->currentIndex() == index)
            (this->*handler)(index);
        else
            combo->setCurrentIndex(index);
    };
    select(ui->datumName_comboBox, m_datumNames.indexOf("D_WGS_1984") + 1, &NewGeoCoorSysDlg::OnDatumCombo);
    select(ui->unitName_comboBox, unitNames.indexOf("Degree") + 1, &NewGeoCoorSysDlg::OnAngularCombo);
    select(ui->centrlMerName_comboBox, meridianNames.indexOf("Greenwich") + 1, &NewGeoCoorSysDlg::OnPrimeMerdianCombo);
}

NewGeoCoorSysDlg::~NewGeoCoorSysDlg() = default;

void NewGeoCoorSysDlg::readCatalogue(const QString& file, int fieldCount, QList<QStringList>* records)
{
    switch (SpatialReferenceCatalogue::ReadRecords(file, fieldCount, records)) {
    case SpatialReferenceCatalogue::OpenFailed:
        QMessageBox::information(this, windowTitle(), tr("Parse spatial reference file failed!"), QMessageBox::Ok);
        break;
    case SpatialReferenceCatalogue::ParseFailed:
        QMessageBox::information(this, windowTitle(), tr("Read spatial reference file failed!"), QMessageBox::Ok);
        break;
    case SpatialReferenceCatalogue::Ok:
        break;
    }
}

void NewGeoCoorSysDlg::OnDatumCombo(int index)
{
    if (index == 0) {
        ui->spheroidName_comboBox->setEnabled(true);
        ui->datumName_comboBox->setEditable(true);
        return;
    }
    ui->datumName_comboBox->setEditable(false);
    if (index < 1 || index > m_spheroids.size())
        return;
    const QStringList& record = m_spheroids.at(index - 1);
    ui->spheroidName_comboBox->setCurrentIndex(index - 1);
    ui->SemiMaj_lineEdit->setText(record.value(2));
    ui->SemiMin_lineEdit->setText(record.value(3));
    ui->inverFlatt_lineEdit->setText(record.value(4));
    ui->spheroidName_comboBox->setEnabled(false);
}

void NewGeoCoorSysDlg::OnAngularCombo(int index)
{
    if (index == 0) {
        ui->unitName_comboBox->setEditable(true);
        ui->radians_lineEdit->setReadOnly(false);
        return;
    }
    ui->unitName_comboBox->setEditable(false);
    ui->radians_lineEdit->setReadOnly(true);
    if (index >= 1 && index <= m_angularUnits.size())
        ui->radians_lineEdit->setText(m_angularUnits.at(index - 1).value(1));
}

void NewGeoCoorSysDlg::OnPrimeMerdianCombo(int index)
{
    QLineEdit* const fields[] = {ui->centMerDgre_lineEdit, ui->centMerMina_lineEdit, ui->centMerSecs_lineEdit};
    if (index == 0) {
        ui->centrlMerName_comboBox->setEditable(true);
        for (QLineEdit* field : fields)
            field->setReadOnly(false);
        return;
    }
    ui->centrlMerName_comboBox->setEditable(false);
    for (int i = 0; i < 3; ++i) {
        if (index >= 1 && index <= m_primeMeridians.size())
            fields[i]->setText(m_primeMeridians.at(index - 1).value(i + 1));
        fields[i]->setReadOnly(true);
    }
}

bool NewGeoCoorSysDlg::ModifyAssistant(QString wkt)
{
    try {
        KivGeometry::GeographicCoordinateSystem geographic;
        geographic.ImportFromWkt(wkt);
        const auto datum = geographic.GetDatum();
        const QString key = "D_" + (datum ? datum->GetName() : QString());
        const int index = m_datumNames.indexOf(key);
        if (index < 0) {
            QMessageBox::information(this, windowTitle(),
                                     tr("The current projection coordinate system does not support modification!"),
                                     QMessageBox::Ok);
            return false;
        }
        ui->geoCoorName_lineEdit->setText(geographic.GetName());
        ui->datumName_comboBox->setCurrentIndex(index + 1);
        return true;
    } catch (...) {
        return false;
    }
}

void NewGeoCoorSysDlg::OnBtnOk()
{
    m_srsName = ui->geoCoorName_lineEdit->text();
    if (m_srsName.isEmpty()) {
        // The form has already accepted: the dialog closes with the old result.
        QMessageBox::warning(this, windowTitle(),
                             tr("Please enter a valid name of the new geographic coordinate system!"),
                             QMessageBox::Ok);
        return;
    }
    m_srsWkt = SystemComposer::Geographic(
        m_srsName, ui->datumName_comboBox->currentText(), ui->spheroidName_comboBox->currentText(),
        ui->SemiMaj_lineEdit->text(), ui->inverFlatt_lineEdit->text(), ui->centrlMerName_comboBox->currentText(),
        ui->centMerDgre_lineEdit->text(), ui->centMerMina_lineEdit->text(), ui->centMerSecs_lineEdit->text(),
        ui->unitName_comboBox->currentText(), ui->radians_lineEdit->text());
}

void NewGeoCoorSysDlg::OnBtnCancel()
{
    // The form's own connection has rejected already; nothing else to undo.
}
