#include "models/Save7ParamsResultDlg.h"

#include "models/ModelStore.h"
#include "ui_Save7ParamsResultDlg.h"

#include <QMessageBox>
#include <QPushButton>

Save7ParamsResultDlg::Save7ParamsResultDlg(const double* result7, QString sourceName, QString targetName,
                                           QString proposedName, QWidget* parent)
    : QDialog(parent), ui(new Ui::Save7ParamsResultDlg), m_sourceName(sourceName), m_targetName(targetName)
{
    ui->setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint);
    setFixedSize(size());
    if (result7)
        std::copy(result7, result7 + 7, m_result);

    const QString crlf = QStringLiteral("\r\n");
    // The labels are kept as UTF-8 bytes and go through the local 8-bit codec,
    // like the calculation dialog's result text.
    const char* const labels[6] = {"DX(m)=", "DY(m)=", "DZ(m)=", "ω(″)=", "κ(″)=", "γ(″)="};
    QString text = tr("7 parameters") + QStringLiteral(":") + crlf;
    for (int i = 0; i < 6; ++i)
        text += QString::fromLocal8Bit(labels[i]) + QString::number(m_result[i], 'f', 6) + crlf;
    text += QStringLiteral("m=") + QString::number(m_result[6], 'f', 12) + crlf;
    ui->label_result->setText(text);
    ui->lineEdit_name->setText(proposedName);

    connect(ui->pushButton_OK, SIGNAL(clicked()), this, SLOT(OnBtnClickedOk()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(reject()));
}

Save7ParamsResultDlg::~Save7ParamsResultDlg() = default;

void Save7ParamsResultDlg::OnBtnClickedOk()
{
    try {
        const QString name = ui->lineEdit_name->text();
        if (name.isEmpty()) {
            QMessageBox::warning(this, QString(), tr("Please input transform model name! "));
            return;
        }

        TransformModel model;
        model.SrcSpaRef = m_sourceName;
        model.TransName = name;
        model.DesSpaRef = m_targetName;
        for (double v : m_result)
            model.Params << v;
        const auto askReplace = [this] {
            QMessageBox box(QMessageBox::Question, tr("Information"),
                            tr("The TransModelName has been taken,Wherher to replace it or not? "),
                            QMessageBox::NoButton, this);
            QPushButton* yes = box.addButton(tr("Yes"), QMessageBox::YesRole);
            box.addButton(tr("No"), QMessageBox::NoRole);
            box.setDefaultButton(yes);
            box.exec();
            return box.clickedButton() == yes;
        };
        switch (ModelStore::Add(ModelStore::Params7, model, askReplace)) {
        case ModelStore::Written:
            accept();
            break;
        case ModelStore::CannotOpen:
            QMessageBox::information(this, tr("Information"), tr("save result failed!"));
            break;
        default:
            // Malformed or container-less store, refused replacement, failed
            // write: the dialog stays open.
            break;
        }
    } catch (...) {
    }
}
