#include "ScriptedClicks.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdio>

void ScriptedClicks::schedule(QWidget* window, const QStringList& names, int firstDelayMs)
{
    int delay = firstDelayMs;
    for (const QString& name : names) {
        QTimer::singleShot(delay, window, [window, name] {
            if (!click(window, name))
                std::fprintf(stderr, "nothing to click named %s\n", qPrintable(name));
        });
        delay += kStepMs;
    }
}

bool ScriptedClicks::click(QWidget* window, const QString& name)
{
    QWidget* front = QApplication::activeModalWidget();
    QWidget* scope = front ? front : window;
    if (auto* button = scope->findChild<QAbstractButton*>(name)) {
        // A click that opens a modal dialog returns only when it closes; the
        // next steps run inside its event loop.
        button->click();
        return true;
    }
    if (auto* action = scope->findChild<QAction*>(name)) {
        action->trigger();
        return true;
    }
    if (scope != window) {
        if (auto* action = window->findChild<QAction*>(name)) {
            action->trigger();
            return true;
        }
    }
    return false;
}
