#include "ImportOffice.h"

#include "Connection.h"
#include "ImportCells.h"
#include "ImportCheck.h"
#include "ImportFiles.h"
#include "Insert.h"
#include "Schema.h"

namespace Vk_Records {

namespace {

constexpr int theRowsAtOnce = 50;  // a statement costs a turn to the server
constexpr std::size_t theKindColumn = 1;
constexpr qint32 theBranch = 2;

/// Rows of one table on their way into the database, many by one statement.
class TableInsert {
public:
    TableInsert(Connection &aConnection, const ImportFile &aFile)
        : theConnection(aConnection),
          theFile(aFile),
          theMany(aConnection, Statement(*aFile.Facts, theRowsAtOnce)) {}

    void Add(const DelimitedText &aRow) {
        const auto &columns = theFile.Facts->Columns;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            theValues << ValueIn(aRow.Cells()[theFile.Places[i]], columns[i].Kind);
            if (columns[i].Kind == CellKind::Parent)
                theValues << (theValues.constLast().isNull() ? theValues.constLast() : QVariant(1));
        }
        if (++thePending == theRowsAtOnce) Flush(theMany);
    }
    /// Enters what is left.
    void End() {
        if (thePending == 0) return;
        Insert rest(theConnection, Statement(*theFile.Facts, thePending));
        Flush(rest);
    }

private:
    static QString Statement(const TableFile &aFacts, int aRows) {
        QStringList names;
        for (const FileColumn &column : aFacts.Columns) {
            names << QString::fromLatin1(column.Name);
            if (column.Kind == CellKind::Parent) names << QStringLiteral("parent_kind");
        }
        const QString row =
            u'(' + QStringList(names.size(), QStringLiteral("?")).join(QStringLiteral(", ")) + u')';
        return QStringLiteral("INSERT INTO %1 (%2) VALUES %3")
            .arg(QLatin1String(aFacts.Table), names.join(QStringLiteral(", ")),
                 QStringList(aRows, row).join(QStringLiteral(", ")));
    }

    void Flush(Insert &rInsert) {
        rInsert.Row(theValues);
        theValues.clear();
        thePending = 0;
    }

    Connection &theConnection;
    const ImportFile &theFile;
    Insert theMany;
    QVariantList theValues;
    int thePending = 0;
};

/// Enters the rows that are wanted and tells how many there are.
template <class Wanted>
qsizetype Enter(Connection &aConnection, const ImportFile &aFile, Wanted aIsWanted) {
    qsizetype count = 0;
    TableInsert insert(aConnection, aFile);
    for (DelimitedText rows = aFile.Rows(); rows.Next();) {
        if (!aIsWanted(rows)) continue;
        insert.Add(rows);
        ++count;
    }
    insert.End();
    return count;
}

qsizetype Fill(Connection &aConnection, const ImportFile &aFile) {
    const bool isPersons = qstrcmp(aFile.Facts->Table, "person") == 0;
    if (!isPersons) {
        // An office has kinds of streams from the start; those of the file take their place.
        aConnection.Run(QStringLiteral("DELETE FROM ") + QLatin1String(aFile.Facts->Table));
        return Enter(aConnection, aFile, [](const DelimitedText &) { return true; });
    }
    const auto isBranch = [&](const DelimitedText &row) {
        return NumberIn(row.Cells()[aFile.Places[theKindColumn]]) == theBranch;
    };
    // Organisations first: their branches may stand before them in the file.
    const qsizetype others =
        Enter(aConnection, aFile, [&](const DelimitedText &row) { return !isBranch(row); });
    return others + Enter(aConnection, aFile, isBranch);
}

}  // namespace

QList<FileRows> ImportOffice(const QString &aAddress, const QString &aFolder) {
    const Address address = AddressOf(aAddress);
    ImportComplaints complaints;
    const std::vector<ImportFile> files = ReadImportFiles(aFolder, complaints);
    CheckImport(files, complaints);
    complaints.RaiseIfAny();
    QList<FileRows> filled;
    MakeNewOffice(address, [&](Connection &office) {
        for (const ImportFile &file : files) {
            if (!file.Name.isEmpty()) filled << FileRows{file.Name, Fill(office, file)};
        }
    });
    return filled;
}

}  // namespace Vk_Records
