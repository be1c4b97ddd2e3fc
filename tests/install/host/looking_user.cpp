// Linked beside a program that shows the dialog: opens the picker of taxpayers, prints its rows,
// and cancels both. What is in the lists is read as a screen reader does.
#include <cstdio>
#include <cstdlib>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QTimer>

namespace {

constexpr int theStepMs = 20;
constexpr int theMostSteps = 1000;

/// The element of that name on the window in front.
template <class Kind>
Kind *Element(const char *aName) {
    const QWidget *window = QApplication::activeModalWidget();
    return window ? window->findChild<Kind *>(QString::fromLatin1(aName)) : nullptr;
}

void PrintRows(QWidget &aList) {
    QAccessibleTableInterface *table =
        QAccessible::queryAccessibleInterface(&aList)->tableInterface();
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 1; column < table->columnCount(); ++column)
            cells << table->cellAt(row, column)->text(QAccessible::Name);
        std::printf("%s\n", qUtf8Printable(cells.join(u'|')));
    }
}

/// A click that does not return before the window behind it is gone.
void Click(const char *aButton) {
    if (auto *button = Element<QAbstractButton>(aButton)) button->click();
}

void Look() {
    static bool hasLooked = false;
    static bool hasAsked = false;
    static int steps = 0;
    if (++steps > theMostSteps) std::_Exit(2);
    QTimer::singleShot(theStepMs, Look);
    if (QWidget *list = Element<QWidget>("theList")) {
        if (!hasLooked) PrintRows(*list);
        hasLooked = true;
        return Click("theCancel");
    }
    if (hasLooked) return Click("theCancel");
    if (auto *wanted = Element<QAbstractButton>("theIsTaxpayers")) wanted->setChecked(true);
    if (!hasAsked && Element<QAbstractButton>("theTaxpayerAdd")) {
        hasAsked = true;
        Click("theTaxpayerAdd");
    }
}

void BeginToLook() {
    QTimer::singleShot(theStepMs, Look);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(BeginToLook)
