#include "windows/FileOpenSaveDialog.h"

#include <algorithm>

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "FileOpenSaveDialog";
constexpr qint32 theBufferSize = 32760;

// The system's narrow code page.
QByteArray NarrowBytes(const QString &aText) {
    return aText.toUtf8();
}
QString WideText(const QByteArray &aBytes, qint32 aFrom, qint32 aTo) {
    return QString::fromUtf8(aBytes.constData() + aFrom, aTo - aFrom);
}

}  // namespace

QString FileOpenSaveDialog::Files(qint32 aIndex) const try {
    if (aIndex < 0 || aIndex >= theFiles.size()) {
        throw Failure(SubscriptOutOfRange, QString(),
                      QStringLiteral("Индекс вне допустимого диапазона: %1.").arg(aIndex));
    }
    return theFiles[aIndex];
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool FileOpenSaveDialog::RunOpenFileDialog() try { return RunDialog(false); } catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool FileOpenSaveDialog::RunSaveFileDialog() try { return RunDialog(true); } catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool FileOpenSaveDialog::RunDialog(bool aSave) try {
    ExtendedError = 0;
    QString filterList = Filter;
    if (!filterList.endsWith(u'|')) filterList += u'|';
    filterList.replace(u'|', QChar(u'\0'));

    QByteArray filter;
    QByteArray file;
    QByteArray folder;
    QByteArray title;
    QByteArray extension;
    OpenFileName record;
    record.hwndOwner = OwnerHwnd;
    record.lpstrFilter = SaveStringToZByteArray(filterList, filter);
    record.nFilterIndex = FilterIndex;
    record.lpstrFile = SaveStringToZByteBuffer(FileName, file, theBufferSize);
    record.nMaxFile = theBufferSize;
    record.lpstrInitialDir = SaveStringToZByteArray(InitialDir, folder);
    record.lpstrTitle = SaveStringToZByteArray(DialogTitle, title);
    record.Flags = Flags;
    record.lpstrDefExt = SaveStringToZByteArray(DefaultExt, extension);

    const bool chosen =
        aSave ? thePlatform.GetSaveFileName(record) : thePlatform.GetOpenFileName(record);
    if (!chosen) {
        ExtendedError = thePlatform.CommDlgExtendedError();
        return false;
    }
    if ((Flags & AllowMultiSelect) != 0)
        TakeSeveralFiles(file);
    else
        MakeOneFileResult(LoadStringFromZByteBuffer(file));
    FilterIndex = record.nFilterIndex;
    InitialDir = LoadStringFromZByteBuffer(folder);
    return true;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void FileOpenSaveDialog::TakeSeveralFiles(const QByteArray &aBuffer) {
    QStringList strings;
    qint32 count = 0;
    ExpandZZBuffer(aBuffer, theBufferSize, strings, count);
    if (count <= 1) {
        MakeOneFileResult(count == 0 ? QString() : strings.first());
        return;
    }
    QString folder = strings.takeFirst();
    if (!folder.endsWith(u'\\') && !folder.endsWith(u'/')) folder += u'\\';
    theFilesCount = count - 1;
    theFiles.clear();
    for (const QString &name : strings) theFiles << folder + name;
    FileName = strings.first();  // the bare name, as callers have always got it
}

void FileOpenSaveDialog::MakeOneFileResult(const QString &aFile) {
    theFilesCount = 1;
    theFiles.clear();
    theFiles << aFile;  // Qt dies of a list made of texts at once, if there is no memory for it
    FileName = aFile;
}

char *FileOpenSaveDialog::SaveStringToZByteArray(const QString &aText, QByteArray &rBytes) try {
    rBytes = NarrowBytes(aText);
    rBytes.append('\0');
    return rBytes.data();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

char *FileOpenSaveDialog::SaveStringToZByteBuffer(const QString &aText, QByteArray &rBytes,
                                                  qint32 aSize) try {
    const QByteArray text = NarrowBytes(aText);
    const qsizetype length = std::min<qsizetype>(text.size(), aSize - 1);
    rBytes.resize(aSize);
    rBytes.fill('\0');
    std::copy_n(text.cbegin(), length, rBytes.begin());
    return rBytes.data();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString FileOpenSaveDialog::LoadStringFromZByteBuffer(QByteArray &rBytes) try {
    if (rBytes.isEmpty()) return QString();
    rBytes.back() = '\0';
    return WideText(rBytes, 0, static_cast<qint32>(rBytes.indexOf('\0')));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void FileOpenSaveDialog::CountZZStrings(const QByteArray &aBytes, qint32 aSize, qint32 &rCount,
                                        qint32 &rEnd) try {
    rCount = 0;
    for (qint32 position = 0; position <= aSize - 2; ++position) {
        if (aBytes[position] != '\0') continue;
        ++rCount;
        if (aBytes[position + 1] == '\0') {
            rEnd = position + 1;
            return;
        }
    }
    ++rCount;
    rEnd = aSize;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString FileOpenSaveDialog::ExpandOneStringFromZZStrings(const QByteArray &aBytes, qint32 aSize,
                                                         qint32 &rPos) try {
    const qint32 start = rPos;
    for (qint32 position = start; position < aSize; ++position) {
        if (aBytes[position] != '\0') continue;
        rPos = position + 1;
        return WideText(aBytes, start, position);
    }
    if (start >= aSize) return QString();
    rPos = aSize + 1;
    return WideText(aBytes, start, aSize);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void FileOpenSaveDialog::ExpandZZBuffer(const QByteArray &aBytes, qint32 aSize,
                                        QStringList &rStrings, qint32 &rCount) try {
    qint32 end = 0;
    CountZZStrings(aBytes, aSize, rCount, end);
    rStrings.clear();
    qint32 position = 0;
    for (qint32 i = 0; i < rCount; ++i)
        rStrings << ExpandOneStringFromZZStrings(aBytes, aSize, position);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
