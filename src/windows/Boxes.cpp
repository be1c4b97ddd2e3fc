#include "windows/Boxes.h"

#include <algorithm>

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScroller>
#include <QStyle>

#include "foundation/Application.h"
#include "look/Colours.h"
#include "windows/ModalRun.h"

namespace Vk_DocQuery {

namespace {

/// A box over the window that is up, in the font of that window; texts are plain, so that a file
/// name with "<" shows as it is.
class Box : public QMessageBox {
public:
    Box(Icon aIcon, const QString &aText, const QString &aTitle)
        : QMessageBox(Shown(aIcon), aTitle, aText, NoButton), theRun(*this) {
        setTextFormat(Qt::PlainText);
        setTextInteractionFlags(Qt::TextSelectableByMouse);
        if (theRun.OwnerWidget()) setFont(theRun.OwnerWidget()->font());
        for (QLabel *label : findChildren<QLabel *>()) label->installEventFilter(this);
        ScrollLongText();
        KeepColoursReadable(*this);
    }

    QPushButton *AddButton(StandardButton aButton, const QString &aCaption) {
        QPushButton *button = addButton(aButton);
        button->setText(aCaption);
        button->setIcon(QIcon());  // the captions say it all, and few desktops draw one
        return button;
    }

    /// True if it was the user who closed it.
    bool ShowWithOk() {
        AddButton(Ok, QStringLiteral("OK"));
        Run();
        return clickedButton() != nullptr;
    }

    void Run() {
        const NormalPointer pointer;
        theRun.Exec();
    }

protected:
    void keyPressEvent(QKeyEvent *aEvent) override {
        if (aEvent->matches(QKeySequence::Copy))
            QGuiApplication::clipboard()->setText(WholeText());
        else
            QMessageBox::keyPressEvent(aEvent);
    }
    /// A text with the focus would keep the key to itself; it copies what is selected in it.
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override {
        const auto *label = qobject_cast<QLabel *>(aWatched);
        if (!label || aEvent->type() != QEvent::KeyPress || label->hasSelectedText()) return false;
        auto *key = static_cast<QKeyEvent *>(aEvent);
        if (!key->matches(QKeySequence::Copy)) return false;
        keyPressEvent(key);
        return true;
    }

private:
    /// Title, text and captions, as the boxes of other desktops are copied.
    QString WholeText() const {
        const QString line = QString(27, u'-') + u'\n';
        QStringList captions;
        for (const QAbstractButton *button : buttons()) captions << button->text().remove(u'&');
        const QString whole = line + windowTitle() + u'\n' + line + text() + u'\n' + line +
                              captions.join(QStringLiteral("   ")) + u'\n' + line;
        return QString(whole).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }

    /// A chain that is higher than the screen, or a path that is wider, would take the buttons
    /// along. Lines break at blanks only.
    void ScrollLongText() {
        auto *label = findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
        if (!label) return;
        const QSize room = screen()->availableGeometry().size();
        const QSize most(std::min(theWidestText, room.width() * 2 / 3), room.height() * 3 / 5);
        const QSize needed =
            label->fontMetrics()
                .boundingRect(QRect(QPoint(0, 0), QSize(most.width(), 0)), Qt::TextWordWrap, text())
                .size();
        if (needed.width() <= most.width() && needed.height() <= most.height()) return;
        auto *area = new QScrollArea(this);
        area->setFrameShape(QFrame::NoFrame);
        area->setWidgetResizable(true);
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        area->setFixedSize(most.width() + bar, std::min(needed.height(), most.height()) + bar);
        delete layout()->replaceWidget(label, area);
        area->setWidget(label);
        QScroller::grabGesture(area->viewport(), QScroller::TouchGesture);
    }

    static constexpr int theWidestText = 560;  // pixels

    /// Before Qt's part of the box is made.
    static Icon Shown(Icon aIcon) {
        EnsureApplication();
        return aIcon;
    }

    ModalRun theRun;
};

}  // namespace

NormalPointer::NormalPointer() {
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
}

NormalPointer::~NormalPointer() {
    QGuiApplication::restoreOverrideCursor();
}

void ShowWarningBox(const QString &aText, const QString &aTitle) {
    Box(QMessageBox::Warning, aText, aTitle).ShowWithOk();
}

void ShowInfoBox(const QString &aText, const QString &aTitle) {
    Box(QMessageBox::Information, aText, aTitle).ShowWithOk();
}

bool ShowFailureBox(const QString &aText, const QString &aTitle) {
    return Box(QMessageBox::Critical, aText, aTitle).ShowWithOk();
}

bool AskYesNo(const QString &aText, const QString &aTitle, qint32 aFlags) {
    Box box(QMessageBox::Question, aText, aTitle);
    QPushButton *yes = box.AddButton(QMessageBox::Yes, QStringLiteral("&Да"));
    QPushButton *no = box.AddButton(QMessageBox::No, QStringLiteral("&Нет"));
    box.setDefaultButton((aFlags & theSecondButtonIsDefault) != 0 ? no : yes);
    box.setEscapeButton(no);
    box.Run();
    return box.clickedButton() == yes;
}

}  // namespace Vk_DocQuery
