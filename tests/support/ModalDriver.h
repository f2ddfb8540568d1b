#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>

class QFileDialog;

namespace KivTest {

/// Types `text` as a file dialog's file name (one path, or "a" "b" for
/// several) and presses its OK.
void typeAndAccept(QFileDialog* dialog, const QString& text);

/// Answers the modal windows that the code under test opens (message boxes,
/// file dialogs, any other dialog), in the order they are expected, so that a
/// test can press a button that runs `exec()` without blocking.
///
/// Queue the answers first, then act:
///
///     ModalDriver driver;
///     driver.answerMessageBox();                  // press OK on the next box
///     QTest::mouseClick(dlg.findChild<QPushButton*>("pushButton_run"), Qt::LeftButton);
///     QVERIFY2(driver.verify(), qPrintable(driver.report()));
///     QCOMPARE(driver.messages().at(0).text, QString("Need 2 GCPs at least!"));
///
/// The driver never lets a test hang: a modal window that comes when no answer
/// is queued is closed and reported by `verify()`, and so is one that a
/// handler left open for longer than the timeout.
class ModalDriver : public QObject
{
    Q_OBJECT
public:
    /// What a message box showed.
    struct Message
    {
        QString title;
        QString text;
        QStringList buttons;        ///< button texts, in the box's order
        QString defaultButton;      ///< text of the default button, if any
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QString pressed;            ///< text of the button the driver pressed
    };
    /// What a file dialog showed.
    struct FileDialogInfo
    {
        QString caption;
        QString directory;
        QStringList nameFilters;
        bool save = false;
        QString answer;             ///< the path given, empty when cancelled
    };

    explicit ModalDriver(int timeoutMs = 5000, QObject* parent = nullptr);
    ~ModalDriver() override;

    /// The next modal window is a message box: record it and press the button
    /// `button` (by standard button; with NoButton the default or the only one).
    void answerMessageBox(QMessageBox::StandardButton button = QMessageBox::NoButton);
    /// The same, pressing the button whose text is `buttonText`.
    void answerMessageBoxText(const QString& buttonText);
    /// The next modal window is a file dialog: record it, type `path` and
    /// accept (an overwrite question is not asked).
    void answerFileDialog(const QString& path);
    /// The next modal window is a file dialog: record it and cancel.
    void cancelFileDialog();
    /// The next modal window is anything: run `handler` on it. The handler must
    /// close the window (accept, reject or a button click); it may queue
    /// further answers for windows that the window itself opens.
    void handleModal(std::function<void(QWidget*)> handler);
    /// Like handleModal, but only a window of class `className` (as in
    /// `QObject::inherits`) counts as the expected one.
    void handleModal(const char* className, std::function<void(QWidget*)> handler);

    /// Message boxes seen so far, in order.
    QList<Message> messages() const { return m_messages; }
    /// File dialogs seen so far, in order.
    QList<FileDialogInfo> fileDialogs() const { return m_fileDialogs; }

    /// True when every queued answer was used and nothing unexpected came.
    /// Call it after each action; it also clears the failure record.
    bool verify();
    /// A readable account of what went wrong, for QVERIFY2.
    QString report() const;
    /// Forget recorded messages, dialogs and failures (not the queue).
    void clearRecords();
    /// Records a failure found by a handler; `verify()` then returns false.
    void fail(const QString& why) { m_failures << why; }

private:
    struct Expectation
    {
        QString kind;  ///< "message", "file", "any"
        QByteArray className;
        std::function<void(QWidget*)> handler;
    };

    void poll();
    void closeUnexpected(QWidget* w, const QString& why);
    void pushExpectation(Expectation e);

    QTimer m_timer;
    int m_timeoutMs;
    std::deque<Expectation> m_queue;
    QList<Message> m_messages;
    QList<FileDialogInfo> m_fileDialogs;
    QStringList m_failures;
    QStringList m_lastProblems;
    QList<QPointer<QWidget>> m_handled;
    QPointer<QWidget> m_current;   ///< the window a handler is working on
    qint64 m_currentSince = 0;
    bool m_inHandler = false;
};

} // namespace KivTest
