#include "ProgressIndicator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

ProgressIndicator::ProgressIndicator(QWidget* parent)
    : QWidget(parent),
      m_bar(new QProgressBar(this)),
      m_text(new QLabel(this)),
      m_cancel(new QPushButton(tr("Cancel"), this)),
      m_hideTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("progressIndicator"));
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_text->setObjectName(QStringLiteral("progressText"));
    m_cancel->setObjectName(QStringLiteral("progressCancel"));
    m_bar->setRange(0, 100);
    m_bar->setMaximumWidth(220);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel);
    m_cancel->setEnabled(false);
    m_bar->setVisible(false);
    m_hideTimer->setSingleShot(true);
    m_hideTimer->setInterval(4000);
    connect(m_hideTimer, &QTimer::timeout, this, [this] { m_bar->setVisible(false); });
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        m_cancel->setEnabled(false);
        CancelRequested();
    });
}

void ProgressIndicator::ShowProgress(double percent, const QString& text)
{
    m_hideTimer->stop();
    m_running = true;
    m_bar->setVisible(true);
    m_bar->setValue(static_cast<int>(std::clamp(percent, 0.0, 100.0)));
    m_text->setText(text);
    m_cancel->setEnabled(true);
}

void ProgressIndicator::End()
{
    m_running = false;
    m_cancel->setEnabled(false);
    m_hideTimer->start();
}

void ProgressIndicator::Reset()
{
    m_bar->setValue(0);
    m_text->clear();
}

int ProgressIndicator::value() const
{
    return m_bar->value();
}

QString ProgressIndicator::text() const
{
    return m_text->text();
}
