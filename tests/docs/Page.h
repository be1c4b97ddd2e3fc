#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

namespace VkTests {

/// The text of a file of the project by its path from the root; null if it cannot be read.
inline QString TextOfProject(const QString &aPath) {
    QFile file(QStringLiteral(VK_PROJECT "/") + aPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// What stands below a heading of the second level.
inline QString SectionOf(const QString &aPage, const QString &aHeading) {
    return aPage.section(QStringLiteral("\n## ") + aHeading + u'\n', 1, 1)
        .section(QStringLiteral("\n## "), 0, 0);
}

/// The rows of the tables in a text whose first cell is in backticks, each with all of its cells.
inline QList<QStringList> CodeRowsOf(const QString &aText) {
    QList<QStringList> rows;
    for (const QString &line : aText.split(u'\n')) {
        if (!line.startsWith(u"| `")) continue;
        rows << line.mid(2, line.size() - 4).split(QStringLiteral(" | "));
    }
    return rows;
}

/// The words in backticks of a text, in their order.
inline QStringList CodesOf(const QString &aText) {
    QStringList codes = aText.split(u'`');
    for (qsizetype i = codes.size() - 1; i >= 0; --i) {
        if (i % 2 == 0) codes.removeAt(i);
    }
    return codes;
}

}  // namespace VkTests
