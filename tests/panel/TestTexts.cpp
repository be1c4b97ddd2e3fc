#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
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
        box.paste();
        TypeText(&box, QStringLiteral(" <№&\"'> "));
        QCOMPARE(box.text(), QString(100000, u'ж') + QStringLiteral(" <№&\"'> "));
    }

    void PastedLineEndsDoNotStayUnseen_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        QTest::newRow("cell of a table")
            << QStringLiteral("Иванов\r\n") << QStringLiteral("[Иванов ]");
        QTest::newRow("line end before")
            << QStringLiteral("\nИванов") << QStringLiteral("[ Иванов]");
        QTest::newRow("two lines")
            << QStringLiteral("Иванов\r\nПетров") << QStringLiteral("[Иванов Петров]");
        QTest::newRow("blank lines")
            << QStringLiteral("Иванов\n\n\nПетров") << QStringLiteral("[Иванов Петров]");
        QTest::newRow("line of a text processor")
            << QStringLiteral("Иванов\u2028Петров") << QStringLiteral("[Иванов Петров]");
        QTest::newRow("one line") << QStringLiteral(" Иванов ") << QStringLiteral("[ Иванов ]");
    }
    void PastedLineEndsDoNotStayUnseen() {
        QFETCH(QString, pasted);
        QFETCH(QString, text);
        for (const char *name : theTexts) {
            OpenPanel panel;
            auto &box = panel.Get<QLineEdit>(name);
            box.setText(QStringLiteral("[]"));
            box.setCursorPosition(1);
            QGuiApplication::clipboard()->setText(pasted);
            QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
            QCOMPARE(box.text(), text);
            QCOMPARE(box.cursorPosition(), int(text.size()) - 1);
        }
    }

    void OuterLineEndsLeaveNothing() {
        OpenPanel panel;
        auto &box = panel.Get<QLineEdit>("theSignerSurname");
        QGuiApplication::clipboard()->setText(QStringLiteral("\r\n Иванов \r\n"));
        box.paste();
        QCOMPARE(box.text(), QStringLiteral(" Иванов "));
        TypeText(&box, QStringLiteral("ский"));
        QCOMPARE(box.text(), QStringLiteral(" Иванов ский"));
        while (box.isUndoAvailable()) box.undo();
        QCOMPARE(box.text(), QString());
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
