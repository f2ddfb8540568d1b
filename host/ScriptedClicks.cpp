#include "ScriptedClicks.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMenu>
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
    // "#N" picks the N-th entry of the menu that a button has popped up.
    if (name.startsWith(QLatin1Char('#'))) {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        bool ok = false;
        const int index = name.mid(1).toInt(&ok);
        if (!menu || !ok || index < 0 || index >= menu->actions().size())
            return false;
        QAction* action = menu->actions().at(index);
        menu->close();
        action->trigger();
        return true;
    }
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
