#pragma once

#include <QString>

namespace Vk_DocQuery {

/// How much a file may hold. More is refused, on reading as on saving: a file that has been saved
/// can be read again.

/// Bytes of a file.
constexpr qint64 theLargestFile = qint64{64} * 1024 * 1024;
/// Elements of a file, and attributes as well: more than the lists that fill a file of that size
/// when they are saved, and far fewer than "<i/>" again and again would give.
constexpr qint64 theMostElementsOfFile = 3'000'000;
/// Attributes of one element. The fullest tag of a saved file has 26.
constexpr qint32 theMostAttributesOfElement = 1000;
/// Namespaces that a file declares: the parser goes through all of them for each name that has one.
/// A saved file has none.
constexpr qint32 theMostNamespacesOfFile = 100;
/// Bytes of one value in UTF-8.
constexpr qint64 theLongestValue = 10'000'000;
/// Elements in one another. A saved file has four.
constexpr qint32 theDeepestElement = 256;
/// Different names of elements, attributes, namespaces and instructions, and bytes of one in UTF-8:
/// the parser keeps them all, and looks through many of them for each that comes. A saved file has
/// sixty short ones.
constexpr qint32 theMostNamesOfFile = 10'000;
constexpr qint32 theLongestName = 1000;
/// Entries of one list: every entry becomes an object, and nobody picks that many.
constexpr qint32 theMostListEntries = 1'000'000;

/// What the user is told: of the list or the text of that name, and of the file.
inline QString ListTooLong(const QString &aName) {
    return QStringLiteral("Список \"%1\" слишком длинный: допускается не более %2 записей.")
        .arg(aName)
        .arg(theMostListEntries);
}

inline QString TextTooLong(const QString &aName) {
    return QStringLiteral(
               "Текст \"%1\" слишком длинный: допускается не более %2 байт, русская буква занимает "
               "два.")
        .arg(aName)
        .arg(theLongestValue);
}

inline QString FileTooLarge() {
    return QStringLiteral("Файл слишком велик: допускается не более %1 МБ.")
        .arg(theLargestFile / (qint64{1024} * 1024));
}

/// Raises a failure that says which bound the text of a file goes beyond, if there is one. aSize is
/// how many bytes the text takes in the file.
void CheckBounds(QStringView aText, qint64 aSize);

}  // namespace Vk_DocQuery
