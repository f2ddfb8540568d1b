#pragma once

#include "KivFramework/IProgressIndicator.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

/// The status-bar progress indicator: a bar, a text and a Cancel button that
/// raises `CancelRequested`.
class ProgressIndicator : public QWidget, public KivFramework::IProgressIndicator
{
    Q_OBJECT
public:
    explicit ProgressIndicator(QWidget* parent = nullptr);

    void ShowProgress(double percent, const QString& text) override;
    void End() override;
    void Reset() override;

    int value() const;
    QString text() const;
    bool isRunning() const { return m_running; }

private:
    QProgressBar* m_bar;
    QLabel* m_text;
    QPushButton* m_cancel;
    QTimer* m_hideTimer;
    bool m_running = false;
};
