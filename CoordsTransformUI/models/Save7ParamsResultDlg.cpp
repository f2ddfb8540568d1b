#include "models/Save7ParamsResultDlg.h"

#include "models/ControlPointCalculation.h"
#include "models/ModelWriter.h"
#include "ui_Save7ParamsResultDlg.h"

#include <algorithm>

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

    // The same lines as the calculation dialog's result text.
    ui->label_result->setText(tr("7 parameters") + QStringLiteral(":\r\n")
                              + ControlPointCalculation::FormatResult7(m_result));
    ui->lineEdit_name->setText(proposedName);

    connect(ui->pushButton_OK, SIGNAL(clicked()), this, SLOT(OnBtnClickedOk()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(reject()));
}

Save7ParamsResultDlg::~Save7ParamsResultDlg() = default;

void Save7ParamsResultDlg::OnBtnClickedOk()
{
    try {
        const ModelWriter writer(this, ModelStore::Params7, ModelWriter::AskToReplace, true, QString());
        const QString name = ui->lineEdit_name->text();
        if (!writer.Require(name, "Please input transform model name! "))
            return;
        TransformModel model{name, m_sourceName, m_targetName, {}};
        for (double v : m_result)
            model.Params << v;
        if (writer.Write(model))
            accept();
    } catch (...) {
    }
}
