#include "ImportFiles.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QFile>

#include <Vk_DocQuery/Failure.h>

namespace Vk_Records {

namespace {

constexpr char theMark[] = "\xEF\xBB\xBF";
const std::array theEndings = {QStringLiteral(".csv"), QStringLiteral(".tsv")};

QString Quoted(const QString &aText) {
    return u'"' + aText + u'"';
}

/// One file of the folder.
class FileReading {
public:
    FileReading(const QString &aFolder, std::size_t aNumber, ImportComplaints &rComplaints)
        : theFolder(aFolder), theNumber(aNumber), theComplaints(rComplaints) {
        theFile.Facts = &TableFiles()[aNumber];
    }

    ImportFile Read() {
        if (!FindName() || !ReadBytes()) return std::move(theFile);
        CheckSigns();
        theFile.HasRows = ReadHeading();
        return std::move(theFile);
    }

private:
    void Complain(int aLine, const QString &aReason) {
        theComplaints.Add(theNumber, theFile.Name, aLine, aReason);
    }

    bool FindName() {
        const QStringList names = NamesOfFiles(theFolder, *theFile.Facts);
        if (names.size() == 1) theFile.Name = names.constFirst();
        if (names.size() == 1 || (names.isEmpty() && theFile.Facts->IsOptional))
            return names.size() == 1;
        theFile.Name = QString::fromLatin1(theFile.Facts->Stem) + theEndings[0];
        if (names.isEmpty()) {
            Complain(0, QStringLiteral("файла нет. Если записей нет, нужен файл с одной строкой "
                                       "названий столбцов."));
        } else {
            Complain(0, QStringLiteral("таких файлов несколько (%1). Оставьте один.")
                            .arg(names.join(QStringLiteral(", "))));
        }
        return false;
    }

    bool ReadBytes() {
        QFile file(QDir(theFolder).filePath(theFile.Name));
        const bool isRead = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
        if (isRead) theFile.Bytes = file.readAll();
        if (!isRead || file.error() != QFileDevice::NoError) {
            Complain(0, QStringLiteral("файл не читается. Проверьте права и диск."));
            return false;
        }
        if (theFile.Bytes.startsWith(theMark)) theFile.Bytes.remove(0, 3);
        theFile.Separator = SeparatorOf(theFile.Bytes);
        return true;
    }

    /// What no database holds.
    void CheckSigns() {
        const QByteArray &bytes = theFile.Bytes;
        if (QByteArrayView(bytes).isValidUtf8() && !bytes.contains('\0')) return;
        int line = 0;
        for (qsizetype at = 0; at < bytes.size(); ++line) {
            const qsizetype found = bytes.indexOf('\n', at);
            const qsizetype end = found < 0 ? bytes.size() : found;
            CheckSignsOf(line + 1, QByteArrayView(bytes).sliced(at, end - at));
            at = end + 1;
        }
    }
    void CheckSignsOf(int aLine, QByteArrayView aText) {
        if (!aText.isValidUtf8())
            Complain(aLine, QStringLiteral("текст не в кодировке UTF-8. Сохраните файл в ней."));
        if (aText.contains('\0')) Complain(aLine, QStringLiteral("в тексте стоит знак с кодом 0."));
    }

    bool ReadHeading() {
        DelimitedText rows(theFile.Bytes, theFile.Separator);
        if (!rows.Next()) {
            Complain(0, QStringLiteral("файл пуст: в нем нет строки с названиями столбцов."));
            return false;
        }
        QStringList heads;
        for (const RawCell &cell : rows.Cells()) heads << cell.Text().trimmed().toLower();
        theFile.Heads = rows.Cells().size();
        const bool areKnown = CheckHeads(rows.Line(), heads);
        return FindPlaces(rows.Line(), heads) && areKnown;
    }

    bool CheckHeads(int aLine, const QStringList &aHeads) {
        const QString known = ColumnList(*theFile.Facts);
        const QStringList names = known.split(QStringLiteral(", "));
        bool areAllKnown = true;
        for (qsizetype i = 0; i < aHeads.size(); ++i) {
            const bool isKnown = names.contains(aHeads[i]);
            const bool isFirst = aHeads.indexOf(aHeads[i]) == i;
            if (isKnown && isFirst) continue;
            areAllKnown = false;
            Complain(aLine, isKnown
                                ? QStringLiteral("столбец %1 повторяется.").arg(Quoted(aHeads[i]))
                                : QStringLiteral("неизвестный столбец %1. Столбцы этого файла: %2.")
                                      .arg(Quoted(aHeads[i].left(50)), known));
        }
        return areAllKnown;
    }

    bool FindPlaces(int aLine, const QStringList &aHeads) {
        bool areAllThere = true;
        for (const FileColumn &column : theFile.Facts->Columns) {
            const QString name = QString::fromLatin1(column.Name);
            const qsizetype place = aHeads.indexOf(name);
            theFile.Places.push_back(static_cast<std::size_t>(std::max<qsizetype>(place, 0)));
            if (place >= 0) continue;
            areAllThere = false;
            Complain(aLine, QStringLiteral("нет столбца %1.").arg(Quoted(name)));
        }
        return areAllThere;
    }

    QString theFolder;
    std::size_t theNumber;
    ImportComplaints &theComplaints;
    ImportFile theFile;
};

}  // namespace

DelimitedText ImportFile::Rows() const {
    DelimitedText rows(Bytes, Separator);
    rows.Next();
    return rows;
}

std::vector<ImportFile> ReadImportFiles(const QString &aFolder, ImportComplaints &rComplaints) {
    if (!QFileInfo(aFolder).isDir()) {
        throw Vk_DocQuery::Failure(
            Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
            QStringLiteral("Папки \"%1\" нет. Укажите папку с файлами записей.").arg(aFolder));
    }
    std::vector<ImportFile> files;
    for (std::size_t i = 0; i < TableFiles().size(); ++i)
        files.push_back(FileReading(aFolder, i, rComplaints).Read());
    return files;
}

QStringList NamesOfFiles(const QString &aFolder, const TableFile &aFile) {
    const QString stem = QString::fromLatin1(aFile.Stem);
    QStringList names;
    const auto all = QDir(aFolder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : all) {
        const bool fits = std::any_of(theEndings.begin(), theEndings.end(), [&](const auto &end) {
            return name.compare(stem + end, Qt::CaseInsensitive) == 0;
        });
        if (fits) names << name;
    }
    return names;
}

}  // namespace Vk_Records
