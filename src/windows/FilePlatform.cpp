#include "windows/FilePlatform.h"

#include <algorithm>
#include <cstring>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QRegularExpression>
#include <QSplitter>
#include <QTreeView>

#include "foundation/Application.h"
#include "look/Colours.h"
#include "windows/Boxes.h"
#include "windows/ModalRun.h"
#include "windows/mVkGraphLight.h"
#include "windows/RussianFiles.h"
#include "windows/WindowFit.h"

namespace Vk_DocQuery {

namespace {

// Twips.
constexpr int theWidth = 12315;
constexpr int theHeight = 7500;
constexpr int thePlacesWidth = 2400;

QString TextOf(const char *aBytes) {
    return aBytes ? QString::fromUtf8(aBytes) : QString();
}

/// A pair of the filter list: what the user reads, and the patterns.
struct Filter {
    QString Name;
    QStringList Patterns;
};

QList<Filter> FiltersOf(const char *aList) {
    QList<Filter> filters;
    const char *position = aList;
    while (position && *position != '\0') {
        const QString description = TextOf(position);
        position += std::strlen(position) + 1;
        const QStringList patterns = TextOf(position).split(u';', Qt::SkipEmptyParts);
        position += std::strlen(position) + 1;
        // Qt takes the patterns from the brackets at the end; most descriptions bring them along.
        const QString brackets = u'(' + patterns.join(u' ') + u')';
        filters << Filter{
            description.endsWith(brackets) ? description : description + u' ' + brackets, patterns};
    }
    return filters;
}

/// The name as the user means it. "Запрос за 2.2024" has no extension; one that the filter brings
/// along makes the file show up again in the dialog for opening.
QString WithExtension(const QString &aFile, const QString &aExtension) {
    static const QRegularExpression typed(QStringLiteral("\\.[A-Za-z][A-Za-z0-9]{0,7}$"));
    if (aExtension.isEmpty() || typed.match(aFile).hasMatch()) return aFile;
    return aFile.endsWith(u'.') ? aFile + aExtension : aFile + u'.' + aExtension;
}

QString ExtensionOf(const Filter &aFilter) {
    static const QRegularExpression plain(QStringLiteral("^\\*\\.(\\w+)$"));
    return aFilter.Patterns.isEmpty() ? QString()
                                      : plain.match(aFilter.Patterns.first()).captured(1);
}

class FileDialog {
public:
    FileDialog(OpenFileName &aRecord, bool aSave);
    /// The chosen files; empty on cancel.
    QStringList Ask();
    qint32 FilterIndex() const;

private:
    void MakeRoom();
    void SetPlace();
    QStringList ChosenFiles() const;
    bool IsAllowed(const QString &aFile);
    bool Has(FileDialogFlags aFlag) const { return (theRecord.Flags & aFlag) != 0; }

    const OpenFileName &theRecord;
    bool theIsSave;
    QList<Filter> theFilters;
    QFileDialog theDialog;
    ModalRun theRun;
};

FileDialog::FileDialog(OpenFileName &aRecord, bool aSave)
    : theRecord(aRecord),
      theIsSave(aSave),
      theFilters(FiltersOf(aRecord.lpstrFilter)),
      theRun(theDialog, aRecord.hwndOwner) {
    ListFilesInRussian(theDialog);
    MakeRoom();
    theDialog.setWindowTitle(TextOf(aRecord.lpstrTitle));
    theDialog.setAcceptMode(aSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    theDialog.setFileMode(Has(AllowMultiSelect) && !aSave ? QFileDialog::ExistingFiles
                                                          : QFileDialog::AnyFile);
    theDialog.setOption(
        QFileDialog::DontConfirmOverwrite);  // asked in IsAllowed, for the whole name
    theDialog.setLabelText(QFileDialog::LookIn, QStringLiteral("Папка:"));
    theDialog.setLabelText(QFileDialog::FileName, QStringLiteral("&Имя файла:"));
    theDialog.setLabelText(QFileDialog::FileType, QStringLiteral("Тип файлов:"));
    theDialog.setLabelText(QFileDialog::Accept,
                           aSave ? QStringLiteral("&Сохранить") : QStringLiteral("&Открыть"));
    theDialog.setLabelText(QFileDialog::Reject, QStringLiteral("Отмена"));
    QStringList names;
    for (const Filter &filter : theFilters) names << filter.Name;
    if (!names.isEmpty()) {
        theDialog.setNameFilters(names);
        if (aRecord.nFilterIndex >= 1 && aRecord.nFilterIndex <= names.size())
            theDialog.selectNameFilter(names[aRecord.nFilterIndex - 1]);
    }
    SetPlace();
}

/// Qt's own dialog is so small that it cuts off dates and names of folders. That of a desktop has
/// none of these parts.
void FileDialog::MakeRoom() {
    theDialog.resize(PixelsFromTwips(theWidth), PixelsFromTwips(theHeight));
    new WindowFit(theDialog);
    KeepColoursReadable(theDialog);
    if (auto *splitter = theDialog.findChild<QSplitter *>(QStringLiteral("splitter")))
        splitter->setSizes({PixelsFromTwips(thePlacesWidth),
                            PixelsFromTwips(theWidth) - PixelsFromTwips(thePlacesWidth)});
    if (const auto *files = theDialog.findChild<QTreeView *>(QStringLiteral("treeView"))) {
        files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
}

void FileDialog::SetPlace() {
    const QString folder = TextOf(theRecord.lpstrInitialDir);
    const QString file = TextOf(theRecord.lpstrFile);
    if (!folder.isEmpty()) theDialog.setDirectory(folder);
    if (file.isEmpty()) return;
    const QFileInfo info(file);
    if (info.isAbsolute() && info.absoluteDir().exists())
        theDialog.setDirectory(info.absolutePath());
    theDialog.selectFile(info.fileName());
}

QStringList FileDialog::Ask() {
    while (theRun.Exec() == QDialog::Accepted) {
        QStringList files = ChosenFiles();
        const auto isAllowed = [this](const QString &file) { return IsAllowed(file); };
        if (!files.isEmpty() && std::all_of(files.cbegin(), files.cend(), isAllowed)) return files;
    }
    return {};
}

QStringList FileDialog::ChosenFiles() const {
    QStringList files = theDialog.selectedFiles();
    if (!theIsSave) return files;
    QString extension = TextOf(theRecord.lpstrDefExt);
    const qint32 index = FilterIndex();
    if (extension.isEmpty() && index > 0) extension = ExtensionOf(theFilters[index - 1]);
    for (QString &file : files) file = WithExtension(file, extension);
    return files;
}

bool FileDialog::IsAllowed(const QString &aFile) {
    const QFileInfo info(aFile);
    const QString shown = QDir::toNativeSeparators(aFile);
    const QString title = theDialog.windowTitle();
    if (Has(PathMustExist) && !info.absoluteDir().exists()) {
        ShowWarningBox(QStringLiteral("Папка \"%1\" не найдена.\r\nПроверьте правильность пути.")
                           .arg(QDir::toNativeSeparators(info.absolutePath())),
                       title);
        return false;
    }
    if (!theIsSave && Has(FileMustExist) && !info.exists()) {
        ShowWarningBox(
            QStringLiteral("Файл \"%1\" не найден.\r\nПроверьте правильность имени файла.")
                .arg(shown),
            title);
        return false;
    }
    if (theIsSave && Has(OverwritePrompt) && info.exists()) {
        return AskYesNo(QStringLiteral("Файл \"%1\" уже существует.\r\nЗаменить его?").arg(shown),
                        title, theSecondButtonIsDefault);
    }
    return true;
}

qint32 FileDialog::FilterIndex() const {
    const QString selected = theDialog.selectedNameFilter();
    for (qsizetype i = 0; i < theFilters.size(); ++i) {
        if (theFilters[i].Name == selected) return static_cast<qint32>(i + 1);
    }
    return 0;
}

/// What the record's buffer takes: one path, or the folder and the names in it.
QByteArray ResultBytes(const QStringList &aFiles) {
    if (aFiles.size() == 1) return QDir::toNativeSeparators(aFiles.first()).toUtf8() + '\0';
    // The folder ends in a separator, so that nobody has to know which one it is here.
    const QString folder = QFileInfo(aFiles.first()).absolutePath();
    QByteArray bytes =
        QDir::toNativeSeparators(folder.endsWith(u'/') ? folder : folder + u'/').toUtf8() + '\0';
    for (const QString &file : aFiles) bytes += QFileInfo(file).fileName().toUtf8() + '\0';
    return bytes;
}

class QtFilePlatform : public FilePlatform {
public:
    bool GetOpenFileName(OpenFileName &aRecord) override { return Run(aRecord, false); }
    bool GetSaveFileName(OpenFileName &aRecord) override { return Run(aRecord, true); }
    qint32 CommDlgExtendedError() override { return theError; }

private:
    bool Run(OpenFileName &aRecord, bool aSave) {
        theError = 0;
        EnsureApplication();
        FileDialog dialog(aRecord, aSave);
        const QStringList files = dialog.Ask();
        if (files.isEmpty()) return false;
        const QByteArray bytes = ResultBytes(files);
        if (bytes.size() + (files.size() > 1 ? 1 : 0) > aRecord.nMaxFile) {
            theError = theBufferTooSmall;
            return false;
        }
        std::memset(aRecord.lpstrFile, 0, static_cast<std::size_t>(aRecord.nMaxFile));
        std::memcpy(aRecord.lpstrFile, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        aRecord.nFilterIndex = dialog.FilterIndex();
        return true;
    }

    qint32 theError = 0;
};

FilePlatform *thePlatformOfTests = nullptr;

}  // namespace

FilePlatform::~FilePlatform() = default;

FilePlatform &QtFileDialogs() {
    static QtFilePlatform platform;
    return platform;
}

FilePlatform &FileDialogs() {
    return thePlatformOfTests ? *thePlatformOfTests : QtFileDialogs();
}

void SetFileDialogsForTests(FilePlatform *aPlatform) {
    thePlatformOfTests = aPlatform;
}

}  // namespace Vk_DocQuery
