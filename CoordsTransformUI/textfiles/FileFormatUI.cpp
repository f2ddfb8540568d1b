#include "textfiles/FileFormatUI.h"

#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"
#include "ui_FileFormatUI.h"

#include <QMessageBox>
#include <QStandardItemModel>

FileFormatUI::FileFormatUI(const QStringList& existingNames, QWidget* parent)
    : QDialog(parent), ui(new Ui::FileFormatUI), m_existingNames(existingNames)
{
    ui->setupUi(this);

    ui->comboBox->addItems({QStringLiteral(","), QStringLiteral(" "), QStringLiteral(";"), QStringLiteral("\t")});
    m_separator = ui->comboBox->currentText();

    m_fieldModel = new QStandardItemModel(this);
    static const char* const kFieldNames[] = {QT_TR_NOOP("PointID"), QT_TR_NOOP("Latitude"),
                                              QT_TR_NOOP("Longitude"), QT_TR_NOOP("altitude"), QT_TR_NOOP("other")};
    for (const char* name : kFieldNames) {
        auto* item = new QStandardItem(tr(name));
        item->setEditable(false);
        m_fieldModel->appendRow(item);
    }
    ui->listView->setModel(m_fieldModel);

    connect(ui->checkBox_Title, SIGNAL(stateChanged(int)), this, SLOT(slot_CheckboxUseTitle(int)));
    connect(ui->listView, SIGNAL(clicked(QModelIndex)), this, SLOT(OnClickedListView(QModelIndex)));
    connect(ui->comboBox, SIGNAL(currentIndexChanged(int)), this, SLOT(slot_Separator(int)));
    connect(ui->pushButton_Add, SIGNAL(clicked()), this, SLOT(slot_Add()));
    connect(ui->pushButton_Clear, SIGNAL(clicked()), this, SLOT(slot_Clear()));
    connect(ui->pushButton_Ok, SIGNAL(clicked()), this, SLOT(slot_Ok()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(slot_Cancel()));
}

FileFormatUI::FileFormatUI(QWidget* parent) : FileFormatUI(QStringList(), parent)
{
}

FileFormatUI::~FileFormatUI() = default;

QString FileFormatUI::GetTitleFlag() const
{
    return m_useTitle ? tr("Title") : tr("NoTitle");
}

void FileFormatUI::slot_CheckboxUseTitle(int state)
{
    m_useTitle = state == Qt::Checked;
}

void FileFormatUI::OnClickedListView(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    m_selectedText = index.data().toString() + QLatin1Char(' ');
    m_selectedCode = index.row();
}

void FileFormatUI::slot_Separator(int index)
{
    m_separator = ui->comboBox->itemText(index);
}

void FileFormatUI::slot_Add()
{
    if (m_selectedCode < 0)
        return;  // no field picked yet

    const QStringList pieces = ui->textEdit->toPlainText().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString candidate = m_selectedText.left(m_selectedText.size() - 1);
    for (const QString& piece : pieces) {
        bool singleUse = false;
        for (int row = 0; row < 4; ++row) {
            if (piece == m_fieldModel->item(row)->text()
                || piece == TextFileFormat::KindName(TextFileFormat::FieldKind(row)))
                singleUse = true;
        }
        if (singleUse && piece.compare(candidate, Qt::CaseInsensitive) == 0) {
            QMessageBox::warning(this, tr("Warning"), tr("The same field has been added,please read it!"),
                                 QMessageBox::Ok);
            return;
        }
    }
    ui->textEdit->insertPlainText(m_selectedText);
    m_addedCodes.append(m_selectedCode);
}

void FileFormatUI::slot_Clear()
{
    ui->textEdit->clear();
}

void FileFormatUI::slot_Ok()
{
    const QString name = ui->lineEdit_Name->text();
    if (name.isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("The name can not be empty!"), QMessageBox::Ok);
        return;
    }
    // The name becomes a file name inside the format folder; it may not lead
    // out of it or be refused by the file system half-way.
    if (!FileFormatDirectory::IsValidName(name + QStringLiteral(".xml"))) {
        QMessageBox::warning(this, tr("Warning"),
                             tr("The name can not contain / \\ : * ? \" < > | or control characters!"),
                             QMessageBox::Ok);
        return;
    }
    // The record text that carries a format to the conversion is split at
    // blanks, so a blank in the name would shift every field by one.
    if (name.contains(QLatin1Char(' '))) {
        QMessageBox::warning(this, tr("Warning"), tr("The name can not contain blanks!"), QMessageBox::Ok);
        return;
    }
    if (m_separator.isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("The Separator can not be empty!"), QMessageBox::Ok);
        return;
    }
    const QString fileName = name + QStringLiteral(".xml");
    for (const QString& existing : m_existingNames) {
        if (existing.compare(fileName, Qt::CaseInsensitive) == 0) {
            QMessageBox::warning(this, tr("Warning"),
                                 tr("There is a file with the same name.Please reset the file name!"),
                                 QMessageBox::Ok);
            return;
        }
    }
    QString fieldList = ui->textEdit->toPlainText();
    fieldList.chop(1);  // the blank that follows every added field
    if (fieldList.split(QLatin1Char(' '), Qt::SkipEmptyParts).isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), tr("Please enter the correct file format!"), QMessageBox::Ok);
        m_addedCodes.clear();
        return;
    }
    if (!m_addedCodes.contains(TextFileFormat::Latitude) || !m_addedCodes.contains(TextFileFormat::Longitude)) {
        QMessageBox::warning(this, tr("Warning"), tr("The output file must have longitude and latitude!"),
                             QMessageBox::Ok);
        return;
    }

    m_name = fileName;
    m_fieldList = fieldList;
    FileFormatDirectory::Write(m_name, GetTitleFlag(), m_fieldList, m_separator);
    accept();
}

void FileFormatUI::slot_Cancel()
{
    reject();
}
