#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QContextMenuEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include "browser/TemplateQuerierForm.h"
#include "browser/TextPane.h"
#include "controls/ComboBox.h"
#include "controls/Sheet.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "lists/ListView.h"
#include "look/Colours.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "support/Contrast.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"
#include "windows/FilePlatform.h"
#include "windows/mFileOpenSaveDialog.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// Its window, button and base colours differ, as those of few light desktops do.
QPalette DarkPalette() {
    QPalette palette(QColor(230, 230, 230), QColor(70, 70, 73), QColor(90, 90, 93),
                     QColor(25, 25, 28), QColor(35, 35, 38), QColor(230, 230, 230), Qt::red,
                     QColor(30, 30, 30), QColor(45, 45, 48));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(90, 90, 90));
    return palette;
}

/// Two colours and nothing between them, but for what is disabled.
QPalette TwoColours(const QColor &aText, const QColor &aGround, const QColor &aFaint) {
    QPalette palette(aText, aGround, aText, aFaint, aFaint, aText, aText, aGround, aGround);
    palette.setColor(QPalette::Highlight, aText);
    palette.setColor(QPalette::HighlightedText, aGround);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, aFaint);
    return palette;
}

void AddPalettes() {
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QApplication::palette();
    QTest::newRow("dark") << DarkPalette();
    QTest::newRow("black on white") << TwoColours(Qt::black, Qt::white, QColor(0x595959));
    QTest::newRow("white on black") << TwoColours(Qt::white, Qt::black, QColor(0xA6A6A6));
    QTest::newRow("yellow on black") << TwoColours(Qt::yellow, Qt::black, QColor(0xA8A800));
}

/// The colour behind the text of a combo, above it and beside its arrow.
QColor GroundOf(QWidget &aCombo) {
    const QImage image = aCombo.grab().toImage();
    return image.pixelColor(image.width() - 24, 4);
}

/// What is filled in, without the parts that combos and date boxes are made of.
QList<QWidget *> FieldsOf(const QWidget &aWindow) {
    QList<QWidget *> fields;
    for (QWidget *element : aWindow.findChildren<QWidget *>()) {
        const auto *text = qobject_cast<QLineEdit *>(element);
        const auto *files = qobject_cast<QAbstractItemView *>(element);
        const bool isField = (text && text->hasFrame()) || qobject_cast<QComboBox *>(element) ||
                             (files && files->frameWidth() > 0) ||
                             qobject_cast<ListView *>(element) || qobject_cast<TextPane *>(element);
        if (isField && element->isVisible()) fields << element;
    }
    return fields;
}

/// The middles of the four sides that are too faint on the element's own ground or on that of the
/// window, of which the image is.
QStringList FaintSides(const QImage &aImage, const QWidget &aWindow, const QWidget &aElement) {
    QStringList faults;
    const QRect place(aElement.mapTo(&aWindow, QPoint()), aElement.size());
    const QPoint middle = place.center();
    for (const QPoint at : {QPoint(place.left(), middle.y()), QPoint(place.right(), middle.y()),
                            QPoint(middle.x(), place.top()), QPoint(middle.x(), place.bottom())})
        for (const auto role : {QPalette::Base, QPalette::Window})
            if (Contrast(aImage.pixelColor(at), aElement.palette().color(role)) < 3)
                faults << QStringLiteral("%1 %2 at %3, %4")
                              .arg(aElement.objectName(), aImage.pixelColor(at).name())
                              .arg(at.x())
                              .arg(at.y());
    return faults;
}

double MostContrast(const QImage &aImage, const QRect &aPlace, const QColor &aGround) {
    double most = 0;
    for (int y = aPlace.top() + 2; y < aPlace.bottom() - 2; ++y)
        for (int x = aPlace.left() + 3; x < aPlace.right() - 3; ++x)
            most = std::max(most, Contrast(aImage.pixelColor(x, y), aGround));
    return most;
}

/// The fields whose edge is too faint.
QStringList FaintEdges(QWidget &aWindow) {
    QStringList faults;
    const QImage image = aWindow.grab().toImage();
    for (const QWidget *field : FieldsOf(aWindow)) faults << FaintSides(image, aWindow, *field);
    return faults;
}

/// The same for the buttons, on the ground of the window.
QStringList FaintButtons(QWidget &aWindow) {
    QStringList faults;
    const QImage image = aWindow.grab().toImage();
    for (const QPushButton *button : aWindow.findChildren<QPushButton *>())
        if (button->isVisible()) faults << FaintSides(image, aWindow, *button);
    return faults;
}

using Roles = std::pair<QPalette::ColorRole, QPalette::ColorRole>;

/// Which colours an element writes with, and on which ground.
Roles RolesOf(const QWidget &aElement) {
    if (qobject_cast<const QLineEdit *>(&aElement) || qobject_cast<const QComboBox *>(&aElement) ||
        qobject_cast<const ListView *>(&aElement) || qobject_cast<const TextPane *>(&aElement))
        return {QPalette::Text, QPalette::Base};
    if (qobject_cast<const QPushButton *>(&aElement))
        return {QPalette::ButtonText, QPalette::Button};
    return {QPalette::WindowText, QPalette::Window};
}

/// The elements whose text is too faint; what is disabled may be fainter.
QStringList FaintTexts(const QWidget &aWindow) {
    QStringList faults;
    for (const QWidget *element : aWindow.findChildren<QWidget *>()) {
        if (!element->isVisible() || !element->objectName().startsWith(u"the")) continue;
        const QPalette &palette = element->palette();
        const auto [text, ground] = RolesOf(*element);
        const double contrast = Contrast(palette.color(text), palette.color(ground));
        const double selected =
            Contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight));
        if (contrast < (element->isEnabled() ? 4.5 : 3) || (element->isEnabled() && selected < 4.5))
            faults << QStringLiteral("%1: %2, selected %3")
                          .arg(element->objectName())
                          .arg(contrast)
                          .arg(selected);
    }
    return faults;
}

/// Every criterion is on, and some elements are disabled.
void FillIn(QWidget &aDialog) {
    for (auto *box : aDialog.findChildren<QCheckBox *>()) box->setChecked(true);
    aDialog.findChild<QRadioButton *>(QStringLiteral("theRangePeriods"))->setChecked(true);
}

QList<QImage> TabsOf(QWidget &aDialog) {
    QList<QImage> images;
    auto *bar = aDialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
    for (int i = 0; i < bar->count(); ++i) {
        bar->setCurrentIndex(i);
        QApplication::processEvents();
        images << aDialog.grab().toImage();
    }
    return images;
}

/// The dialog as it looks when it is opened now.
QList<QImage> TabsOfNewDialog() {
    DocQueryOptionsFrm dialog;
    dialog.SetRecord(nullptr);
    dialog.show();
    FillIn(dialog);
    return TabsOf(dialog);
}

}  // namespace

class TestColours : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        theLight = QApplication::palette();
        MemoryOffice::Install();
    }
    void cleanup() { QApplication::setPalette(theLight); }

    /// The desktop goes dark and light again while the dialog is open.
    void OpenDialogFollowsTheDesktop() {
        const QList<QImage> light = TabsOfNewDialog();
        QApplication::setPalette(DarkPalette());
        const QList<QImage> dark = TabsOfNewDialog();
        QApplication::setPalette(theLight);
        QCOMPARE(light.size(), 5);
        for (int i = 0; i < 5; ++i) QVERIFY(light[i] != dark[i]);

        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        QCOMPARE(TabsOf(dialog), light);
        QApplication::setPalette(DarkPalette());
        QCOMPARE(TabsOf(dialog), dark);
        QApplication::setPalette(theLight);
        QCOMPARE(TabsOf(dialog), light);
    }

    void OpenPickerFollowsTheDesktop() {
        QImage fresh;
        QImage followed;
        ModalDriver driver;
        driver.Expect([&](QWidget &aPicker) {
            QApplication::setPalette(DarkPalette());
            QApplication::processEvents();
            followed = aPicker.grab().toImage();
            aPicker.close();
        });
        driver.Expect([&](QWidget &aPicker) {
            fresh = aPicker.grab().toImage();
            aPicker.close();
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!fresh.isNull());
        QCOMPARE(followed, fresh);
    }

    void EdgeTellsTheFocus() {
        QWidget window;
        auto *pane = new TextPane(&window);
        auto *button = new QPushButton(&window);
        pane->setGeometry(10, 10, 100, 60);
        button->setGeometry(10, 80, 100, 25);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto edge = [&] { return window.grab().toImage().pixelColor(10, 40); };
        pane->setFocus();
        QTRY_COMPARE(edge(), window.palette().color(QPalette::Highlight));
        button->setFocus();
        QTRY_COMPARE(edge(), EdgeColour(window.palette()));
    }

    /// By the same grounds as text boxes, also where the style draws a combo as a button.
    void CombosShowWhetherTheyCanBeUsed_data() {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<QString>("combo");
        for (const char *combo : {"thePeriodTime", "theOnePerYear"}) {
            QTest::addRow("light, %s", combo)
                << QApplication::palette() << QString::fromLatin1(combo);
            QTest::addRow("dark, %s", combo) << DarkPalette() << QString::fromLatin1(combo);
        }
    }
    void CombosShowWhetherTheyCanBeUsed() {
        QFETCH(QPalette, palette);
        QFETCH(QString, combo);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        TabsOf(dialog);
        dialog.findChild<QTabBar *>(QStringLiteral("theTabBar"))->setCurrentIndex(2);
        auto *element = dialog.findChild<QComboBox *>(combo);
        QVERIFY(element->isVisible() && !element->isEnabled());
        const QColor disabled = GroundOf(*element);
        dialog.findChild<QRadioButton *>(QStringLiteral("theOnePeriod"))->setChecked(true);
        QVERIFY(element->isEnabled());
        const QColor enabled = GroundOf(*element);
        QCOMPARE(enabled, palette.color(QPalette::Base));
        QCOMPARE(disabled, palette.color(QPalette::Disabled, QPalette::Button));
        QVERIFY(enabled != disabled);
    }

    void EdgesOfFieldsCanBeSeen_data() { AddPalettes(); }
    void EdgesOfFieldsCanBeSeen() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        auto *bar = dialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
        int fields = 0;
        for (int i = 0; i < bar->count(); ++i) {
            bar->setCurrentIndex(i);
            QApplication::processEvents();
            fields += static_cast<int>(FieldsOf(dialog).size());
            QCOMPARE(FaintEdges(dialog).join(u'\n'), QString());
        }
        QCOMPARE(fields, 15);
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        QCOMPARE(FaintEdges(browser).join(u'\n'), QString());
        ModalDriver driver;
        QStringList faults;
        driver.Expect([&](QWidget &aPicker) {
            faults = FaintEdges(aPicker);
            fields = static_cast<int>(FieldsOf(aPicker).size());
            aPicker.close();
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(faults.join(u'\n'), QString());
        QCOMPARE(fields, 2);
    }

    /// On black, where the style's own edges are black, too.
    void ButtonsHaveEdges_data() {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("white on black") << TwoColours(Qt::white, Qt::black, QColor(0xA6A6A6));
        QTest::newRow("yellow on black") << TwoColours(Qt::yellow, Qt::black, QColor(0xA8A800));
    }
    void ButtonsHaveEdges() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        const QImage image = dialog.grab().toImage();
        for (const char *name : {"theLoad", "theSave", "theSaveAs", "theOK", "theCancel"}) {
            const auto *button = dialog.findChild<QPushButton *>(QString::fromLatin1(name));
            const QPoint place = button->mapTo(&dialog, QPoint());
            const QColor edge = image.pixelColor(place + QPoint(0, button->height() / 2));
            QVERIFY2(Contrast(edge, Qt::black) >= 3, name);
        }
    }

    void BoxesHaveEdges_data() { ButtonsHaveEdges_data(); }
    void BoxesHaveEdges() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        ModalDriver driver;
        QStringList faults;
        driver.Expect([&](QWidget &aBox) {
            faults = FaintButtons(aBox);
            if (aBox.findChildren<QPushButton *>().size() != 2)
                driver.Complain(QStringLiteral("not a box with two buttons"));
            aBox.close();
        });
        AskYesNo(QStringLiteral("Удалить?"), QStringLiteral("Удаление из списка"));
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(faults.join(u'\n'), QString());
    }

    void FileDialogHasEdges_data() { AddPalettes(); }
    void FileDialogHasEdges() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        const bool isBlack = palette.color(QPalette::Window) == Qt::black;
        ModalDriver driver;
        QStringList faults;
        int fields = 0;
        driver.Expect([&](QWidget &aDialog) {
            auto *name = aDialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            faults = FaintEdges(aDialog);
            fields = static_cast<int>(FieldsOf(aDialog).size());
            if (isBlack) faults += FaintButtons(aDialog);
            QWidget &names = *name->completer()->popup();
            names.resize(200, 100);
            names.show();
            faults += FaintSides(names.grab().toImage(), names, names);
            names.close();
            aDialog.close();
        });
        AskFileNameForOpening(QStringLiteral("Открыть"), QString(), QString(), 0, 0, QString(),
                              QtFileDialogs());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(faults.join(u'\n'), QString());
        QVERIFY(fields >= 4);  // the folder, the places, the files, the name
    }

    /// It lies on the window, whose ground is often the same.
    void WhatDropsDownHasEdges_data() { AddPalettes(); }
    void WhatDropsDownHasEdges() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *bar = dialog.findChild<QTabBar *>();
        const auto check = [&](int aTab, const char *aElement, Qt::Key aKey) {
            bar->setCurrentIndex(aTab);
            auto *element = dialog.findChild<QWidget *>(QString::fromLatin1(aElement));
            element->setFocus();
            QTest::keyClick(dialog.focusWidget(), aKey);
            QWidget *popup = QApplication::activePopupWidget();
            QVERIFY2(popup, aElement);
            QCOMPARE(FaintSides(popup->grab().toImage(), *popup, *popup).join(u'\n'), QString());
            if (palette.color(QPalette::Window) == Qt::black)
                QCOMPARE(FaintButtons(*popup).join(u'\n'), QString());
            QCOMPARE(FaintTexts(*popup).join(u'\n'), QString());
            popup->close();
        };
        check(2, "thePerYear1", Qt::Key_F4);
        check(2, "thePerMonth1", Qt::Key_F4);
        check(4, "theSignDate1", Qt::Key_F4);
        check(4, "theSignDate1", Qt::Key_F4);  // the same calendar again
        auto *surname = dialog.findChild<QLineEdit *>(QStringLiteral("theSignerSurname"));
        surname->setText(QStringLiteral("Петров"));
        QContextMenuEvent ask(QContextMenuEvent::Keyboard, surname->rect().center(),
                              surname->mapToGlobal(surname->rect().center()));
        QApplication::sendEvent(surname, &ask);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        const QImage image = menu->grab().toImage();
        QCOMPARE(FaintSides(image, *menu, *menu).join(u'\n'), QString());
        const QColor ground = image.pixelColor(3, 3);
        double most[2] = {0, 0};  // contrast of what is disabled, of what is not
        for (QAction *action : menu->actions())
            if (!action->isSeparator())
                most[action->isEnabled()] =
                    std::max(most[action->isEnabled()],
                             MostContrast(image, menu->actionGeometry(action), ground));
        QVERIFY(most[0] > 2);
        QVERIFY2(most[0] < most[1], QByteArray::number(most[0]));
        menu->close();
    }

    void TabsAndHandlesHaveEdges_data() { ButtonsHaveEdges_data(); }
    void TabsAndHandlesHaveEdges() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.resize(dialog.width(), 300);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto *tabs = dialog.findChild<QTabBar *>();
        tabs->setCurrentIndex(1);
        const QImage bar = tabs->grab().toImage();
        for (int i = 0; i < tabs->count(); ++i) {
            const QRect tab = tabs->tabRect(i);
            const QColor edge = bar.pixelColor(tab.left(), tab.center().y());
            QVERIFY(Contrast(edge, Qt::black) >= 3);
            QCOMPARE(edge == palette.color(QPalette::WindowText), i == 1);
        }
        QScrollBar *scroll = nullptr;
        for (const Sheet *sheet : dialog.findChildren<Sheet *>())
            if (sheet->isVisible() && sheet->verticalScrollBar()->maximum() > 0)
                scroll = sheet->verticalScrollBar();
        QVERIFY(scroll);
        const QImage handles[] = {scroll->grab().toImage(),
                                  (scroll->setValue(scroll->maximum()), scroll->grab().toImage())};
        // Under the button above and over the one below, where the handle ends.
        const int button = scroll->width();
        const int middle = scroll->width() / 2;
        const auto ends = [&](const QImage &aImage, int aFrom, int aTo) {
            for (int y = aFrom; y < aTo; ++y)
                if (Contrast(aImage.pixelColor(middle, y), Qt::black) >= 3) return true;
            return false;
        };
        QVERIFY(ends(handles[0], button - 2, button + 3));
        QVERIFY(ends(handles[1], scroll->height() - button - 3, scroll->height() - button + 2));
        QVERIFY(!ends(handles[1], button + 3, button + 6));
    }

    void TextsCanBeRead_data() { AddPalettes(); }
    void TextsCanBeRead() {
        QFETCH(QPalette, palette);
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        auto *bar = dialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
        for (int i = 0; i < bar->count(); ++i) {
            bar->setCurrentIndex(i);
            QCOMPARE(FaintTexts(dialog).join(u'\n'), QString());
        }
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        QCOMPARE(FaintTexts(browser).join(u'\n'), QString());
        ModalDriver driver;
        QStringList faults;
        driver.Expect([&](QWidget &aPicker) {
            faults = FaintTexts(aPicker);
            aPicker.close();
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(faults.join(u'\n'), QString());
    }

    /// What the desktop has chosen well is left as it is.
    void GoodColoursAreNotReplaced() {
        const QPalette palette = TwoColours(Qt::yellow, Qt::black, QColor(0xA8A800));
        QApplication::setPalette(palette);
        DocQueryOptionsFrm dialog;
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                    QPalette::Highlight, QPalette::HighlightedText})
                QCOMPARE(dialog.palette().color(group, role), palette.color(group, role));
    }

    /// It covers the edge of its frame, and nothing else is to be seen of that.
    void CheckBoxOnAnEdgeHasTheGroundOfThePage() {
        QApplication::setPalette(DarkPalette());
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        auto *box = dialog.findChild<QCheckBox *>(QStringLiteral("theIsTaxpayers"));
        const QImage image = box->grab().toImage();
        QCOMPARE(image.pixelColor(image.width() - 1, 0), DarkPalette().color(QPalette::Window));
    }

private:
    QPalette theLight;
};

VK_TEST_CLASS(TestColours);
#include "TestColours.moc"
