#include "spatialref/NewProjCoorSysDlg.h"

#include "spatialref/NewGeoCoorSysDlg.h"
#include "spatialref/SpatialReferenceCatalogue.h"
#include "spatialref/SystemComposer.h"
#include "ui_NewProjCoorSysDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <QDomDocument>
#include <QHeaderView>
#include <QMessageBox>
#include <QRegExp>

NewProjCoorSysDlg::NewProjCoorSysDlg(QWidget* parent) : QDialog(parent), ui(new Ui::NewProjCoorSysDlg)
{
    ui->setupUi(this);
    setWindowTitle(tr("New Projection Coordinate System"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    ui->unit_lineEdit->setReadOnly(true);
    ui->modifyGeo_pushButton->setEnabled(false);

    const QString folder = SpatialReferenceCatalogue::Folder();
    const auto report = [this](SpatialReferenceCatalogue::Status status) {
        if (status == SpatialReferenceCatalogue::OpenFailed)
            QMessageBox::information(this, windowTitle(), tr("Parse spatial reference file failed!"), QMessageBox::Ok);
        else if (status == SpatialReferenceCatalogue::ParseFailed)
            QMessageBox::information(this, windowTitle(), tr("Read spatial reference file failed!"), QMessageBox::Ok);
    };
    QList<QStringList> records;
    report(SpatialReferenceCatalogue::ReadRecords(folder + "//SPHEROID.xml", 5, &records));
    m_datumNames = SpatialReferenceCatalogue::Column(records, 0);

    m_projectionFile = folder + "//Projection.xml";
    readProjections(ListMode);

    records.clear();
    report(SpatialReferenceCatalogue::ReadRecords(folder + "//LinearUnit.xml", 2, &records));
    ui->uintName_comboBox->addItems(SpatialReferenceCatalogue::Column(records, 0));
    m_metersPerUnit = SpatialReferenceCatalogue::Column(records, 1);

    ui->tableWidget->setColumnCount(2);
    ui->tableWidget->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    OnProjCombo(0);
    ui->uintName_comboBox->setCurrentIndex(ui->uintName_comboBox->count() - 1);
    ui->unit_lineEdit->setText(m_metersPerUnit.isEmpty() ? QString() : m_metersPerUnit.last());

    connect(ui->uintName_comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(OnLinearCombo(int)));
    connect(ui->projName_comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(OnProjCombo(int)));
    connect(ui->selectGeo_pushButton, SIGNAL(clicked()), this, SLOT(OnSelectGeoCoor()));
    connect(ui->newGeo_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnNewGeoCoor()));
    connect(ui->modifyGeo_pushButton, SIGNAL(clicked()), this, SLOT(OnBtnModify()));
    connect(ui->okButton, SIGNAL(clicked()), this, SLOT(OnBtnOk()));
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(OnBtnCancel()));
}

NewProjCoorSysDlg::~NewProjCoorSysDlg() = default;

void NewProjCoorSysDlg::readProjections(ProjectionMode mode, int index)
{
    QDomDocument document;
    switch (SpatialReferenceCatalogue::ReadDocument(m_projectionFile, &document)) {
    case SpatialReferenceCatalogue::OpenFailed:
        QMessageBox::information(this, windowTitle(), tr("Parse spatial reference file failed!"), QMessageBox::Ok);
        return;
    case SpatialReferenceCatalogue::ParseFailed:
        QMessageBox::information(this, windowTitle(), tr("Read spatial reference file failed!"), QMessageBox::Ok);
        return;
    case SpatialReferenceCatalogue::Ok:
        break;
    }
    const QDomElement root = document.documentElement();
    if (mode == ListMode) {
        for (QDomNode projection = root.firstChild(); !projection.isNull(); projection = projection.nextSibling())
            for (QDomNode node = projection.firstChild(); !node.isNull(); node = node.nextSibling())
                if (node.nodeName() == "NAME")
                    m_projectionNames << node.toElement().text();
        ui->projName_comboBox->insertItems(ui->projName_comboBox->count(), m_projectionNames);
        return;
    }
    if (index < 0 || index >= m_projectionNames.size())
        return;
    for (QDomElement projection = root.firstChildElement(); !projection.isNull();
         projection = projection.nextSiblingElement()) {
        if (projection.firstChildElement("NAME").text() != m_projectionNames.at(index))
            continue;
        m_parameters.clear();
        for (QDomElement parameter = projection.firstChildElement(); !parameter.isNull();
             parameter = parameter.nextSiblingElement())
            if (parameter.nodeName() != "NAME")
                m_parameters.insert(parameter.attribute("key"), parameter.text());
        return;
    }
}

void NewProjCoorSysDlg::OnProjCombo(int index)
{
    ui->tableWidget->setHorizontalHeaderLabels({tr("Parameter"), tr("Value")});
    readProjections(ParameterMode, index);
    ui->tableWidget->setRowCount(m_parameters.size());
    QFont font(ui->projName_comboBox->font().family(), ui->projName_comboBox->font().pointSize());
    int row = 0;
    for (auto it = m_parameters.cbegin(); it != m_parameters.cend(); ++it, ++row) {
        auto* name = new QTableWidgetItem(it.key());
        name->setFlags(name->flags() & ~Qt::ItemIsEditable);
        name->setFont(font);
        auto* value = new QTableWidgetItem(it.value());
        value->setFont(font);
        ui->tableWidget->setItem(row, 0, name);
        ui->tableWidget->setItem(row, 1, value);
    }
}

void NewProjCoorSysDlg::OnLinearCombo(int index)
{
    ui->uintName_comboBox->setCurrentIndex(index);
    ui->unit_lineEdit->setText(m_metersPerUnit.value(index));
}

void NewProjCoorSysDlg::refreshModifyButton()
{
    if (!ui->geoCoorInfo_textEdit->toPlainText().isEmpty())
        ui->modifyGeo_pushButton->setEnabled(true);
}

void NewProjCoorSysDlg::showGeographic(const QString& wkt)
{
    KivGeometry::GeographicCoordinateSystem geographic;
    geographic.ImportFromWkt(wkt);
    ui->geoCoorInfo_textEdit->clear();
    ui->geoCoorInfo_textEdit->append(geographic.ExportToPrettyWkt());
}

void NewProjCoorSysDlg::OnSelectGeoCoor()
{
    try {
        KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
        if (selector.exec() == QDialog::Accepted) {
            ui->geoCoorInfo_textEdit->clear();
            const auto system = selector.GetCoordinateSystem();
            if (!system || system->GetType() != KivGeometry::SRT_Geographic) {
                QMessageBox::information(this, windowTitle(),
                                         tr("Spatial Reference type must be geographic coordinate system!"),
                                         QMessageBox::Ok);
                return;
            }
            ui->geoCoorInfo_textEdit->append(system->ExportToPrettyWkt());
        }
        refreshModifyButton();
    } catch (...) {
    }
}

void NewProjCoorSysDlg::OnBtnNewGeoCoor()
{
    try {
        NewGeoCoorSysDlg dialog(this);
        if (dialog.exec() == QDialog::Accepted)
            showGeographic(dialog.GetSrsWkt());
        refreshModifyButton();
    } catch (...) {
    }
}

void NewProjCoorSysDlg::OnBtnModify()
{
    try {
        NewGeoCoorSysDlg dialog(this);
        dialog.setWindowTitle(tr("Geographic Coordinate System"));
        if (!dialog.ModifyAssistant(ui->geoCoorInfo_textEdit->toPlainText()))
            return;
        if (dialog.exec() == QDialog::Accepted)
            showGeographic(dialog.GetSrsWkt());
    } catch (...) {
    }
}

void NewProjCoorSysDlg::OnBtnOk()
{
    // The form has accepted already: a failed check leaves the old result.
    const QString name = ui->lineEdit->text();
    if (name.isEmpty()) {
        QMessageBox::warning(this, windowTitle(), tr("Please enter a valid name of the new projection coordinate system!"),
                             QMessageBox::Ok);
        return;
    }
    const QString geographic = ui->geoCoorInfo_textEdit->toPlainText();
    if (geographic.isEmpty()) {
        QMessageBox::warning(this, windowTitle(), tr("Please enter a valid geographic coordinate system!"),
                             QMessageBox::Ok);
        return;
    }
    QMap<QString, QString> parameters;
    for (int row = 0; row < ui->tableWidget->rowCount(); ++row) {
        const QTableWidgetItem* key = ui->tableWidget->item(row, 0);
        const QTableWidgetItem* value = ui->tableWidget->item(row, 1);
        parameters.insert(key ? key->text() : QString(), value ? value->text() : QString());
    }
    m_srsWkt = SystemComposer::Projected(name, geographic, ui->projName_comboBox->currentText(), parameters,
                                         ui->uintName_comboBox->currentText(),
                                         m_metersPerUnit.value(ui->uintName_comboBox->currentIndex()));
    m_srsName = name;
}

void NewProjCoorSysDlg::OnBtnCancel()
{
    // The form's own connection has rejected already.
}

namespace {

// The text with the blanks and line breaks between tokens removed, so that
// the platform's indented WKT is searched like one-line WKT. Quoted names
// keep their blanks.
QString withoutLayout(const QString& wkt)
{
    QString flat;
    flat.reserve(wkt.size());
    bool quoted = false;
    for (const QChar c : wkt) {
        if (c == '"')
            quoted = !quoted;
        if (quoted || !c.isSpace())
            flat += c;
    }
    return flat;
}

} // namespace

bool NewProjCoorSysDlg::ModifyAssistant(QString wkt)
{
    try {
        KivGeometry::ProjectedCoordinateSystem projected;
        projected.ImportFromWkt(wkt);
        const auto geographic = projected.GetGeographicCoordinateSystem();
        const auto datum = geographic ? geographic->GetDatum() : nullptr;
        const int datumIndex = m_datumNames.indexOf("D_" + (datum ? datum->GetName() : QString()));

        // The projection name is cut out of the text itself: from PROJECTION["
        // to two characters past the "],PARAMETER that follows, split at
        // quotes, full stops and asterisks (so a name with a full stop is
        // never found).
        QString projectionName;
        wkt = withoutLayout(wkt);
        const int start = wkt.indexOf("PROJECTION[\"");
        if (start >= 0) {
            const int end = wkt.indexOf("\"],PARAMETER", start);
            if (end >= 0) {
                const QStringList parts = wkt.mid(start, end + 2 - start + 1).split(QRegExp("[\".*\"]"));
                projectionName = parts.value(1);
            }
        }
        const int projectionIndex = projectionName.isEmpty() ? -1 : m_projectionNames.indexOf(projectionName);
        if (datumIndex < 0 || projectionIndex < 0) {
            QMessageBox::information(this, windowTitle(),
                                     tr("The current projection coordinate system does not support modification!"),
                                     QMessageBox::Ok);
            return false;
        }
        ui->lineEdit->setText(projected.GetName());
        ui->projName_comboBox->setCurrentIndex(projectionIndex);
        ui->geoCoorInfo_textEdit->clear();
        ui->geoCoorInfo_textEdit->append(geographic->ExportToPrettyWkt());
        refreshModifyButton();
        return true;
    } catch (...) {
        return false;
    }
}
