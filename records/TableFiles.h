#pragma once

#include <span>

#include <QString>

namespace Vk_Records {

/// What stands in the cells of a column.
enum class CellKind {
    Identity,    ///< 1 to 2147483647
    Parent,      ///< the identity of an organisation, or nothing
    Number,      ///< any of 32 bits
    Flag,        ///< 0 or 1
    PersonKind,  ///< 1, 2 or 3
    Text,
    Day,  ///< or nothing
};

/// A column of a table; its file has one of the same name.
struct FileColumn {
    const char *Name;
    CellKind Kind;
    int Longest = 0;                 ///< of a text, in characters
    const char *RefersTo = nullptr;  ///< the table whose identities it holds
};

/// A table of an office and the file that it is read from and written to.
struct TableFile {
    const char *Stem;   ///< of the file's name
    const char *Table;  ///< its name in the database
    std::span<const FileColumn> Columns;
    std::size_t KeyColumns;   ///< the first ones, which no two rows share
    bool IsOptional = false;  ///< an office has its rows from the start
};

/// In the order in which rows can be entered: what is referred to comes first.
std::span<const TableFile> TableFiles();

/// The columns as a statement lists them.
QString ColumnList(const TableFile &aFile);

}  // namespace Vk_Records
