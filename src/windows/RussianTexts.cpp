#include "windows/RussianTexts.h"

#include <vector>

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QChildEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QLabel>
#include <QListView>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>

namespace Vk_DocQuery {

namespace {

/// "%1" stands for any text. One at the end of the Russian only: the English is a beginning, and
/// what follows it is a text of Qt's, too.
struct Text {
    const char *Context;
    const char *English;
    const char16_t *Russian;
};

constexpr Text theTexts[] = {
    {"QLineEdit", "&Undo", u"&Отменить"},
    {"QLineEdit", "&Redo", u"&Повторить"},
    {"QLineEdit", "Cu&t", u"&Вырезать"},
    {"QLineEdit", "&Copy", u"&Копировать"},
    {"QLineEdit", "&Paste", u"В&ставить"},
    {"QLineEdit", "Delete", u"Удалить"},
    {"QLineEdit", "Select All", u"Выделить всё"},
    {"QWidgetTextControl", "&Undo", u"&Отменить"},
    {"QWidgetTextControl", "&Redo", u"&Повторить"},
    {"QWidgetTextControl", "Cu&t", u"&Вырезать"},
    {"QWidgetTextControl", "&Copy", u"&Копировать"},
    {"QWidgetTextControl", "&Paste", u"В&ставить"},
    {"QWidgetTextControl", "Delete", u"Удалить"},
    {"QWidgetTextControl", "Select All", u"Выделить всё"},
    {"QAbstractSpinBox", "&Select All", u"Выделить &всё"},
    {"QAbstractSpinBox", "&Step up", u"&Больше"},
    {"QAbstractSpinBox", "Step &down", u"&Меньше"},
    {"QScrollBar", "Scroll here", u"Прокрутить сюда"},
    {"QScrollBar", "Left edge", u"К левому краю"},
    {"QScrollBar", "Top", u"В начало"},
    {"QScrollBar", "Right edge", u"К правому краю"},
    {"QScrollBar", "Bottom", u"В конец"},
    {"QScrollBar", "Page left", u"На страницу влево"},
    {"QScrollBar", "Page up", u"На страницу вверх"},
    {"QScrollBar", "Page right", u"На страницу вправо"},
    {"QScrollBar", "Page down", u"На страницу вниз"},
    {"QScrollBar", "Scroll left", u"Прокрутить влево"},
    {"QScrollBar", "Scroll up", u"Прокрутить вверх"},
    {"QScrollBar", "Scroll right", u"Прокрутить вправо"},
    {"QScrollBar", "Scroll down", u"Прокрутить вниз"},
    {"QFileDialog", "Back", u"Назад"},
    {"QFileDialog", "Go back", u"Вернуться к прежней папке"},
    {"QFileDialog", "Forward", u"Вперёд"},
    {"QFileDialog", "Go forward", u"Перейти к следующей папке"},
    {"QFileDialog", "Parent Directory", u"Папка выше"},
    {"QFileDialog", "Go to the parent directory", u"Перейти в папку выше"},
    {"QFileDialog", "Create New Folder", u"Создать папку"},
    {"QFileDialog", "Create a New Folder", u"Создать новую папку"},
    {"QFileDialog", "List View", u"Список"},
    {"QFileDialog", "Change to list view mode", u"Показать файлы списком"},
    {"QFileDialog", "Detail View", u"Таблица"},
    {"QFileDialog", "Change to detail view mode", u"Показать файлы таблицей"},
    {"QFileDialog", "Files", u"Файлы"},
    {"QFileDialog", "Sidebar", u"Места"},
    {"QFileDialog", "List of places and bookmarks", u"Список мест и закладок"},
    {"QFileDialog", "&Open", u"&Открыть"},
    {"QFileDialog", "&Save", u"&Сохранить"},
    {"QFileDialog", "&Rename", u"&Переименовать"},
    {"QFileDialog", "&Delete", u"&Удалить"},
    {"QFileDialog", "Show &hidden files", u"Показать &скрытые файлы"},
    {"QFileDialog", "&New Folder", u"&Новая папка"},
    {"QFileDialog", "Recent Places", u"Недавние места"},
    {"QFileDialog", "Delete", u"Удалить"},
    {"QFileDialog", "Show ", u"Показать столбец: %1"},
    {"QFileDialog", "'%1' is write protected.\nDo you want to delete it anyway?",
     u"\"%1\" защищен от записи.\nВсё равно удалить?"},
    {"QFileDialog", "Are you sure you want to delete '%1'?", u"Удалить \"%1\"?"},
    {"QFileDialog", "Could not delete directory.", u"Не удалось удалить папку."},
    {"QFileSystemModel", "Computer", u"Компьютер"},
    {"QFileSystemModel", "Name", u"Имя"},
    {"QFileSystemModel", "Size", u"Размер"},
    {"QFileSystemModel", "Type", u"Тип"},
    {"QFileSystemModel", "Date Modified", u"Дата изменения"},
    {"QSidebar", "Remove", u"Убрать"},
    {"QPlatformTheme", "OK", u"OK"},
    {"QPlatformTheme", "Cancel", u"Отмена"},
    {"QPlatformTheme", "&Yes", u"&Да"},
    {"QPlatformTheme", "&No", u"&Нет"},
};

const QString theGap = QStringLiteral("%1");

/// Empty if the text is not what Qt shows for the row.
QString Translated(const Text &aText, const QString &aShown) {
    const QString qts = QCoreApplication::translate(aText.Context, aText.English);
    QString russian = QString::fromUtf16(aText.Russian);
    if (!russian.contains(theGap)) return aShown == qts ? russian : QString();
    const bool isBeginning = !qts.contains(theGap);
    const QString head = qts.section(theGap, 0, 0);
    const QString tail = isBeginning ? QString() : qts.section(theGap, 1);
    if (aShown.size() <= head.size() + tail.size() || !aShown.startsWith(head) ||
        !aShown.endsWith(tail))
        return QString();
    const QString between = aShown.mid(head.size(), aShown.size() - head.size() - tail.size());
    return russian.replace(theGap, isBeginning ? InRussian(between) : between);
}

/// The key behind a tab is no word.
void Translate(QAction &aAction) {
    const QString shown = aAction.text();
    const QString keys = shown.mid(shown.indexOf(u'\t'));
    const QString text = shown.section(u'\t', 0, 0);
    const QString russian = InRussian(text);
    if (russian == text) return;
    aAction.setText(shown.contains(u'\t') ? russian + keys : russian);
}

void Translate(QWidget &aWidget) {
    for (const char *property :
         {"windowTitle", "text", "toolTip", "accessibleName", "accessibleDescription"}) {
        const QString shown = aWidget.property(property).toString();
        const QString russian = shown.isEmpty() ? shown : InRussian(shown);
        if (russian != shown) aWidget.setProperty(property, russian);
    }
    for (QAction *action : aWidget.actions()) Translate(*action);
}

void Translate(QAbstractItemModel &aModel) {
    for (int row = 0; row < aModel.rowCount(); ++row) {
        const QModelIndex index = aModel.index(row, 0);
        const QString shown = index.data().toString();
        const QString russian = InRussian(shown);
        if (russian != shown) aModel.setData(index, russian);
    }
}

/// Stays with a window and looks at what Qt makes in it. The elements of a window are watched from
/// when it comes up, all at once: until then they are made and polished one by one, and nobody can
/// have asked for a menu.
class RussianTexts : public QObject {
public:
    explicit RussianTexts(QWidget &aWindow)
        : QObject(&aWindow), theIsFileDialog(qobject_cast<QFileDialog *>(&aWindow)) {
        aWindow.setLocale(QLocale(QLocale::Russian, QLocale::Russia));
        aWindow.installEventFilter(this);
        if (theIsFileDialog || aWindow.isVisible()) FollowAll(aWindow);
        if (theIsFileDialog) TranslateFileDialog(aWindow);
    }

    bool eventFilter(QObject *aWatched, QEvent *aEvent) override {
        if (aEvent->type() == QEvent::Polish) {
            thePolished.emplace_back(aWatched);
        } else if (aEvent->type() == QEvent::ChildPolished) {
            // Its actions and texts are there, its size is not taken yet.
            auto *child = qobject_cast<QWidget *>(static_cast<QChildEvent *>(aEvent)->child());
            if (child) TakeChild(*child);
        } else if (aEvent->type() == QEvent::Show && aWatched == parent()) {
            if (!theFollowsAll) FollowAll(static_cast<QWidget &>(*aWatched));
        } else if (theIsFileDialog && aEvent->type() == QEvent::Paint) {
            // Qt names the button anew when a folder is chosen.
            if (auto *button = qobject_cast<QAbstractButton *>(aWatched)) Translate(*button);
        }
        return false;
    }

private:
    void FollowAll(QWidget &aWindow) {
        theFollowsAll = true;
        for (QWidget *part : aWindow.findChildren<QWidget *>()) Follow(*part);
    }

    void Follow(QWidget &aWidget) { aWidget.installEventFilter(this); }

    /// A child that was watched when it was polished itself is an old one, with all that it has.
    bool IsNew(const QWidget &aChild) {
        if (thePolished.empty() || thePolished.back() != &aChild) return true;
        thePolished.pop_back();
        return false;
    }

    void TakeChild(QWidget &aChild) {
        if (IsNew(aChild) && theFollowsAll) {
            Follow(aChild);
            for (QWidget *part : aChild.findChildren<QWidget *>()) Follow(*part);
        }
        const bool isQts = qobject_cast<QMenu *>(&aChild) ||
                           (theIsFileDialog && qobject_cast<QMessageBox *>(&aChild));
        if (!isQts) return;
        Translate(aChild);
        for (QAbstractButton *button : aChild.findChildren<QAbstractButton *>()) Translate(*button);
    }

    void TranslateFileDialog(QWidget &aDialog) {
        for (QWidget *element : aDialog.findChildren<QWidget *>()) Translate(*element);
        for (QAction *action : aDialog.findChildren<QAction *>()) Translate(*action);
        if (const auto *places = aDialog.findChild<QListView *>(QStringLiteral("sidebar")))
            FollowModel(places->model());
        if (const auto *folders = aDialog.findChild<QComboBox *>(QStringLiteral("lookInCombo")))
            FollowModel(folders->model());
    }

    void FollowModel(QAbstractItemModel *aModel) {
        Translate(*aModel);
        connect(aModel, &QAbstractItemModel::dataChanged, this, [aModel] { Translate(*aModel); });
    }

    bool theIsFileDialog;
    bool theFollowsAll = false;
    std::vector<QPointer<QObject>> thePolished;  ///< whose parents have not heard of it yet
};

}  // namespace

QString InRussian(const QString &aShown) {
    for (const Text &text : theTexts) {
        const QString russian = Translated(text, aShown);
        if (!russian.isEmpty()) return russian;
    }
    return aShown;
}

void SpeakRussian(QWidget &aWindow) {
    for (const QObject *child : aWindow.children())
        if (dynamic_cast<const RussianTexts *>(child)) return;
    new RussianTexts(aWindow);
}

}  // namespace Vk_DocQuery
