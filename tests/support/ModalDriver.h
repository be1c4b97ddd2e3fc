#pragma once

#include <functional>

#include <QElapsedTimer>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

namespace VkTests {

/// Answers the modal windows that come up while it lives, in the order in which the answers were
/// given, each from inside the window's own event loop. A window that no answer was given for is
/// written down and closed, so that a test fails and does not hang.
///
///     ModalDriver driver;
///     driver.ExpectBox(QMessageBox::Warning, "title", "text", "OK");
///     record.Validate();
///     QVERIFY2(driver.Done(), driver.Complaint());
class ModalDriver : public QObject {
    Q_OBJECT

public:
    ModalDriver();
    ~ModalDriver() override;

    /// The next modal window is handed to the function, which has to end it.
    void Expect(std::function<void(QWidget &aWindow)> aAnswer);
    /// The next modal window is a message box with exactly that icon, title and text; the button
    /// with that caption ("&" left out) is clicked with the mouse. Enter would press it as well,
    /// unless another one is named.
    void ExpectBox(QMessageBox::Icon aIcon, const QString &aTitle, const QString &aText,
                   const QString &aButton, const QString &aDefaultButton = QString());

    /// The next modal window is a file dialog with exactly that title that offers that file name;
    /// the path is typed into its name box and confirmed with Enter. An empty path cancels with
    /// Esc.
    void ExpectFileDialog(const QString &aTitle, const QString &aOffered, const QString &aPath);

    /// Every answer was used, and nothing came up without one.
    bool Done() const;
    /// What went otherwise, as UTF-8 for QVERIFY2.
    const char *Complaint() const;
    /// Notes something that went otherwise.
    void Complain(const QString &aText);

    /// Clicks a button with the mouse; complains if it is hidden or disabled.
    void Click(QWidget *aButton);

private:
    void Look();
    bool IsReady(QWidget *aWindow);
    void Answer(QWidget &aWindow);
    void Compare(const QString &aWhat, const QString &aFound, const QString &aExpected);

    QList<std::function<void(QWidget &)>> theAnswers;
    QList<QPointer<QWidget>> theAnswered;
    QPointer<QWidget> theAwaited;
    QElapsedTimer theWait;
    QStringList theComplaints;
    mutable QByteArray theComplaintText;
};

}  // namespace VkTests
