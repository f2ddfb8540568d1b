#include "KivApplication.h"

#include <QMessageBox>

#include <cstdio>
#include <exception>
#include <new>

KivApplication::KivApplication(int& argc, char** argv) : QApplication(argc, argv) {}

bool KivApplication::notify(QObject* receiver, QEvent* event)
{
    QString problem;
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        problem = tr("There is not enough memory to finish the operation.");
    } catch (const std::exception& e) {
        problem = tr("The operation stopped with an error: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        problem = tr("The operation stopped with an unknown error.");
    }
    std::fprintf(stderr, "%s\n", qPrintable(problem));
    QMessageBox::warning(activeWindow(), tr("kivdesk"), problem);
    return false;
}
