#include "models/ControlPointTransfer.h"

#include "models/ControlPointTable.h"

#include "KivUI/EnvironmentSetting.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextCodec>
#include <QWidget>

ControlPointTransfer::ControlPointTransfer(QWidget* dialog, ControlPointTable* table, ControlPointFile::Kind kind)
    : m_dialog(dialog), m_table(table), m_kind(kind)
{
}

QString ControlPointTransfer::Tr(const char* text) const
{
    return QCoreApplication::translate(m_dialog->metaObject()->className(), text);
}

QString ControlPointTransfer::AskFile(bool save) const
{
    KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
    const QString caption = Tr("Open Text File");
    const QString filter = Tr("Text Files (*.txt);;CSV Files(*.csv)");
    const QString path = save
        ? QFileDialog::getSaveFileName(m_dialog, caption, settings->GetCurrentWorkDir(), filter)
        : QFileDialog::getOpenFileName(m_dialog, caption, settings->GetCurrentWorkDir(), filter);
    if (!path.isEmpty())
        settings->SetCurrentWorkDir(QFileInfo(path).absolutePath());
    return path;
}

void ControlPointTransfer::Export(const QString& pair, const QString& resultText)
{
    const QString path = AskFile(true);
    if (path.isEmpty())
        return;

    const ControlPointFile file(m_kind);
    bool opened = false;
    const bool written = file.Write(path, pair, resultText, m_table->HeaderTexts(), m_table->CheckedRows(), &opened);
    if (!opened)
        return;
    if (ControlPointFile::IsCommaSeparated(path))
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB18030"));
    if (written)
        QMessageBox::information(m_dialog, Tr("Information"), Tr("Export success!"));
    else
        QMessageBox::warning(m_dialog, Tr("Warning"), Tr("Export failed!"));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

bool ControlPointTransfer::Import(QString* pair)
{
    const QString path = AskFile(false);
    if (path.isEmpty())
        return false;

    ControlPointFile file(m_kind);
    const QStringList headers = m_table->HeaderTexts();
    if (!file.Read(path, headers.value(0)))
        return false;
    if (pair && !file.ReferencePair().isEmpty())
        *pair = file.ReferencePair();
    for (const ControlPointFile::Point& point : file.Points())
        m_table->AddPoint(point.cells);
    if (file.Points().isEmpty()) {
        QMessageBox::information(m_dialog, Tr("Information"), Tr("This File is not Vaild!"));
        return false;
    }
    return true;
}
