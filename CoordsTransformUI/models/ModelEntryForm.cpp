#include "models/ModelEntryForm.h"

#include "models/ModelEntry.h"
#include "models/ModelImportFile.h"

#include "KivUI/EnvironmentSetting.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>

namespace {

QString translate(const QDialog* dialog, const char* text)
{
    return QCoreApplication::translate(dialog->metaObject()->className(), text);
}

} // namespace

ModelEntryForm::ModelEntryForm(QDialog* dialog, ModelStore::Kind kind, QLineEdit* source, QLineEdit* target,
                               QLineEdit* name, const QList<Field>& fields)
    : m_dialog(dialog), m_kind(kind), m_source(source), m_target(target), m_name(name), m_fields(fields),
      m_writer(dialog, kind, ModelWriter::RefuseTaken, true, translate(dialog, "Error"))
{
}

void ModelEntryForm::ProposeName()
{
    m_name->setText(ModelEntry::ProposedName(m_source->text(), m_target->text()));
}

void ModelEntryForm::Import()
{
    const QString path = QFileDialog::getOpenFileName(m_dialog, translate(m_dialog, "Open Text File"),
                                                      KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
                                                      translate(m_dialog, "Text Files (*.txt);;CSV Files(*.csv)"));
    if (path.isEmpty())
        return;
    for (const auto& pair : ModelImportFile::Read(path)) {
        for (const Field& field : m_fields) {
            if (pair.first == QString::fromLocal8Bit(field.key)) {
                field.edit->setText(pair.second);
                break;
            }
        }
    }
}

QStringList ModelEntryForm::Texts() const
{
    QStringList texts;
    for (const Field& field : m_fields)
        texts << field.edit->text();
    return texts;
}

bool ModelEntryForm::Check() const
{
    if (!m_writer.RequireNames(m_source->text(), m_target->text(), m_name->text()))
        return false;
    const char* missing = ModelEntry::MissingParameter(Texts());
    return !missing || m_writer.Require(QString(), missing);
}

void ModelEntryForm::Save(const QString& savedMessage)
{
    if (!m_writer.Write(ModelEntry::Entered(m_source->text(), m_name->text(), Texts())))
        return;
    QMessageBox::information(m_dialog, translate(m_dialog, "Information"), savedMessage);
    m_dialog->accept();
}
