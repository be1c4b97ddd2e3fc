#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

#include "DelimitedText.h"
#include "ImportComplaints.h"
#include "TableFiles.h"

namespace Vk_Records {

/// A file of an import, read whole: what was checked is what is entered, whoever writes to the file
/// meanwhile.
struct ImportFile {
    const TableFile *Facts = nullptr;
    QString Name;      ///< empty for one that may be missing and is
    QByteArray Bytes;  ///< without a byte order mark
    char Separator = ',';
    std::size_t Heads = 0;            ///< how many columns its rows have
    std::vector<std::size_t> Places;  ///< where each column of the facts stands in a row
    bool HasRows = false;             ///< they can be told apart; else something is wrong with it

    /// The rows below the heading.
    DelimitedText Rows() const;
};

/// Finds the files of a folder and reads them; there is one for each table. Complains of what is
/// missing, cannot be read, is no UTF-8 or has the wrong columns. Raises InvalidArgument for a
/// folder that is not there.
std::vector<ImportFile> ReadImportFiles(const QString &aFolder, ImportComplaints &rComplaints);

/// The names of the files in the folder that hold the table, in any case, as .csv or .tsv.
QStringList NamesOfFiles(const QString &aFolder, const TableFile &aFile);

}  // namespace Vk_Records
