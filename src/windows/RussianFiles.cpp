#include "windows/RussianFiles.h"

#include <QAction>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileSystemModel>
#include <QIdentityProxyModel>
#include <QLocale>
#include <QToolButton>
#include <QTreeView>

#include "windows/Boxes.h"

namespace Vk_DocQuery {

namespace {

enum Column : int { NameColumn, SizeColumn, KindColumn, DateColumn };

QLocale Russian() {
    return QLocale(QLocale::Russian, QLocale::Russia);
}

class RussianFileTypes : public QFileIconProvider {
public:
    QString type(const QFileInfo &aFile) const override {
        if (aFile.isDir()) return QStringLiteral("Папка");
        const QString suffix = aFile.suffix();
        return suffix.isEmpty() ? QStringLiteral("Файл")
                                : QStringLiteral("Файл \"%1\"").arg(suffix.toUpper());
    }
};

/// What Qt's model of the files shows in the language of the system, and its box for a name that
/// cannot be.
class RussianColumns : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant headerData(int aSection, Qt::Orientation aOrientation, int aRole) const override {
        constexpr const char16_t *captions[] = {u"Имя", u"Размер", u"Тип", u"Дата изменения"};
        const bool isCaption = aOrientation == Qt::Horizontal && aRole == Qt::DisplayRole;
        if (isCaption && aSection >= NameColumn && aSection <= DateColumn)
            return QString::fromUtf16(captions[aSection]);
        return QIdentityProxyModel::headerData(aSection, aOrientation, aRole);
    }

    QVariant data(const QModelIndex &aIndex, int aRole) const override {
        if (aRole == Qt::DisplayRole && aIndex.isValid()) {
            const QFileInfo file = FileOf(aIndex);
            if (aIndex.column() == SizeColumn && file.isFile())
                return Russian().formattedDataSize(file.size(), 1,
                                                   QLocale::DataSizeTraditionalFormat);
            if (aIndex.column() == DateColumn && file.exists())
                return Russian().toString(file.lastModified(), QLocale::ShortFormat);
        }
        return QIdentityProxyModel::data(aIndex, aRole);
    }

    bool setData(const QModelIndex &aIndex, const QVariant &aValue, int aRole) override {
        if (aRole != Qt::EditRole) return QIdentityProxyModel::setData(aIndex, aValue, aRole);
        const QFileInfo file = FileOf(aIndex);
        const QString name = aValue.toString();
        if (name == file.fileName()) return true;
        const bool isName = !name.isEmpty() && !name.contains(u'/') && !name.contains(u'\\');
        if (isName && !QFileInfo::exists(file.dir().filePath(name)) &&
            QFile::rename(file.filePath(), file.dir().filePath(name)))
            return true;  // the model sees it by itself
        ShowWarningBox(
            QStringLiteral("Не удалось переименовать \"%1\" в \"%2\".\r\nВозможно, такое "
                           "имя уже есть, недопустимо или папка защищена от записи.")
                .arg(file.fileName(), name),
            QStringLiteral("Переименование"));
        return false;
    }

private:
    QFileInfo FileOf(const QModelIndex &aIndex) const {
        return static_cast<QFileSystemModel *>(sourceModel())->fileInfo(mapToSource(aIndex));
    }
};

QString FreeNameIn(const QDir &aFolder) {
    const QString plain = QStringLiteral("Новая папка");
    QString name = plain;
    for (int number = 2; aFolder.exists(name); ++number)
        name = QStringLiteral("%1 (%2)").arg(plain).arg(number);
    return name;
}

QAbstractItemView *FilesShown(const QFileDialog &aDialog) {
    auto *table = aDialog.findChild<QTreeView *>(QStringLiteral("treeView"));
    auto *list = aDialog.findChild<QAbstractItemView *>(QStringLiteral("listView"));
    return table && table->isVisible() ? table : list;
}

/// Makes a folder and lets the user name it.
void MakeFolder(QFileDialog &aDialog) {
    auto *model = aDialog.findChild<QFileSystemModel *>();
    auto *view = FilesShown(aDialog);
    auto *rename = aDialog.findChild<QAction *>(QStringLiteral("qt_rename_action"));
    if (!model || !view || !rename) return;
    const QDir folder = aDialog.directory();
    const QModelIndex made = model->mkdir(model->index(folder.path()), FreeNameIn(folder));
    if (!made.isValid()) {
        ShowWarningBox(QStringLiteral("Не удалось создать папку в \"%1\".")
                           .arg(QDir::toNativeSeparators(folder.path())),
                       aDialog.windowTitle());
        return;
    }
    view->setCurrentIndex(aDialog.proxyModel()->mapFromSource(made));
    rename->setEnabled(true);
    rename->trigger();
}

/// Qt's own would be called as in the language of the application.
void TakeOverNewFolder(QFileDialog &aDialog) {
    const auto take = [&](auto *aSender, auto aSignal) {
        if (!aSender) return;
        QObject::disconnect(aSender, aSignal, nullptr, nullptr);
        QObject::connect(aSender, aSignal, &aDialog, [&aDialog] { MakeFolder(aDialog); });
    };
    take(aDialog.findChild<QToolButton *>(QStringLiteral("newFolderButton")),
         &QToolButton::clicked);
    take(aDialog.findChild<QAction *>(QStringLiteral("qt_new_folder_action")), &QAction::triggered);
}

}  // namespace

void ListFilesInRussian(QFileDialog &aDialog) {
    static auto *types = new RussianFileTypes;  // no dialog owns it
    aDialog.setIconProvider(types);
    aDialog.setProxyModel(new RussianColumns(&aDialog));
    TakeOverNewFolder(aDialog);
}

}  // namespace Vk_DocQuery
