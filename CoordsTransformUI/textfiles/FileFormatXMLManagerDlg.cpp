#include "textfiles/FileFormatXMLManagerDlg.h"

#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatUI.h"
#include "textfiles/TextFileFormat.h"
#include "ui_FileFormatXMLManagerDlg.h"

#include <QFile>
#include <QFileInfo>
#include <QListWidgetItem>

FileFormatXMLManagerDlg::FileFormatXMLManagerDlg(QWidget* parent)
    : QDialog(parent), ui(new Ui::FileFormatXMLManagerDlg)
{
    ui->setupUi(this);

    m_formatDir = FileFormatDirectory::Path() + QLatin1Char('/');
    const QStringList files = FileFormatDirectory::ListFiles(m_formatDir);
    for (const QString& file : files)
        appendItem(QFileInfo(file).fileName());
    m_records = FileFormatDirectory::LoadRecords(files);
    ui->checkBox_selAll->setChecked(true);

    connect(ui->pushButton_Add, SIGNAL(clicked()), this, SLOT(slot_AddFileFormatPath()));
    connect(ui->pushButton_Remove, SIGNAL(clicked()), this, SLOT(slot_RemoveFileFormatPath()));
    connect(ui->checkBox_selAll, SIGNAL(clicked()), this, SLOT(slot_checkboxClick_SelAll()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(slot_Cancel()));
}

FileFormatXMLManagerDlg::~FileFormatXMLManagerDlg() = default;

void FileFormatXMLManagerDlg::appendItem(const QString& fileName)
{
    auto* item = new QListWidgetItem(fileName, ui->listWidget);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
}

void FileFormatXMLManagerDlg::slot_AddFileFormatPath()
{
    QStringList names;
    for (int i = 0; i < ui->listWidget->count(); ++i)
        names << ui->listWidget->item(i)->text();

    FileFormatUI editor(names, this);
    if (editor.exec() != QDialog::Accepted)
        return;
    m_records << TextFileFormat::RecordText(editor.GetFileName(), editor.GetFieldList(), editor.GetTitleFlag(),
                                            editor.GetSeparator());
    appendItem(editor.GetFileName());
}

void FileFormatXMLManagerDlg::slot_RemoveFileFormatPath()
{
    for (int row = ui->listWidget->count() - 1; row >= 0; --row) {
        QListWidgetItem* item = ui->listWidget->item(row);
        if (item->checkState() != Qt::Checked)
            continue;
        // A file that cannot be deleted goes from the list all the same.
        QFile::remove(m_formatDir + QLatin1Char('/') + item->text());
        // Records stop at the first unreadable file, so there may be fewer.
        if (row < m_records.size())
            m_records.removeAt(row);
        delete item;
    }
    if (m_records.isEmpty())
        ui->checkBox_selAll->setChecked(false);
}

void FileFormatXMLManagerDlg::slot_checkboxClick_SelAll()
{
    const Qt::CheckState state = ui->checkBox_selAll->isChecked() ? Qt::Checked : Qt::Unchecked;
    for (int i = 0; i < ui->listWidget->count(); ++i)
        ui->listWidget->item(i)->setCheckState(state);
}

void FileFormatXMLManagerDlg::slot_Cancel()
{
    reject();
}
