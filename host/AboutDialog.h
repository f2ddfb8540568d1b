#pragma once

#include <QDialog>

/// Help > About: the program's version and the versions of the libraries in
/// use (PROJ, GDAL, Qt), as a support request needs them.
class AboutDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AboutDialog(QWidget* parent = nullptr);

    /// The versions as "PROJ 9.1.1", "GDAL 3.6.2", "Qt 5.15.8", read from the
    /// libraries loaded at run time.
    static QStringList libraryVersions();
};
