#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "controls/FilterBox.h"
#include "lists/ListView.h"
#include "support/Keys.h"
#include "support/TestMain.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using VkTests::TypeText;

namespace {

/// A window that offers each key of its elements to the filter first, as the picker does.
class Window : public QWidget {
public:
    Window() {
        Box->setGeometry(0, 0, 300, 23);
        List->setGeometry(0, 30, 300, 100);
        List->AddColumn(QStringLiteral("*"), 600);
        for (int i = 0; i < 3; ++i) List->AddRow(QString());
        List->SetMultiSelect(true);
        List->installEventFilter(this);
        Box->Edit()->installEventFilter(this);
        resize(300, 140);
        show();
        if (!QTest::qWaitForWindowActive(this)) qFatal("the window does not come up");
        List->setFocus();
    }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override {
        if (aEvent->type() == QEvent::KeyPress)
            if (Box->HandleKeyPress(*static_cast<QKeyEvent *>(aEvent))) return true;
        return QWidget::eventFilter(aObject, aEvent);
    }

    VkFilterBox *Box = new VkFilterBox(this);
    ListView *List = new ListView(this);
};

}  // namespace

class TestFilterBox : public QObject {
    Q_OBJECT

private slots:
    void LabelIsNineHundredTwipsWide() {
        VkFilterBox box;
        box.resize(400, 23);
        box.show();
        auto *label = box.findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (QWidget *child : box.findChildren<QWidget *>())
            if (child->inherits("QLabel")) label = child;
        QCOMPARE(label->width(), PixelsFromTwips(900));
        QCOMPARE(label->property("text").toString(), QStringLiteral("Фильтр:"));
        QCOMPARE(box.Edit()->geometry(), QRect(label->width(), 0, 400 - label->width(), 23));
    }

    void LettersComeFromTheList() {
        Window window;
        const QSignalSpy changes(window.Box, &VkFilterBox::Change);
        TypeText(window.List, QStringLiteral("Ромашка7"));
        QCOMPARE(window.Box->Text(), QStringLiteral("Ромашка7"));
        QCOMPARE(changes.count(), 8);
        QTest::keyClick(window.List, Qt::Key_Backspace);
        QCOMPARE(window.Box->Text(), QStringLiteral("Ромашка"));
        QVERIFY(window.List->hasFocus());
    }

    void LettersGoToTheCaretAndReplaceTheSelection() {
        Window window;
        window.Box->SetText(QStringLiteral("абвг"));
        window.Box->Edit()->setCursorPosition(2);
        TypeText(window.List, QStringLiteral("XY"));
        QCOMPARE(window.Box->Text(), QStringLiteral("абXYвг"));
        window.Box->Edit()->setSelection(1, 4);
        TypeText(window.List, QStringLiteral("-"));
        QCOMPARE(window.Box->Text(), QStringLiteral("а-г"));
        window.Box->Edit()->selectAll();
        QTest::keyClick(window.List, Qt::Key_Backspace);
        QCOMPARE(window.Box->Text(), QString());
        QTest::keyClick(window.List, Qt::Key_Backspace);
        QCOMPARE(window.Box->Text(), QString());
    }

    void BlankStaysWithTheFocusedElement() {
        Window window;
        window.Box->SetText(QStringLiteral("а"));
        QTest::keyClick(window.List, Qt::Key_Space);
        QCOMPARE(window.Box->Text(), QStringLiteral("а"));
        window.Box->Edit()->setFocus();
        window.Box->Edit()->end(false);
        QTest::keyClick(window.Box->Edit(), Qt::Key_Space);
        QCOMPARE(window.Box->Text(), QStringLiteral("а "));
    }

    void PasteAndUndoComeFromTheList() {
        Window window;
        QGuiApplication::clipboard()->setText(QStringLiteral("7701"));
        QTest::keyClick(window.List, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(window.Box->Text(), QStringLiteral("7701"));
        QTest::keyClick(window.List, Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(window.Box->Text(), QStringLiteral("77017701"));
        QTest::keyClick(window.List, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(window.Box->Text().size() < 8);
        window.Box->SetText(QStringLiteral("ООО Ромашка"));
        QTest::keyClick(window.List, Qt::Key_Backspace, Qt::ControlModifier);
        QCOMPARE(window.Box->Text(), QStringLiteral("ООО "));
    }

    void KeysOfTheListStayWithTheList() {
        Window window;
        window.Box->SetText(QStringLiteral("абв"));
        QTest::keyClick(window.List, Qt::Key_Down);
        QCOMPARE(window.List->SelectedItem(), window.List->Row(0));
        QTest::keyClick(window.List, Qt::Key_End);
        QCOMPARE(window.List->SelectedItem(), window.List->Row(2));
        QTest::keyClick(window.List, Qt::Key_Delete);
        QTest::keyClick(window.List, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(window.List->SelectedRows().size(), std::size_t(3));
        QCOMPARE(window.Box->Text(), QStringLiteral("абв"));
        for (const auto key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_F1}) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QVERIFY(!window.Box->HandleKeyPress(event));
        }
        QKeyEvent shortcut(QEvent::KeyPress, Qt::Key_O, Qt::AltModifier, QStringLiteral("o"));
        QVERIFY(!window.Box->HandleKeyPress(shortcut));
    }

    void BoxItselfIsEditedAsUsual() {
        Window window;
        window.Box->Edit()->setFocus();
        QTest::keyClicks(window.Box->Edit(), QStringLiteral("abc"));
        QCOMPARE(window.Box->Text(), QStringLiteral("abc"));  // each key once
        QTest::keyClick(window.Box->Edit(), Qt::Key_Home);
        QTest::keyClick(window.Box->Edit(), Qt::Key_Delete);
        QCOMPARE(window.Box->Text(), QStringLiteral("bc"));
        QTest::keyClick(window.Box->Edit(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(window.Box->Edit(), Qt::Key_Delete);
        QCOMPARE(window.Box->Text(), QString());
        QVERIFY(window.Box->Edit()->isClearButtonEnabled());
    }
};

VK_TEST_CLASS(TestFilterBox);

#include "TestFilterBox.moc"
