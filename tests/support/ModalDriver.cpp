#include "support/ModalDriver.h"

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWindow>

namespace VkTests {

ModalDriver::ModalDriver() {
    QTimer::singleShot(1, this, &ModalDriver::Look);
}

ModalDriver::~ModalDriver() = default;

void ModalDriver::Expect(std::function<void(QWidget &)> aAnswer) {
    theAnswers << std::move(aAnswer);
}

namespace {

QString CaptionOf(const QAbstractButton &aButton) {
    return aButton.text().remove(u'&');
}

QAbstractButton *ButtonOf(const QMessageBox &aBox, const QString &aCaption) {
    const auto buttons = aBox.buttons();
    const auto found = std::ranges::find(
        buttons, aCaption, [](const QAbstractButton *button) { return CaptionOf(*button); });
    return found == buttons.end() ? nullptr : *found;
}

/// The button that Enter presses, wherever the focus is.
QString DefaultOf(const QMessageBox &aBox) {
    for (const auto *button : aBox.findChildren<QPushButton *>())
        if (button->isDefault()) return CaptionOf(*button);
    return QString();
}

}  // namespace

void ModalDriver::ExpectBox(QMessageBox::Icon aIcon, const QString &aTitle, const QString &aText,
                            const QString &aButton, const QString &aDefaultButton) {
    Expect([=, this](QWidget &aWindow) {
        auto *box = qobject_cast<QMessageBox *>(&aWindow);
        if (!box) {
            Complain(QStringLiteral("not a message box: ") + aWindow.windowTitle());
            aWindow.close();
            return;
        }
        Compare(QStringLiteral("icon"), QString::number(box->icon()), QString::number(aIcon));
        Compare(QStringLiteral("title"), box->windowTitle(), aTitle);
        Compare(QStringLiteral("text"), box->text(), aText);
        Compare(QStringLiteral("default button"), DefaultOf(*box),
                aDefaultButton.isEmpty() ? aButton : aDefaultButton);
        if (QAbstractButton *button = ButtonOf(*box, aButton)) {
            Click(button);
            return;
        }
        Complain(QStringLiteral("no button \"%1\" in \"%2\"").arg(aButton, box->text()));
        box->reject();
    });
}

void ModalDriver::Compare(const QString &aWhat, const QString &aFound, const QString &aExpected) {
    if (aFound != aExpected)
        Complain(QStringLiteral("%1 is \"%2\", not \"%3\"").arg(aWhat, aFound, aExpected));
}

void ModalDriver::ExpectFileDialog(const QString &aTitle, const QString &aOffered,
                                   const QString &aPath) {
    Expect([this, aTitle, aOffered, aPath](QWidget &aWindow) {
        auto *dialog = qobject_cast<QFileDialog *>(&aWindow);
        auto *name = aWindow.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        if (!dialog || !name) {
            Complain(QStringLiteral("not a file dialog: ") + aWindow.windowTitle());
            aWindow.close();
            return;
        }
        Compare(QStringLiteral("title"), dialog->windowTitle(), aTitle);
        Compare(QStringLiteral("offered name"), name->text(), aOffered);
        if (aPath.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        name->selectAll();
        name->insert(aPath);
        QTest::keyClick(name, Qt::Key_Return);
    });
}

bool ModalDriver::Done() const {
    return theAnswers.isEmpty() && theComplaints.isEmpty();
}

const char *ModalDriver::Complaint() const {
    QStringList complaints = theComplaints;
    if (!theAnswers.isEmpty())
        complaints << QStringLiteral("%1 expected window(s) did not come").arg(theAnswers.size());
    theComplaintText = complaints.join(u'\n').toUtf8();
    return theComplaintText.constData();
}

void ModalDriver::Complain(const QString &aText) {
    theComplaints << aText;
}

void ModalDriver::Click(QWidget *aButton) {
    if (!aButton || !aButton->isVisible() || !aButton->isEnabled()) {
        Complain(QStringLiteral("a button cannot be clicked: ") +
                 (aButton ? aButton->objectName() : QStringLiteral("absent")));
        if (QWidget *modal = QApplication::activeModalWidget()) modal->close();
        return;
    }
    QTest::mouseClick(aButton, Qt::LeftButton);
}

void ModalDriver::Look() {
    // A timer of its own for each look: a repeating one does not fire again inside its own slot,
    // where the boxes that an answer brings up are waiting.
    QTimer::singleShot(1, this, &ModalDriver::Look);
    QWidget *window = QApplication::activeModalWidget();
    if (!window || !window->isVisible()) return;
    if (theAnswered.contains(QPointer<QWidget>(window)) || !IsReady(window)) return;
    theAnswered << QPointer<QWidget>(window);
    Answer(*window);
}

namespace {

/// A compositor of Wayland without a keyboard makes no window the active one.
void GiveFocusWhereNobodyDoes(QWidget &aWindow) {
    if (QGuiApplication::platformName() == QStringLiteral("wayland") && aWindow.windowHandle() &&
        aWindow.windowHandle()->isExposed())
        QApplication::setActiveWindow(&aWindow);
}

}  // namespace

/// Keys go nowhere before the window system has made a window the active one. One that it never
/// makes so is answered all the same, and the test says what went wrong.
bool ModalDriver::IsReady(QWidget *aWindow) {
    constexpr qint64 theLongestWait = 3000;
    GiveFocusWhereNobodyDoes(*aWindow);
    if (aWindow->isActiveWindow()) return true;
    if (theAwaited != aWindow) {
        theAwaited = aWindow;
        theWait.start();
    }
    return theWait.hasExpired(theLongestWait);
}

void ModalDriver::Answer(QWidget &aWindow) {
    const QPointer<QWidget> window(&aWindow);
    if (theAnswers.isEmpty()) {
        const auto *box = qobject_cast<QMessageBox *>(&aWindow);
        Complain(QStringLiteral("unexpected window \"%1\" %2")
                     .arg(aWindow.windowTitle(), box ? box->text() : QString()));
        aWindow.close();
    } else {
        const auto answer = theAnswers.takeFirst();
        answer(aWindow);
    }
    // A window that is shown again later, as a reused dialog, gets an answer of its own.
    if (window && !window->isVisible()) theAnswered.removeAll(window);
}

}  // namespace VkTests
