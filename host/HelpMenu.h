#pragma once

#include <QMenu>

class QActionGroup;

/// The Help menu of kivdesk: the user guide, the language setting (applied at
/// the next start) and the About box.
class HelpMenu : public QMenu
{
    Q_OBJECT
public:
    explicit HelpMenu(QWidget* parent = nullptr);

private:
    void showGuide();
    void showAbout();
    void chooseLanguage(const QString& language);

    QActionGroup* m_languages;
};
