#pragma once

#include <QStringList>

#include "windows/FilePlatform.h"

namespace Vk_DocQuery {

/// The platform's file dialogs with their bytes hidden: a filter parted by "|", texts in zero-ended
/// buffers, and the result of several files as a list of texts with a double zero at its end.
class FileOpenSaveDialog {
public:
    explicit FileOpenSaveDialog(FilePlatform &aPlatform = FileDialogs()) : thePlatform(aPlatform) {}

    WId OwnerHwnd = 0;
    QString DialogTitle;
    QString Filter;          ///< description|pattern|description|pattern...
    qint32 FilterIndex = 0;  ///< counted from 1; the user's choice afterwards
    QString FileName;  ///< initial name; the result afterwards, of several files the first name
    QString InitialDir;
    qint32 Flags = 0;  ///< FileDialogFlags
    QString DefaultExt;
    qint32 ExtendedError = 0;  ///< why the dialog failed; 0 after a plain cancel

    qint32 FilesCount() const { return theFilesCount; }
    /// Full path of a file, counted from 0. Raises SubscriptOutOfRange.
    QString Files(qint32 aIndex) const;

    /// True if the user chose; otherwise everything but ExtendedError is as it was.
    bool RunOpenFileDialog();
    bool RunSaveFileDialog();

    /// The bytes of the text with a zero behind them; returns the first byte.
    static char *SaveStringToZByteArray(const QString &aText, QByteArray &rBytes);
    /// The same into a buffer of aSize bytes, cut to what fits before the zero.
    static char *SaveStringToZByteBuffer(const QString &aText, QByteArray &rBytes, qint32 aSize);
    /// The text up to the first zero; puts one into the last byte, to be sure of an end.
    static QString LoadStringFromZByteBuffer(QByteArray &rBytes);
    /// Counts texts up to a double zero; rEnd is the place of its second zero, or aSize without
    /// one.
    static void CountZZStrings(const QByteArray &aBytes, qint32 aSize, qint32 &rCount,
                               qint32 &rEnd);
    /// The text from rPos to the next zero; rPos goes behind it.
    static QString ExpandOneStringFromZZStrings(const QByteArray &aBytes, qint32 aSize,
                                                qint32 &rPos);
    static void ExpandZZBuffer(const QByteArray &aBytes, qint32 aSize, QStringList &rStrings,
                               qint32 &rCount);

private:
    bool RunDialog(bool aSave);
    void TakeSeveralFiles(const QByteArray &aBuffer);
    void MakeOneFileResult(const QString &aFile);

    FilePlatform &thePlatform;
    qint32 theFilesCount = 0;
    QStringList theFiles;
};

}  // namespace Vk_DocQuery
