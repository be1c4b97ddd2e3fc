#include <functional>

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "browser/TemplateQuerierForm.h"
#include "controls/Sheet.h"
#include "lists/ListView.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theFirst = QStringLiteral("ООО Вега");
const QString theSecond = QStringLiteral("АО Альфа");

/// A window with a filter, as an input method has it: it knows the element with the focus alone.
class Typist {
public:
    explicit Typist(QWidget &aWindow) : theWindow(aWindow) {}

    void Focus(const char *aElement) const { Get<QWidget>(aElement).setFocus(); }
    void Commit(const QString &aText, int aFrom = 0, int aLength = 0) const {
        QInputMethodEvent event;
        event.setCommitString(aText, aFrom, aLength);
        QCoreApplication::sendEvent(theWindow.focusWidget(), &event);
    }
    void Compose(const QString &aText) const {
        QInputMethodEvent event(aText, {});
        QCoreApplication::sendEvent(theWindow.focusWidget(), &event);
    }
    QVariant Ask(Qt::InputMethodQuery aQuery) const {
        QInputMethodQueryEvent event(aQuery);
        QCoreApplication::sendEvent(theWindow.focusWidget(), &event);
        return event.value(aQuery);
    }
    template <class Kind>
    Kind &Get(const char *aName) const {
        auto *element = theWindow.findChild<Kind *>(QString::fromLatin1(aName));
        if (!element) qFatal("no element %s", aName);
        return *element;
    }
    QWidget &Focused() const { return *theWindow.focusWidget(); }

private:
    QWidget &theWindow;
};

/// The picker over two persons; its line is the filter's, its list the offer.
void InPicker(const std::function<void(const Typist &, QLineEdit &, ListView &)> &aWork) {
    ModalDriver driver;
    driver.Expect([&](QWidget &aWindow) {
        const Typist typist(aWindow);
        aWork(typist, *typist.Get<QWidget>("theFilter").findChild<QLineEdit *>(),
              typist.Get<ListView>("theList"));
        aWindow.close();
    });
    SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
    QVERIFY2(driver.Done(), driver.Complaint());
}

}  // namespace

/// What on-screen keyboards and input methods type, while the focus is not in the text box.
class TestInputMethod : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        MemoryOffice::The().Persons = {
            {1, QStringLiteral("7701"), QStringLiteral("770101001"), theFirst, true, 0, true, true,
             QStringLiteral("org")},
            {2, QStringLiteral("7702"), QStringLiteral("770102001"), theSecond, true, 0, true, true,
             QStringLiteral("org")},
        };
    }
    void cleanup() { MemoryOffice::Clear(); }

    void PickerFiltersByWhatIsTyped_data() {
        QTest::addColumn<QString>("element");
        for (const char *name : {"theList", "theCheckAll", "theOK"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void PickerFiltersByWhatIsTyped() {
        QFETCH(QString, element);
        InPicker([&](const Typist &typist, QLineEdit &filter, ListView &list) {
            typist.Focus(qPrintable(element));
            typist.Compose(QStringLiteral("аль"));
            QCOMPARE(filter.text(), QString());
            QCOMPARE(filter.displayText(), QString());
            QCOMPARE(list.RowCount(), 2);
            typist.Commit(QStringLiteral("альфа"));
            QCOMPARE(filter.text(), QStringLiteral("альфа"));
            QCOMPARE(list.RowCount(), 1);
            QCOMPARE(list.Row(0)->Key(), QStringLiteral("_2"));
            typist.Commit(QString(), -5, 5);  // taken back, as a keyboard that corrects does
            QCOMPARE(filter.text(), QString());
            QCOMPARE(list.RowCount(), 2);
            QCOMPARE(typist.Focused().objectName(), element);
        });
    }

    void PickerAnswersForItsFilter() {
        InPicker([&](const Typist &typist, QLineEdit &filter, ListView &list) {
            QVERIFY(list.testAttribute(Qt::WA_InputMethodEnabled));
            const auto &sheet = *list.window()->findChild<Sheet *>();
            QVERIFY(!sheet.testAttribute(Qt::WA_InputMethodEnabled));  // never has the focus
            typist.Commit(QStringLiteral("ооо вега"));
            filter.setCursorPosition(3);
            QCOMPARE(typist.Ask(Qt::ImEnabled).toBool(), true);
            QCOMPARE(typist.Ask(Qt::ImSurroundingText).toString(), QStringLiteral("ооо вега"));
            QCOMPARE(typist.Ask(Qt::ImCursorPosition).toInt(), 3);
            // The caret as the list would see it: in the filter, which lies above.
            const QRect line(list.mapFromGlobal(filter.mapToGlobal(QPoint())), filter.size());
            const QRect caret = typist.Ask(Qt::ImCursorRectangle).toRectF().toAlignedRect();
            QVERIFY(line.bottom() < 0);
            QVERIFY(line.contains(caret));
            for (const auto query : {Qt::ImAnchorRectangle, Qt::ImInputItemClipRectangle})
                QVERIFY(line.contains(typist.Ask(query).toRectF().toAlignedRect()));
            filter.setCursorPosition(8);
            QVERIFY(typist.Ask(Qt::ImCursorRectangle).toRectF().left() > caret.left());
        });
    }

    /// As its key does, it turns marks in the list and is a letter in the box.
    void BlankStaysWithTheElement() {
        InPicker([&](const Typist &typist, QLineEdit &filter, ListView &list) {
            QTest::keyClick(&list, Qt::Key_Down);
            typist.Commit(QStringLiteral(" "));
            QVERIFY(list.Row(0)->IsChecked());
            QCOMPARE(filter.text(), QString());
            typist.Focus("theUncheckAll");
            typist.Commit(QStringLiteral(" "));
            QVERIFY(!list.Row(0)->IsChecked());
            filter.setFocus();
            typist.Commit(QStringLiteral("о"));
            typist.Commit(QStringLiteral(" "));
            QCOMPARE(filter.text(), QStringLiteral("о "));
            // A blank that ends a word while the next one is composed belongs to the text.
            list.setFocus();
            QInputMethodEvent goesOn(QStringLiteral("в"), {});
            goesOn.setCommitString(QStringLiteral(" "));
            QCoreApplication::sendEvent(&list, &goesOn);
            QVERIFY(!list.Row(0)->IsChecked());
            QCOMPARE(filter.text(), QStringLiteral("о  "));
        });
    }

    void BrowserFiltersByWhatIsTyped() {
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        const Typist typist(browser);
        auto &filter = typist.Get<QLineEdit>("theFilterA");
        for (const char *name : {"theFilterA", "theFormList", "theCatInfo", "theClose"}) {
            filter.clear();
            typist.Focus(name);
            typist.Commit(QStringLiteral("ндс"));
            QCOMPARE(filter.text(), QStringLiteral("ндс"));
            QCOMPARE(typist.Ask(Qt::ImSurroundingText).toString(), QStringLiteral("ндс"));
            QCOMPARE(typist.Focused().objectName(), QString::fromLatin1(name));
        }
    }
};

VK_TEST_CLASS(TestInputMethod);
#include "TestInputMethod.moc"
