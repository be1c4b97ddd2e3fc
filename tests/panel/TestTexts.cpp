#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include "panel/OpenPanel.h"
#include "support/Keys.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

const char *const theTexts[] = {"theContoraPrefix1", "theContoraPrefix2", "theSignerSurname",
                                "theNotes"};

void AddTexts() {
    QTest::addColumn<QString>("name");
    for (const char *name : theTexts) QTest::newRow(name) << QString::fromLatin1(name);
}

enum Way { ByKey, ByOtherKey, ByMenu, ByDrop, ByInputMethod };

void PasteByMenu(QLineEdit &aBox) {
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, QPoint(2, 2), aBox.mapToGlobal(QPoint()));
    QApplication::sendEvent(&aBox, &asked);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction *action : menu->actions())
        if (action->text().startsWith(QLineEdit::tr("&Paste"))) action->trigger();
    menu->close();
}

void Drop(QLineEdit &aBox, const QString &aText) {
    QMimeData data;
    data.setText(aText);
    QPoint place(0, aBox.height() / 2);
    while (aBox.cursorPositionAt(place) < aBox.cursorPosition()) place.rx() += 1;
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&aBox, &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&aBox, &drop);
    QVERIFY(drop.isAccepted());
}

/// Brings a text from elsewhere into the box, where the caret is.
void Bring(Way aWay, QLineEdit &aBox, const QString &aText) {
    QGuiApplication::clipboard()->setText(aText);
    switch (aWay) {
        case ByKey:
            return QTest::keyClick(&aBox, Qt::Key_V, Qt::ControlModifier);
        case ByOtherKey:
            return QTest::keyClick(&aBox, Qt::Key_Insert, Qt::ShiftModifier);
        case ByMenu:
            return PasteByMenu(aBox);
        case ByDrop:
            return Drop(aBox, aText);
        case ByInputMethod: {
            QInputMethodEvent committed;
            committed.setCommitString(aText);
            QApplication::sendEvent(&aBox, &committed);
        }
    }
}

}  // namespace

/// The four boxes into which any text is typed.
class TestTexts : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void AnyTextOfAnyLengthIsTaken_data() { AddTexts(); }
    void AnyTextOfAnyLengthIsTaken() {
        QFETCH(QString, name);
        OpenPanel panel;
        auto &box = panel.Get<QLineEdit>(name.toLatin1().constData());
        QGuiApplication::clipboard()->setText(QString(100000, u'ж'));
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        TypeText(&box, QStringLiteral(" <№&\"'> "));
        QCOMPARE(box.text(), QString(100000, u'ж') + QStringLiteral(" <№&\"'> "));
    }

    void ForeignTextComesOnOneLine_data() {
        QTest::addColumn<QString>("foreign");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *aName, const QString &aForeign, const char *aText) {
            QTest::newRow(aName) << aForeign << QString::fromUtf8(aText);
        };
        row("cell of a table", QStringLiteral("Иванов\r\n"), "[Иванов]");
        row("line end before", QStringLiteral("\nИванов"), "[Иванов]");
        row("two lines", QStringLiteral("Иванов\r\nПетров"), "[Иванов Петров]");
        row("blank lines", QStringLiteral("Иванов\n\n\nПетров"), "[Иванов Петров]");
        row("lines of a text processor", QStringLiteral("Иванов\u2028Петров\x0bСидоров\u2029"),
            "[Иванов Петров Сидоров]");
        row("one line", QStringLiteral(" Иванов\t№<> "), "[ Иванов\t№<> ]");
        row("line ends alone", QStringLiteral("\r\n\r\n"), "[]");
    }
    void ForeignTextComesOnOneLine() {
        QFETCH(QString, foreign);
        QFETCH(QString, text);
        OpenPanel panel;
        for (const char *name : theTexts) {
            for (const Way way : {ByKey, ByOtherKey, ByMenu, ByDrop, ByInputMethod}) {
                auto &box = panel.Get<QLineEdit>(name);
                box.setText(QStringLiteral("[]"));
                box.setCursorPosition(1);
                Bring(way, box, foreign);
                QCOMPARE(box.text(), text);
                QCOMPARE(box.cursorPosition(), int(text.size()) - 1);
            }
        }
    }

    /// On displays that have such a selection; it runs on one of X as well.
    void MiddleButtonPastesTheSelection_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("present");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("text");
        QTest::newRow("text") << "theNotes"
                              << "[]"
                              << "Иванов\r\nПетров\n"
                              << "Иванов Петров[]";
        QTest::newRow("date") << "theSignDate1"
                              << "08.03.2019"
                              << "2025-08-15"
                              << "15.08.2025";
        QTest::newRow("number") << "theDocNum1"
                                << ""
                                << "№ 12 345"
                                << "12345";
    }
    void MiddleButtonPastesTheSelection() {
        if (!QGuiApplication::clipboard()->supportsSelection())
            QSKIP("the display has no selection to paste");
        QFETCH(QString, name);
        QFETCH(QString, present);
        QFETCH(QString, selected);
        QFETCH(QString, text);
        OpenPanel panel;
        auto *element = &panel.Get<QWidget>(name.toLatin1().constData());
        auto *box = qobject_cast<QLineEdit *>(element);
        if (!box) box = element->findChild<QLineEdit *>();
        box->setText(present);
        QGuiApplication::clipboard()->setText(selected, QClipboard::Selection);
        QGuiApplication::clipboard()->setText(QStringLiteral("7"));
        QTest::mouseClick(box, Qt::MiddleButton, {}, QPoint(1, box->height() / 2));
        QCOMPARE(box->text(), text);
    }

    void SelectedTextGivesWay() {
        OpenPanel panel;
        auto &box = panel.Get<QLineEdit>("theNotes");
        box.setText(QStringLiteral("один два три"));
        box.setSelection(5, 3);
        Bring(ByKey, box, QStringLiteral("2\r\n"));
        QCOMPARE(box.text(), QStringLiteral("один 2 три"));
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(box.text(), QStringLiteral("один два три"));
    }

    void ForeignTextIsUndoneAndRedone_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("key") << int(ByKey);
        QTest::newRow("menu") << int(ByMenu);
        QTest::newRow("drop") << int(ByDrop);
        QTest::newRow("input method") << int(ByInputMethod);
    }
    void ForeignTextIsUndoneAndRedone() {
        QFETCH(int, way);
        OpenPanel panel;
        auto &box = panel.Get<QLineEdit>("theNotes");
        TypeText(&box, QStringLiteral("а"));
        Bring(Way(way), box, QStringLiteral("б\r\nв\r\n"));
        TypeText(&box, QStringLiteral("г"));
        const QStringList texts{QString(), QStringLiteral("а"), QStringLiteral("аб в"),
                                QStringLiteral("аб вг")};
        QCOMPARE(box.text(), texts[3]);
        for (int i = 2; i >= 0; --i) {
            QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(box.text(), texts[i]);
        }
        for (int i = 1; i <= 3; ++i) {
            QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(box.text(), texts[i]);
        }
    }

    /// What an input method is still composing is shown, and nothing stays of it.
    void InputMethodComposesAndReplaces() {
        OpenPanel panel;
        auto &box = panel.Get<QLineEdit>("theNotes");
        box.setText(QStringLiteral("при"));
        QInputMethodEvent composing(QStringLiteral("вет"), {});
        QApplication::sendEvent(&box, &composing);
        QInputMethodEvent replacing;
        replacing.setCommitString(QStringLiteral("привет\n"), -3, 3);
        QApplication::sendEvent(&box, &replacing);
        QCOMPARE(box.text(), QStringLiteral("привет"));
        QCOMPARE(box.displayText(), QStringLiteral("привет"));
        QCOMPARE(box.cursorPosition(), 6);
    }

    void LineEndsOfTheRecordSurviveEdits() {
        OpenPanel panel;
        VkDocQueryData record;
        record.Notes = QStringLiteral("первая\r\nвторая\n");
        panel.DistributeValues(record);
        auto &box = panel.Get<QLineEdit>("theNotes");
        box.setCursorPosition(0);
        TypeText(&box, QStringLiteral("А "));
        Bring(ByKey, box, QStringLiteral("Б\n"));
        QTest::keyClick(&box, Qt::Key_Right);
        QTest::keyClick(&box, Qt::Key_Delete);
        VkDocQueryData back;
        panel.AssembleValuesTo(back);
        QCOMPARE(back.Notes, QStringLiteral("А Бпрвая\r\nвторая\n"));
        while (box.isUndoAvailable()) box.undo();
        panel.AssembleValuesTo(back);
        QCOMPARE(back.Notes, record.Notes);
    }

    /// The search that comes back after a load that failed has them, too.
    void LineEndsOfTheRecordSurviveADraft() {
        OpenPanel panel;
        VkDocQueryData record;
        record.Notes = QStringLiteral("первая\r\nвторая\n");
        panel.DistributeValues(record);
        const auto draft = panel.TakeDraft();
        VkDocQueryData other;
        panel.DistributeValues(other);
        QVERIFY(panel.PutBack(*draft));
        VkDocQueryData back;
        panel.AssembleValuesTo(back);
        QCOMPARE(back.Notes, record.Notes);
    }

    /// A year is pasted from a table as well.
    void YearIsPastedOnOneLine() {
        OpenPanel panel;
        auto &combo = panel.Combo("theOnePerYear");
        combo.lineEdit()->selectAll();
        QGuiApplication::clipboard()->setText(QStringLiteral("2019\r\n"));
        QTest::keyClick(&combo, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(combo.Text(), QStringLiteral("2019"));
    }

    /// A record may bring line ends; they are the host's, and looking at them changes nothing.
    void TextsOfTheRecordStayAsTheyAre() {
        OpenPanel panel;
        VkDocQueryData record;
        record.Notes = QStringLiteral("первая\r\nвторая\n");
        panel.DistributeValues(record);
        VkDocQueryData back;
        panel.AssembleValuesTo(back);
        QCOMPARE(back.Notes, record.Notes);
    }
};

VK_TEST_CLASS(TestTexts);

#include "TestTexts.moc"
