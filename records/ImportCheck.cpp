#include "ImportCheck.h"

#include <algorithm>
#include <array>
#include <tuple>

#include <QRegularExpression>
#include <QStringList>

#include "CompiledSql.h"
#include "ImportCells.h"

namespace Vk_Records {

namespace {

constexpr std::size_t theMostKeyColumns = 3;
constexpr qint32 theOrganization = 1;
constexpr qint32 theBranch = 2;

/// What a row is known by.
struct RowKey {
    std::array<qint32, theMostKeyColumns> Numbers{};
    int Line = 0;
};

struct Reference {
    qint32 Identity;
    int Line;
};

/// The rows of a file, and what is wrong with each by itself.
class RowsCheck {
public:
    RowsCheck(const ImportFile &aFile, std::size_t aNumber, ImportComplaints &rComplaints)
        : theFile(aFile),
          theNumber(aNumber),
          theComplaints(rComplaints),
          theReferences(aFile.Facts->Columns.size()) {}

    void Check() {
        if (!theFile.HasRows) return;
        for (DelimitedText rows = theFile.Rows(); rows.Next();) CheckRow(rows);
        CheckRepeats();
    }
    /// After Check of all files: what is referred to may come later.
    void CheckReferences(const std::vector<RowsCheck> &aAll) {
        for (std::size_t i = 0; i < theReferences.size(); ++i) {
            if (!theReferences[i].empty()) CheckReferences(theFile.Facts->Columns[i], i, aAll);
        }
    }
    /// The kinds of streams that every office has.
    void TakeStandardRows() {
        static const QRegularExpression identity(QStringLiteral("VALUES \\((\\d+),"));
        const QString text = CompiledText(QStringLiteral("sql/stream_types.sql"));
        auto matches = identity.globalMatch(text);
        while (matches.hasNext()) theKeys.push_back({{matches.next().captured(1).toInt()}, 0});
    }

private:
    void Complain(int aLine, const QString &aReason) {
        theComplaints.Add(theNumber, theFile.Name, aLine, aReason);
    }

    void CheckRow(const DelimitedText &aRows) {
        const int line = aRows.Line();
        TakeKey(aRows);
        if (!IsWhole(aRows)) return;
        bool isRight = true;
        for (std::size_t i = 0; i < theFile.Facts->Columns.size(); ++i) {
            const FileColumn &column = theFile.Facts->Columns[i];
            const QString wrong = WhatIsWrongWith(Cell(aRows, i), column);
            if (!wrong.isEmpty()) Complain(line, wrong);
            if (!wrong.isEmpty()) isRight = false;
            if (wrong.isEmpty() && column.RefersTo) TakeReference(aRows, i);
        }
        if (isRight) CheckTogether(aRows);
    }

    bool IsWhole(const DelimitedText &aRows) {
        const std::size_t count = aRows.Cells().size();
        if (aRows.WhatIsWrong() == DelimitedText::Fault::OpenQuote) {
            theIsCutShort = true;
            Complain(aRows.Line(), QStringLiteral("кавычка в начале ячейки не закрыта до конца "
                                                  "файла."));
        } else if (aRows.WhatIsWrong() == DelimitedText::Fault::TextBehindQuote) {
            Complain(aRows.Line(), QStringLiteral("за закрывающей кавычкой ячейки стоит текст. "
                                                  "Кавычки внутри ячейки удваиваются."));
        } else if (count != theFile.Heads) {
            Complain(aRows.Line(),
                     QStringLiteral("ячеек %1, а столбцов %2.").arg(count).arg(theFile.Heads));
        } else {
            return true;
        }
        return false;
    }

    const RawCell &Cell(const DelimitedText &aRows, std::size_t aColumn) const {
        static const RawCell missing;
        const std::size_t place = theFile.Places[aColumn];
        return place < aRows.Cells().size() ? aRows.Cells()[place] : missing;
    }

    void TakeReference(const DelimitedText &aRows, std::size_t aColumn) {
        if (const auto identity = NumberIn(Cell(aRows, aColumn)))
            theReferences[aColumn].push_back({*identity, aRows.Line()});
    }

    /// Of a row that is wrong elsewhere, too: others may refer to it.
    void TakeKey(const DelimitedText &aRows) {
        RowKey key;
        key.Line = aRows.Line();
        for (std::size_t i = 0; i < theFile.Facts->KeyColumns; ++i) {
            const auto number = NumberIn(Cell(aRows, i));
            if (!number) return;
            key.Numbers[i] = *number;
        }
        theKeys.push_back(key);
        if (IsOf("person") && NumberIn(Cell(aRows, 1)) == theOrganization)
            theOrganizations.push_back(key.Numbers[0]);
    }

    bool IsOf(const char *aTable) const { return qstrcmp(theFile.Facts->Table, aTable) == 0; }

    /// What the cells of a row say together.
    void CheckTogether(const DelimitedText &aRows) {
        if (IsOf("person")) {
            const bool isBranch = NumberIn(Cell(aRows, 1)) == theBranch;
            const bool hasParent = NumberIn(Cell(aRows, 7)).has_value();
            if (isBranch && !hasParent)
                Complain(aRows.Line(), QStringLiteral("филиалу (kind 2) нужен parent_id."));
            if (!isBranch && hasParent)
                Complain(aRows.Line(), QStringLiteral("parent_id бывает только у филиала (kind "
                                                      "2)."));
        } else if (IsOf("template")) {
            const QDate first = DayIn(Cell(aRows, 2)).value_or(QDate());
            const QDate last = DayIn(Cell(aRows, 3)).value_or(QDate());
            if (first.isValid() && last.isValid() && first > last)
                Complain(aRows.Line(), QStringLiteral("beg_date позже, чем end_date."));
        }
    }

    /// Leaves the keys in order.
    void CheckRepeats() {
        std::sort(theKeys.begin(), theKeys.end(), [](const RowKey &left, const RowKey &right) {
            return std::tie(left.Numbers, left.Line) < std::tie(right.Numbers, right.Line);
        });
        std::sort(theOrganizations.begin(), theOrganizations.end());
        const RowKey *first = nullptr;
        for (const RowKey &key : theKeys) {
            if (first && first->Numbers == key.Numbers)
                Complain(key.Line, RepeatText(key, first->Line));
            else
                first = &key;
        }
    }

    QString RepeatText(const RowKey &aKey, int aFirstLine) const {
        QStringList parts;
        for (std::size_t i = 0; i < theFile.Facts->KeyColumns; ++i) {
            parts << QStringLiteral("%1 %2")
                         .arg(QLatin1String(theFile.Facts->Columns[i].Name))
                         .arg(aKey.Numbers[i]);
        }
        return QStringLiteral("%1 уже есть в строке %2.")
            .arg(parts.join(QStringLiteral(", ")))
            .arg(aFirstLine);
    }

    bool Has(qint32 aIdentity) const {
        const auto found = std::lower_bound(
            theKeys.begin(), theKeys.end(), aIdentity,
            [](const RowKey &key, qint32 identity) { return key.Numbers[0] < identity; });
        return found != theKeys.end() && found->Numbers[0] == aIdentity;
    }

    void CheckReferences(const FileColumn &aColumn, std::size_t aPlace,
                         const std::vector<RowsCheck> &aAll) {
        const auto target = std::find_if(aAll.begin(), aAll.end(), [&](const RowsCheck &check) {
            return check.IsOf(aColumn.RefersTo);
        });
        // A file that cannot be read is complained of once, and not for each row that needs it.
        const bool isKnown = target->theFile.HasRows || target->theFile.Name.isEmpty();
        if (!isKnown || target->theIsCutShort) return;
        for (const Reference &reference : theReferences[aPlace]) {
            const QString wrong = target->WhyNot(reference.Identity, aColumn);
            if (!wrong.isEmpty())
                Complain(
                    reference.Line,
                    QStringLiteral("столбец \"%1\": %2").arg(QLatin1String(aColumn.Name), wrong));
        }
    }

    /// Why a column cannot refer to the identity; empty if it can.
    QString WhyNot(qint32 aIdentity, const FileColumn &aColumn) const {
        const bool isOrganization =
            aColumn.Kind != CellKind::Parent ||
            std::binary_search(theOrganizations.begin(), theOrganizations.end(), aIdentity);
        if (!Has(aIdentity)) {
            const QString name =
                theFile.Name.isEmpty() ? QLatin1String(theFile.Facts->Stem) : theFile.Name;
            return QStringLiteral("в %1 нет id %2.").arg(name).arg(aIdentity);
        }
        if (isOrganization) return QString();
        return QStringLiteral("налогоплательщик с id %1 - не организация (kind 1).").arg(aIdentity);
    }

    const ImportFile &theFile;
    std::size_t theNumber;
    ImportComplaints &theComplaints;
    bool theIsCutShort = false;  // nobody knows which rows it has
    std::vector<RowKey> theKeys;
    std::vector<qint32> theOrganizations;
    std::vector<std::vector<Reference>> theReferences;  // by column
};

}  // namespace

void CheckImport(const std::vector<ImportFile> &aFiles, ImportComplaints &rComplaints) {
    std::vector<RowsCheck> checks;
    for (std::size_t i = 0; i < aFiles.size(); ++i) {
        checks.emplace_back(aFiles[i], i, rComplaints);
        if (aFiles[i].Name.isEmpty()) checks.back().TakeStandardRows();
        checks.back().Check();
    }
    for (RowsCheck &check : checks) check.CheckReferences(checks);
}

}  // namespace Vk_Records
