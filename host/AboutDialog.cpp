#include "AboutDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include <gdal.h>
#include <proj.h>

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("AboutDialog"));
    setWindowTitle(tr("About kivdesk"));

    auto* title = new QLabel(QStringLiteral("<h3>kivdesk %1</h3>").arg(QApplication::applicationVersion()), this);
    title->setObjectName(QStringLiteral("label_Title"));
    auto* text = new QLabel(tr("Coordinate transformation for surveying and GIS: points, coordinate files, "
                               "datasets, four- and seven-parameter models and spatial reference systems."),
                            this);
    text->setWordWrap(true);
    auto* versions = new QLabel(libraryVersions().join(QLatin1Char('\n')), this);
    versions->setObjectName(QStringLiteral("label_Versions"));
    versions->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(new QLabel(tr("Libraries in use:"), this));
    layout->addWidget(versions);
    layout->addWidget(buttons);
    setMinimumWidth(420);
}

QStringList AboutDialog::libraryVersions()
{
    return {QStringLiteral("PROJ %1").arg(QString::fromUtf8(proj_info().version)),
            QStringLiteral("GDAL %1").arg(QString::fromUtf8(GDALVersionInfo("RELEASE_NAME"))),
            QStringLiteral("Qt %1").arg(QString::fromLatin1(qVersion()))};
}
