#include "support/ModalDriver.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

namespace KivTest {

namespace {

QString plainText(const QString& buttonText)
{
    QString t = buttonText;
    t.remove(QLatin1Char('&'));
    return t;
}

QString describe(QWidget* w)
{
    QString d = QString::fromLatin1(w->metaObject()->className());
    if (!w->windowTitle().isEmpty())
        d += QStringLiteral(" \"%1\"").arg(w->windowTitle());
    if (auto* mb = qobject_cast<QMessageBox*>(w))
        d += QStringLiteral(": %1").arg(mb->text());
    return d;
}

} // namespace

void typeAndAccept(QFileDialog* dialog, const QString& text)
{
    if (auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        edit->setText(text);
    // The dialog prefers the files selected in its view to the typed names, and
    // what its view holds depends on how far the folder's background listing
    // has got: without a selection the typed names, in their order, decide.
    if (auto* view = dialog->findChild<QAbstractItemView*>(QStringLiteral("listView")))
        view->clearSelection();
    // accept() is protected; the dialog's own slot does what OK does.
    QMetaObject::invokeMethod(dialog, "accept", Qt::DirectConnection);
}

ModalDriver::ModalDriver(int timeoutMs, QObject* parent)
    : QObject(parent), m_timeoutMs(timeoutMs)
{
    m_timer.setInterval(20);
    connect(&m_timer, &QTimer::timeout, this, &ModalDriver::poll);
    m_timer.start();
}

ModalDriver::~ModalDriver() = default;

void ModalDriver::pushExpectation(Expectation e)
{
    m_queue.push_back(std::move(e));
}

void ModalDriver::answerMessageBox(QMessageBox::StandardButton button)
{
    pushExpectation({QStringLiteral("message"), QByteArray(), [this, button](QWidget* w) {
        auto* mb = static_cast<QMessageBox*>(w);
        QAbstractButton* b = nullptr;
        if (button != QMessageBox::NoButton)
            b = mb->button(button);
        else if (mb->defaultButton())
            b = mb->defaultButton();
        else if (mb->buttons().size() == 1)
            b = mb->buttons().first();
        if (!b) {
            m_failures << QStringList{QStringLiteral("message box without the button to press: %1").arg(mb->text())};
            mb->done(0);
            return;
        }
        m_messages.last().pressed = plainText(b->text());
        b->click();
    }});
}

void ModalDriver::answerMessageBoxText(const QString& buttonText)
{
    pushExpectation({QStringLiteral("message"), QByteArray(), [this, buttonText](QWidget* w) {
        auto* mb = static_cast<QMessageBox*>(w);
        for (QAbstractButton* b : mb->buttons()) {
            if (plainText(b->text()) == buttonText) {
                m_messages.last().pressed = buttonText;
                b->click();
                return;
            }
        }
        m_failures << QStringLiteral("message box without a button \"%1\": %2").arg(buttonText, mb->text());
        mb->done(0);
    }});
}

void ModalDriver::answerFileDialog(const QString& path)
{
    pushExpectation({QStringLiteral("file"), QByteArray(), [this, path](QWidget* w) {
        auto* fd = static_cast<QFileDialog*>(w);
        m_fileDialogs.last().answer = path;
        fd->setOption(QFileDialog::DontConfirmOverwrite, true);
        fd->selectFile(path);
        typeAndAccept(fd, path);
        if (fd->isVisible()) {
            // The dialog refused the answer (a missing file for an open dialog).
            m_failures << QStringLiteral("file dialog \"%1\" refused %2").arg(fd->windowTitle(), path);
            fd->reject();
        }
    }});
}

void ModalDriver::cancelFileDialog()
{
    pushExpectation({QStringLiteral("file"), QByteArray(), [](QWidget* w) {
        static_cast<QFileDialog*>(w)->reject();
    }});
}

void ModalDriver::handleModal(std::function<void(QWidget*)> handler)
{
    pushExpectation({QStringLiteral("any"), QByteArray(), std::move(handler)});
}

void ModalDriver::handleModal(const char* className, std::function<void(QWidget*)> handler)
{
    pushExpectation({QStringLiteral("any"), QByteArray(className), std::move(handler)});
}

void ModalDriver::closeUnexpected(QWidget* w, const QString& why)
{
    m_failures << why;
    if (auto* dlg = qobject_cast<QDialog*>(w))
        dlg->done(QDialog::Rejected);
    else
        w->close();
}

void ModalDriver::poll()
{
    // A window that a handler left open past the timeout is closed, so that the
    // test goes on and reports it instead of hanging.
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (const QPointer<QWidget>& p : m_handled) {
        if (p && p->isVisible() && p == QApplication::activeModalWidget() && p == m_current
            && now - m_currentSince > m_timeoutMs) {
            closeUnexpected(p, QStringLiteral("still open %1 ms after its answer: %2").arg(m_timeoutMs).arg(describe(p)));
            return;
        }
    }

    QWidget* w = QApplication::activeModalWidget();
    if (!w || !w->isVisible())
        return;
    for (const QPointer<QWidget>& p : m_handled)
        if (p == w)
            return;
    m_handled.removeAll(QPointer<QWidget>());
    m_handled.append(w);

    if (m_queue.empty()) {
        closeUnexpected(w, QStringLiteral("unexpected modal window: %1").arg(describe(w)));
        return;
    }
    Expectation e = std::move(m_queue.front());
    m_queue.pop_front();

    auto* mb = qobject_cast<QMessageBox*>(w);
    auto* fd = qobject_cast<QFileDialog*>(w);
    if (e.kind == QLatin1String("message") && !mb) {
        closeUnexpected(w, QStringLiteral("expected a message box, got %1").arg(describe(w)));
        return;
    }
    if (e.kind == QLatin1String("file") && !fd) {
        closeUnexpected(w, QStringLiteral("expected a file dialog, got %1").arg(describe(w)));
        return;
    }
    if (!e.className.isEmpty() && !w->inherits(e.className.constData())) {
        closeUnexpected(w, QStringLiteral("expected a %1, got %2").arg(QString::fromLatin1(e.className), describe(w)));
        return;
    }

    if (mb) {
        Message m;
        m.title = mb->windowTitle();
        m.text = mb->text();
        for (QAbstractButton* b : mb->buttons())
            m.buttons << plainText(b->text());
        if (mb->defaultButton())
            m.defaultButton = plainText(mb->defaultButton()->text());
        m.icon = mb->icon();
        m_messages << m;
    } else if (fd) {
        FileDialogInfo f;
        f.caption = fd->windowTitle();
        f.directory = fd->directory().absolutePath();
        f.nameFilters = fd->nameFilters();
        f.save = fd->acceptMode() == QFileDialog::AcceptSave;
        m_fileDialogs << f;
    }

    m_current = w;
    m_currentSince = now;
    // The answer runs from the event loop rather than from this timer slot:
    // Qt does not fire a timer again while its slot runs, and the answer may
    // open further modal windows that this timer must see.
    QPointer<QWidget> target(w);
    auto handler = std::move(e.handler);
    QTimer::singleShot(0, this, [this, target, handler]() {
        if (!target) {
            m_failures << QStringLiteral("modal window vanished before its answer");
            return;
        }
        handler(target);
    });
}

bool ModalDriver::verify()
{
    QStringList problems = m_failures;
    if (!m_queue.empty())
        problems << QStringLiteral("%1 expected modal window(s) never came").arg(m_queue.size());
    m_queue.clear();
    m_failures.clear();
    m_lastProblems = problems;
    return problems.isEmpty();
}

QString ModalDriver::report() const
{
    QStringList lines = m_lastProblems + m_failures;
    for (const Message& m : m_messages)
        lines << QStringLiteral("  seen box [%1] %2").arg(m.title, m.text);
    return lines.join(QLatin1Char('\n'));
}

void ModalDriver::clearRecords()
{
    m_messages.clear();
    m_fileDialogs.clear();
    m_failures.clear();
}

} // namespace KivTest
