#pragma once

#include <QDialog>

class QTextBrowser;

/// Help > User Guide: the guide of data/guide in the current language,
/// rendered from its Markdown with its pictures.
class UserGuideDialog : public QDialog
{
    Q_OBJECT
public:
    explicit UserGuideDialog(QWidget* parent = nullptr);

    /// The guide file for `language` ("en", "zh_CN"); the English one when the
    /// language has none.
    static QString guideFile(const QString& language);

private:
    QTextBrowser* m_browser;
};
