#include "models/ModelWriter.h"

#include "models/ModelEntry.h"

#include <QCoreApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>

ModelWriter::ModelWriter(QDialog* dialog, ModelStore::Kind kind, TakenName taken, bool reportUnreadable,
                         const QString& warningTitle)
    : m_dialog(dialog), m_kind(kind), m_taken(taken), m_reportUnreadable(reportUnreadable),
      m_warningTitle(warningTitle)
{
}

QString ModelWriter::Tr(const char* text) const
{
    return QCoreApplication::translate(m_dialog->metaObject()->className(), text);
}

bool ModelWriter::Require(const QString& text, const char* message) const
{
    if (!text.isEmpty())
        return true;
    QMessageBox::warning(m_dialog, m_warningTitle, Tr(message));
    return false;
}

bool ModelWriter::RequireNames(const QString& source, const QString& target, const QString& name) const
{
    const char* missing = ModelEntry::MissingName(source, target, name);
    return !missing || Require(QString(), missing);
}

bool ModelWriter::AskReplace() const
{
    QMessageBox box(QMessageBox::Question, Tr("Information"),
                    Tr("The TransModelName has been taken,Wherher to replace it or not? "), QMessageBox::NoButton,
                    m_dialog);
    QPushButton* yes = box.addButton(Tr("Yes"), QMessageBox::YesRole);
    box.addButton(Tr("No"), QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.exec();
    return box.clickedButton() == yes;
}

bool ModelWriter::Write(const TransformModel& model) const
{
    std::function<bool()> replace;
    if (m_taken == AskToReplace)
        replace = [this] { return AskReplace(); };
    switch (ModelStore::Add(m_kind, model, replace)) {
    case ModelStore::Written:
        return true;
    case ModelStore::NameTaken:
        if (m_taken == RefuseTaken)
            QMessageBox::warning(m_dialog, Tr("Error"), Tr(ModelEntry::kNameTaken));
        return false;
    case ModelStore::CannotOpen:
    case ModelStore::Busy:
        if (m_reportUnreadable)
            QMessageBox::information(m_dialog, Tr("Information"), Tr("save result failed!"));
        return false;
    default:
        return false;
    }
}
