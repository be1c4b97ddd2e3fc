#include <functional>

#include <QAbstractProxyModel>
#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QTranslator>
#include <QTreeView>

#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/mFileOpenSaveDialog.h"
#include "windows/RussianTexts.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theTitle = QStringLiteral("Титул");

/// A host whose own texts are in a language of its own: each text of Qt between brackets.
class BracketTranslator : public QTranslator {
public:
    QString translate(const char *, const char *aText, const char *, int) const override {
        return u'<' + QString::fromUtf8(aText) + u'>';
    }
    bool isEmpty() const override { return false; }
};

/// Opens the context menu, looks at it and closes it; menus that run a loop of their own too.
QStringList ContextMenuOf(QWidget &aWidget) {
    QStringList texts;
    QTimer::singleShot(0, &aWidget, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu) return;
        for (const QAction *action : menu->actions())
            if (!action->isSeparator()) texts << action->text();
        menu->close();
    });
    const QPoint place(3, aWidget.height() / 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, aWidget.mapToGlobal(place));
    QCoreApplication::sendEvent(&aWidget, &event);
    QCoreApplication::processEvents();
    return texts;
}

bool HasLatinWord(const QString &aText) {
    static const QRegularExpression words(QStringLiteral("[A-Za-z]{3,}"));
    static const QRegularExpression keys(QStringLiteral("\\t.*$"));
    return QString(aText).remove(keys).contains(words);
}

/// What a user reads or hears of an element.
QStringList TextsOf(const QWidget &aWidget) {
    QStringList texts;
    for (const char *name : {"text", "toolTip", "accessibleName", "accessibleDescription"}) {
        const QString text = aWidget.property(name).toString();
        if (!text.isEmpty() && !qobject_cast<const QLineEdit *>(&aWidget)) texts << text;
    }
    for (const QAction *action : aWidget.actions()) texts << action->text();
    return texts;
}

QStringList TextsOf(const QAbstractItemModel &aModel) {
    QStringList texts;
    for (int row = 0; row < aModel.rowCount(); ++row)
        texts << aModel.index(row, 0).data().toString();
    return texts;
}

}  // namespace

/// Our windows speak Russian in a host that does not, and the host goes on speaking as it did. The
/// application of the tests has no translator.
class TestRussianTexts : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() { theFolder = std::make_unique<QTemporaryDir>(); }

    void ContextMenus_data() {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QString>("texts");
        const auto row = [](const char *aElement, const char16_t *aTexts) {
            QTest::newRow(aElement) << QString::fromLatin1(aElement) << QString::fromUtf16(aTexts);
        };
        row("line",
            u"&Отменить\tCtrl+Z|&Повторить\tCtrl+Shift+Z|&Вырезать\tCtrl+X|&Копировать\tCtrl+C|"
            u"В&ставить\tCtrl+V|Удалить|Выделить всё\tCtrl+A");
        row("text",
            u"&Отменить\tCtrl+Z|&Повторить\tCtrl+Shift+Z|&Вырезать\tCtrl+X|&Копировать\tCtrl+C|"
            u"В&ставить\tCtrl+V|Удалить|Выделить всё\tCtrl+A");
        row("pane", u"&Копировать\tCtrl+C|Выделить всё\tCtrl+A");
        row("spin",
            u"&Отменить\tCtrl+Z|&Повторить\tCtrl+Shift+Z|&Вырезать\tCtrl+X|&Копировать\tCtrl+C|"
            u"В&ставить\tCtrl+V|Удалить|Выделить &всё|&Больше|&Меньше");
        row("vertical",
            u"Прокрутить сюда|В начало|В конец|На страницу вверх|На страницу вниз|"
            u"Прокрутить вверх|Прокрутить вниз");
        row("horizontal",
            u"Прокрутить сюда|К левому краю|К правому краю|На страницу влево|На страницу вправо|"
            u"Прокрутить влево|Прокрутить вправо");
    }
    void ContextMenus() {
        QFETCH(QString, element);
        QFETCH(QString, texts);
        QDialog window;
        MakeElements(window);
        SpeakRussian(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *late = new QLineEdit(&window);  // as an editor in a list
        late->setObjectName(QStringLiteral("late"));
        late->show();
        auto *widget = window.findChild<QWidget *>(element);
        // A platform has another key for the same.
        const QString shown = ContextMenuOf(*widget).join(u'|').replace(
            QStringLiteral("Ctrl+Y"), QStringLiteral("Ctrl+Shift+Z"));
        QCOMPARE(shown, texts);
        if (element == QStringLiteral("line"))
            QCOMPARE(ContextMenuOf(*late).first(), QStringLiteral("&Отменить\tCtrl+Z"));
    }

    void HostsWindowsStayAsTheyAre() {
        const QLocale before;
        QDialog ours;
        MakeElements(ours);
        SpeakRussian(ours);
        QWidget hosts;
        MakeElements(hosts);
        ours.show();
        hosts.show();
        QCOMPARE(ContextMenuOf(*hosts.findChild<QWidget *>(QStringLiteral("pane"))).join(u'|'),
                 QStringLiteral("&Copy\tCtrl+C|Select All\tCtrl+A"));
        QCOMPARE(QLocale(), before);
        QVERIFY(hosts.locale() == before);
    }

    void WhateverTheLanguageOfTheHost() {
        BracketTranslator host;
        QCoreApplication::installTranslator(&host);
        QCOMPARE(InRussian(QStringLiteral("<Recent Places>")), QStringLiteral("Недавние места"));
        QCOMPARE(InRussian(QStringLiteral("<Are you sure you want to delete 'x %1 y'?>")),
                 QStringLiteral("Удалить \"x %1 y\"?"));
        QCOMPARE(InRussian(QStringLiteral("Recent Places")), QStringLiteral("Recent Places"));
        QCoreApplication::removeTranslator(&host);
        QCOMPARE(InRussian(QStringLiteral("Show Size")),
                 QStringLiteral("Показать столбец: Размер"));
        QCOMPARE(InRussian(QStringLiteral("Show")), QStringLiteral("Show"));
        QCOMPARE(InRussian(QString()), QString());
    }

    void DatesAreRussian() {
        QDialog window;
        auto *calendar = new QCalendarWidget(&window);
        SpeakRussian(window);
        QCOMPARE(calendar->locale().standaloneMonthName(3), QStringLiteral("март"));
    }

    /// All that can be read in the file dialog, in both modes of it.
    void FileDialog_data() {
        QTest::addColumn<bool>("save");
        QTest::newRow("opening") << false;
        QTest::newRow("saving") << true;
    }
    void FileDialog() {
        QFETCH(bool, save);
        WriteFile(QStringLiteral("запрос.qvk"), 1536);
        QVERIFY(QDir(theFolder->path()).mkdir(QStringLiteral("архив")));
        RunDialog(save, [&](ModalDriver &driver, QFileDialog &dialog) {
            for (const QWidget *element : dialog.findChildren<QWidget *>())
                NoLatin(driver, TextsOf(*element), element->objectName());
            for (const QAction *action : dialog.findChildren<QAction *>())
                NoLatin(driver, {action->text()}, action->objectName());
            auto *table = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
            QStringList captions;
            for (int column = 0; column < 4; ++column)
                captions << table->model()->headerData(column, Qt::Horizontal).toString();
            Same(driver, captions.join(u'|'), u"Имя|Размер|Тип|Дата изменения");
            const auto *places = dialog.findChild<QAbstractItemView *>(QStringLiteral("sidebar"));
            Same(driver, TextsOf(*places->model()).first(), u"Компьютер");
            auto *folders = dialog.findChild<QComboBox *>(QStringLiteral("lookInCombo"));
            folders->showPopup();
            if (!TextsOf(*folders->model()).contains(QStringLiteral("Компьютер")))
                driver.Complain(TextsOf(*folders->model()).join(u'|'));
            if (TextsOf(*folders->model()).contains(QStringLiteral("Recent Places")))
                driver.Complain(QStringLiteral("recent places"));
            folders->hidePopup();
        });
    }

    void CellsOfTheFileDialog() {
        WriteFile(QStringLiteral("запрос.qvk"), 1536);
        QFile file(theFolder->filePath(QStringLiteral("запрос.qvk")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime(QDate(2024, 3, 7), QTime(15, 4)),
                                 QFileDevice::FileModificationTime));
        file.close();
        QVERIFY(QDir(theFolder->path()).mkdir(QStringLiteral("архив")));
        RunDialog(false, [&](ModalDriver &driver, QFileDialog &dialog) {
            Same(driver, RowOf(dialog, QStringLiteral("запрос.qvk")),
                 u"запрос.qvk|1,5 кБ|Файл \"QVK\"|07.03.2024 15:04");
            Same(driver, RowOf(dialog, QStringLiteral("архив")).section(u'|', 0, 2),
                 u"архив||Папка");
        });
    }

    /// Where a folder is chosen in the dialog for saving, Qt names the button anew.
    void ButtonOnAFolder() {
        QVERIFY(QDir(theFolder->path()).mkdir(QStringLiteral("архив")));
        RunDialog(true, [&](ModalDriver &driver, QFileDialog &dialog) {
            auto *table = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
            dialog.setViewMode(QFileDialog::Detail);
            table->setCurrentIndex(IndexOf(dialog, QStringLiteral("архив")));
            for (const QPushButton *button : dialog.findChildren<QPushButton *>()) {
                const auto russian = [button] { return !HasLatinWord(button->text()); };
                if (!QTest::qWaitFor(russian)) driver.Complain(button->text());
            }
        });
    }

    void NewFolderIsNamedInRussian() {
        RunDialog(true, [&](ModalDriver &driver, QFileDialog &dialog) {
            for (int i = 0; i < 2; ++i) {
                driver.Click(dialog.findChild<QToolButton *>(QStringLiteral("newFolderButton")));
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);  // keeps the name
            }
        });
        QCOMPARE(QDir(theFolder->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).join(u'|'),
                 QStringLiteral("Новая папка|Новая папка (2)"));
    }

    void QuestionBeforeDeleting() {
        WriteFile(QStringLiteral("запрос.qvk"), 3);
        RunDialog(false, [&](ModalDriver &driver, QFileDialog &dialog) {
            dialog.setViewMode(QFileDialog::Detail);
            auto *table = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
            table->setCurrentIndex(IndexOf(dialog, QStringLiteral("запрос.qvk")));
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Удалить"),
                             QStringLiteral("Удалить \"запрос.qvk\"?"), QStringLiteral("Нет"));
            auto *action = dialog.findChild<QAction *>(QStringLiteral("qt_delete_action"));
            action->setEnabled(true);
            action->trigger();
        });
        QVERIFY(QFile::exists(theFolder->filePath(QStringLiteral("запрос.qvk"))));
    }

    void Renaming_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("fits");
        QTest::newRow("another") << QStringLiteral("новый.qvk") << true;
        QTest::newRow("the same") << QStringLiteral("a.qvk") << true;
        QTest::newRow("there already") << QStringLiteral("b.qvk") << false;
        QTest::newRow("in another folder") << QStringLiteral("../c.qvk") << false;
        QTest::newRow("none") << QString() << false;
    }
    void Renaming() {
        QFETCH(QString, name);
        QFETCH(bool, fits);
        WriteFile(QStringLiteral("a.qvk"), 3);
        WriteFile(QStringLiteral("b.qvk"), 4);
        RunDialog(false, [&](ModalDriver &driver, QFileDialog &dialog) {
            if (!fits) {
                driver.ExpectBox(
                    QMessageBox::Warning, QStringLiteral("Переименование"),
                    QStringLiteral(
                        "Не удалось переименовать \"a.qvk\" в \"%1\".\r\nВозможно, такое "
                        "имя уже есть, недопустимо или папка защищена от записи.")
                        .arg(name),
                    QStringLiteral("OK"));
            }
            const QModelIndex index = IndexOf(dialog, QStringLiteral("a.qvk"));
            if (dialog.proxyModel()->setData(index, name, Qt::EditRole) != fits)
                driver.Complain(QStringLiteral("renamed"));
        });
        QCOMPARE(QFileInfo(theFolder->filePath(fits ? name : QStringLiteral("a.qvk"))).size(), 3);
        QCOMPARE(QFileInfo(theFolder->filePath(QStringLiteral("b.qvk"))).size(), 4);
    }

private:
    static void MakeElements(QWidget &aWindow) {
        auto *text = new QPlainTextEdit(&aWindow);
        auto *pane = new QPlainTextEdit(QStringLiteral("x"), &aWindow);
        pane->setReadOnly(true);
        const std::pair<const char *, QWidget *> elements[] = {
            {"line", new QLineEdit(&aWindow)},
            {"text", text->viewport()},
            {"pane", pane->viewport()},
            {"spin", new QSpinBox(&aWindow)},
            {"vertical", new QScrollBar(Qt::Vertical, &aWindow)},
            {"horizontal", new QScrollBar(Qt::Horizontal, &aWindow)},
        };
        for (const auto &[name, element] : elements)
            element->setObjectName(QString::fromLatin1(name));
    }

    void WriteFile(const QString &aName, int aSize) const {
        QFile file(theFolder->filePath(aName));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(aSize, 'x')) != aSize)
            qFatal("file");
    }

    /// Runs the file dialog in the folder, works on it and cancels it.
    void RunDialog(bool aSave, const std::function<void(ModalDriver &, QFileDialog &)> &aWork) {
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            auto *dialog = qobject_cast<QFileDialog *>(&window);
            if (dialog)
                aWork(driver, *dialog);
            else
                driver.Complain(QStringLiteral("no file dialog"));
            window.close();
        });
        const QString filter = QStringLiteral("Файлы (*.qvk)|*.qvk");
        if (aSave) {
            AskFileNameForSaving(theTitle, filter,
                                 theFolder->filePath(QStringLiteral("запрос 1.qvk")), 0,
                                 theSavingFlags, QString());
        } else {
            AskFileNameForOpening(theTitle, filter, QString(), 0, theOpeningFlags,
                                  theFolder->path());
        }
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    QModelIndex IndexOf(const QFileDialog &aDialog, const QString &aName) const {
        const auto *files = aDialog.findChild<QFileSystemModel *>();
        const auto find = [&] { return files->index(theFolder->filePath(aName)); };
        if (!QTest::qWaitFor([&] { return find().isValid(); })) return {};
        return aDialog.proxyModel()->mapFromSource(find());
    }

    QString RowOf(const QFileDialog &aDialog, const QString &aName) const {
        const QModelIndex index = IndexOf(aDialog, aName);
        // The kind comes from a thread that reads the folder.
        (void)QTest::qWaitFor(
            [&] { return !index.siblingAtColumn(2).data().toString().isEmpty(); });
        QStringList cells;
        for (int column = 0; column < 4; ++column)
            cells << index.siblingAtColumn(column).data().toString().replace(QChar(0xA0), u' ');
        return cells.join(u'|');
    }

    static void Same(ModalDriver &aDriver, const QString &aActual, const char16_t *aExpected) {
        if (aActual != QString::fromUtf16(aExpected)) aDriver.Complain(aActual);
    }
    static void NoLatin(ModalDriver &aDriver, const QStringList &aTexts, const QString &aWhere) {
        for (const QString &text : aTexts) {
            const bool isFile = text.contains(QStringLiteral("qvk")) || text.contains(u'/');
            if (!isFile && HasLatinWord(text))
                aDriver.Complain(aWhere + QStringLiteral(": ") + text);
        }
    }

    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestRussianTexts);

#include "TestRussianTexts.moc"
