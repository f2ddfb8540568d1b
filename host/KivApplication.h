#pragma once

#include <QApplication>

/// The host's application object. Plug-in code runs inside its event
/// delivery; anything a slot or event handler throws stops here, is reported
/// and the event loop goes on, instead of tearing down the process with the
/// user's unsaved work.
class KivApplication : public QApplication
{
    Q_OBJECT
public:
    KivApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};
