#include "SampleOffice.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <Vk_Records/Database.h>

#include "CompiledSql.h"
#include "Insert.h"
#include "Schema.h"

namespace Vk_Records {

namespace {

/// A row of a file of the sample, by column name.
class Facts {
public:
    Facts(const QStringList &aHeads, const QStringList &aCells)
        : theHeads(aHeads), theCells(aCells) {}

    QString Text(const char *aColumn) const {
        // In the files a line break within a cell is written as \n.
        return theCells.value(static_cast<int>(theHeads.indexOf(QLatin1String(aColumn))))
            .replace(QStringLiteral("\\n"), QStringLiteral("\r\n"));
    }
    qint64 Number(const char *aColumn) const { return Text(aColumn).toLongLong(); }
    QVariant NumberOrNull(const char *aColumn) const {
        return Text(aColumn).isEmpty() ? QVariant(QMetaType(QMetaType::LongLong))
                                       : QVariant(Number(aColumn));
    }
    /// The numbers of a list such as "1-3,17".
    QList<int> Numbers(const char *aColumn) const {
        QList<int> numbers;
        for (const QString &part : Text(aColumn).split(u',', Qt::SkipEmptyParts)) {
            const int last = part.section(u'-', -1).toInt();
            for (int number = part.section(u'-', 0, 0).toInt(); number <= last; ++number)
                numbers << number;
        }
        return numbers;
    }
    /// A day: "2003-01-01", or "-36+1" for the day after the one 36 months before today; or
    /// nothing.
    QVariant Day(const char *aColumn, QDate aToday) const {
        static const QRegularExpression before(QStringLiteral("^-(\\d+)(?:\\+(\\d+))?$"));
        const QString text = Text(aColumn);
        if (text.isEmpty()) return QVariant(QMetaType(QMetaType::QDate));
        const auto match = before.match(text);
        if (!match.hasMatch()) return QDate::fromString(text, Qt::ISODate);
        return aToday.addMonths(-match.captured(1).toInt()).addDays(match.captured(2).toInt());
    }

private:
    const QStringList &theHeads;
    QStringList theCells;
};

template <class Taker>
void ForEachRowOf(const char *aFile, Taker aTake) {
    const QString text = CompiledText(QStringLiteral("sample/") + QLatin1String(aFile));
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    const QStringList heads = lines.value(0).split(u'\t');
    for (const QString &line : lines.mid(1)) aTake(Facts(heads, line.split(u'\t')));
}

void FillPersons(Connection &aConnection) {
    Insert person(aConnection, theInsertPersonSql);
    ForEachRowOf("persons.tsv", [&](const Facts &facts) {
        const QVariant parent = facts.NumberOrNull("parent");
        person.Row({facts.Number("id"), facts.Number("kind"), facts.Text("inn"), facts.Text("kpp"),
                    facts.Text("display_name"), facts.Text("owner_name"), facts.Number("main"),
                    parent, parent.isNull() ? QVariant(QMetaType(QMetaType::Int)) : QVariant(1)});
    });
    Insert stream(aConnection, theInsertStreamSql);
    ForEachRowOf("streams.tsv", [&](const Facts &facts) {
        stream.Row({facts.Number("id"), facts.Number("person"), facts.Number("type"),
                    facts.Text("name"), facts.Text("kpp"), facts.Text("offices"),
                    facts.Number("closed")});
    });
}

void FillForms(Connection &aConnection, QDate aToday) {
    Insert form(aConnection, theInsertFormSql);
    ForEachRowOf("forms.tsv", [&](const Facts &facts) {
        form.Row({facts.Number("id"), facts.Text("knd"), facts.Text("short_name"),
                  facts.Number("excluded"), facts.Text("icon")});
    });
    Insert name(aConnection, theInsertNameSql);
    QHash<qint64, int> names;
    ForEachRowOf("form_names.tsv", [&](const Facts &facts) {
        const qint64 id = facts.Number("form");
        name.Row({id, ++names[id], facts.Text("full_name")});
    });
    Insert version(aConnection, theInsertVersionSql);
    ForEachRowOf("form_versions.tsv", [&](const Facts &facts) {
        version.Row({facts.Number("id"), facts.Number("form"), facts.Day("first_day", aToday),
                     facts.Day("last_day", aToday), facts.Text("name"), facts.Text("icon")});
    });
}

void FillAvailability(Connection &aConnection, QDate aToday) {
    Insert period(aConnection, theInsertPeriodSql);
    ForEachRowOf("form_periods.tsv", [&](const Facts &facts) {
        const auto last = static_cast<int>(facts.Number("years_back_to"));
        for (auto back = static_cast<int>(facts.Number("years_back_from")); back <= last; ++back) {
            for (const int code : facts.Numbers("periods"))
                period.Row({facts.Number("form"), aToday.year() - back, code});
        }
    });
    Insert category(aConnection, theInsertCategorySql);
    ForEachRowOf("form_categories.tsv", [&](const Facts &facts) {
        for (const int taxpayers : facts.Numbers("categories")) {
            for (const int stream : facts.Numbers("streams"))
                category.Row({facts.Number("form"), taxpayers, stream, facts.Number("head"),
                              facts.Number("branch")});
        }
    });
}

}  // namespace

void FillSampleOffice(Connection &aConnection, QDate aToday) {
    FillPersons(aConnection);
    FillForms(aConnection, aToday);
    FillAvailability(aConnection, aToday);
}

}  // namespace Vk_Records
