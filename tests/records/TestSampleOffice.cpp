#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

bool HasRightCheckDigits(const QString &aInn) {
    static const QRegularExpression digits(QStringLiteral("^(\\d{10}|\\d{12})$"));
    if (!digits.match(aInn).hasMatch()) return false;
    const auto checked = [&](QList<int> aWeights) {
        int sum = 0;
        for (int i = 0; i < aWeights.size(); ++i) sum += aWeights[i] * aInn[i].digitValue();
        return sum % 11 % 10 == aInn[aWeights.size()].digitValue();
    };
    if (aInn.size() == 10) return checked({2, 4, 10, 3, 5, 9, 4, 6, 8});
    return checked({7, 2, 4, 10, 3, 5, 9, 4, 6, 8}) && checked({3, 7, 2, 4, 10, 3, 5, 9, 4, 6, 8});
}

/// One row of the availability of a form: the first or second recordset as numbers.
using NumberRows = QList<QList<int>>;

NumberRows NumbersOf(Recordset &aRows, std::initializer_list<const char *> aFields) {
    NumberRows rows;
    for (; !aRows.EndOfData(); aRows.MoveNext()) {
        QList<int> row;
        for (const char *field : aFields) row << ToLong(aRows.Value(QString::fromLatin1(field)));
        rows << row;
    }
    return rows;
}

}  // namespace

/// The invented office that a new database is filled with.
class TestSampleOffice : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Vk_Records::OpenDatabase(theFolders.Of(QStringLiteral("sqlite")).NewAddress(),
                                 Vk_Records::NewDatabase::WithSampleOffice);
        const auto blanks = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        theTypes = blanks->GetTemplates(Null(), Null(), true);
        theVersions = blanks->GetTemplates(Null(), Null(), false);
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        thePersons = persons->GetPersons(QString(), 0);
        theTaxpayers = persons->GetTaxpayers();
        theStreams = Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0);
        for (const auto &type : *theTypes) {
            std::shared_ptr<Recordset> categories;
            std::shared_ptr<Recordset> times;
            blanks->GetTemplTypeAvailability(1, type->ID(), categories, times);
            theTimes[type->ID()] = NumbersOf(*times, {"the_year", "month_id"});
            theCategories[type->ID()] = NumbersOf(
                *categories,
                {"TPCategory_ID", "AccStreamType", "AllowedForMainOrg", "AllowedForBranch"});
        }
    }
    void cleanupTestCase() { Vk_Records::CloseDatabase(); }

    void IsLargeEnough() {
        QSet<QString> codes;
        static const QRegularExpression code(QStringLiteral("^\\d{7}$"));
        for (const auto &type : *theTypes) {
            if (code.match(type->KND()).hasMatch()) codes << type->KND();
        }
        QVERIFY(codes.size() >= 45);
        QVERIFY(theVersions->Count() >= 150);
        QVERIFY(thePersons->Count() >= 60);
        QVERIFY(theStreams->Count() >= 90);
        QVERIFY(theTaxpayers->Count() < thePersons->Count());
    }

    void CodesOfWellKnownForms_data() {
        QTest::addColumn<QString>("knd");
        QTest::addColumn<QString>("name");
        QTest::newRow("vat") << QStringLiteral("1151001") << QStringLiteral("Декларация по НДС");
        QTest::newRow("profit") << QStringLiteral("1151006")
                                << QStringLiteral("Декларация по налогу на прибыль");
        QTest::newRow("3-ndfl") << QStringLiteral("1151020") << QStringLiteral("3-НДФЛ");
        QTest::newRow("6-ndfl") << QStringLiteral("1151100") << QStringLiteral("6-НДФЛ");
        QTest::newRow("rsv") << QStringLiteral("1151111") << QStringLiteral("РСВ");
        QTest::newRow("usn") << QStringLiteral("1152017") << QStringLiteral("Декларация по УСН");
        QTest::newRow("balance") << QStringLiteral("0710099")
                                 << QStringLiteral("Бухгалтерская отчетность");
    }
    void CodesOfWellKnownForms() {
        QFETCH(QString, knd);
        QFETCH(QString, name);
        QStringList names;
        for (const auto &type : *theTypes) {
            if (type->KND() == knd) names << type->ShortName();
        }
        QCOMPARE(names, QStringList{name});
    }

    void CodesAreNotRepeated() {
        QSet<QString> codes;
        for (const auto &type : *theTypes) {
            QVERIFY(!type->ShortName().isEmpty());
            if (type->KND().isEmpty()) continue;
            QVERIFY2(!codes.contains(type->KND()), qPrintable(type->KND()));
            codes << type->KND();
        }
    }

    void SomeFormsAreExcludedFromSearch() {
        int excluded = 0;
        for (const auto &type : *theTypes)
            excluded +=
                std::dynamic_pointer_cast<VkTemplType>(type)->IsExcludedFromSearch() ? 1 : 0;
        QVERIFY(excluded >= 2 && excluded < 10);
    }

    void FullNamesOverTime() {
        const auto blanks = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        int several = 0;
        int broken = 0;
        int none = 0;
        for (const auto &type : *theTypes) {
            const auto names = blanks->GetTemplTypeNames(type->ID());
            int count = 0;
            for (; !names->EndOfData(); names->MoveNext(), ++count) {
                const QString name = ToText(names->Value(QStringLiteral("full_name")));
                QVERIFY(!name.isEmpty());
                QVERIFY2(!name.contains(u'\\'), qPrintable(name));
                broken += name.contains(QStringLiteral("\r\n")) ? 1 : 0;
                QCOMPARE(name.count(u'\n'), name.count(QStringLiteral("\r\n")));
            }
            several += count > 1 ? 1 : 0;
            none += count == 0 ? 1 : 0;
        }
        QVERIFY(several >= 5);
        QVERIFY(broken >= 3);
        QCOMPARE(none, 1);
    }

    void VersionsOfAllAges() {
        const QDate today = QDate::currentDate();
        QHash<QString, int> counts;
        QSet<QString> starts;
        for (const auto &version : *theVersions) {
            const LooseValue end = version->EndDate();
            const LooseValue begin = version->BegDate();
            if (IsEmpty(end)) ++counts[QStringLiteral("open")];
            for (const int months : {36, 54, 72}) {
                if (end == LooseValue(today.addMonths(-months))) ++counts[QString::number(months)];
            }
            if (IsEmpty(begin)) {
                ++counts[QStringLiteral("no start")];
                continue;
            }
            const QString start = ObjectKey(version->TemplateType()->ID()) + ToText(begin);
            if (starts.contains(start)) ++counts[QStringLiteral("equal starts")];
            starts << start;
        }
        for (const char *what : {"open", "36", "54", "72", "no start", "equal starts"})
            QVERIFY2(counts[QString::fromLatin1(what)] > 0, what);
    }

    void WindowsTellTheAgesApart() {
        // A form that ended 54 months ago is within five years and not within four; one that ended
        // six years ago is in neither window.
        const auto blanks = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        const QDate today = QDate::currentDate();
        const auto codes = [&](int days) {
            QStringList found;
            const auto types = blanks->GetTemplates(today.addDays(-days), Null(), true);
            for (const auto &type : *types) found << type->KND();
            return found;
        };
        const QStringList picker = codes(1461);
        const QStringList browser = codes(1827);
        const QString fourAndAHalf = QStringLiteral("1151078");
        const QString six = QStringLiteral("1152028");
        const QString three = QStringLiteral("1151001");
        QVERIFY(picker.contains(three) && !picker.contains(fourAndAHalf) && !picker.contains(six));
        QVERIFY(browser.contains(three) && browser.contains(fourAndAHalf) &&
                !browser.contains(six));
    }

    void PersonsOfAllKinds() {
        QHash<QString, int> counts;
        for (const auto &record : *thePersons) {
            const auto person = std::dynamic_pointer_cast<VkPerson>(record);
            const QString inn = person->Inn();
            QVERIFY2(HasRightCheckDigits(inn), qPrintable(inn));
            QCOMPARE(inn.size(), person->IsOrganization() ? 10 : 12);
            QCOMPARE(person->Kpp().size(), person->IsOrganization() ? 9 : 0);
            ++counts[person->GetIconKeyAsAccPerson()];
            if (!person->IsBranch()) continue;
            const auto parent = person->GetParentOrganization();
            QVERIFY(parent->ID() != 0);
            QCOMPARE(parent->Inn(), inn);
            QVERIFY(parent->Kpp() != person->Kpp());
        }
        for (const char *icon : {"org", "orgs", "branch", "man_purple"})
            QVERIFY2(counts[QString::fromLatin1(icon)] > 0, icon);
        QVERIFY(counts[QStringLiteral("branch")] >= 15);
        QVERIFY(counts[QStringLiteral("man_purple")] >= 15);
    }

    void OrganizationsHaveNumbersOfTheirOwn() {
        QSet<QString> numbers;
        for (const auto &record : *thePersons) {
            if (std::dynamic_pointer_cast<VkPerson>(record)->IsBranch()) continue;
            QVERIFY2(!numbers.contains(record->Inn()), qPrintable(record->Inn()));
            numbers << record->Inn();
        }
    }

    void StreamsOfAllTypes() {
        QSet<QString> icons;
        for (const auto &stream : *theStreams) {
            QVERIFY(!stream->DisplayName().isEmpty());
            QVERIFY(!stream->GetOfficeCodeForDisplay().isEmpty());
            QVERIFY(theTaxpayers->Contains(ObjectKey(stream->Person()->ID())));
            icons << stream->GetIconKey();
        }
        QStringList sorted(icons.cbegin(), icons.cend());
        sorted.sort();
        QCOMPARE(sorted.join(u' '),
                 QStringLiteral("acc_stream acc_stream_alc acc_stream_closed acc_stream_hunthub "
                                "acc_stream_ind acc_stream_pfr acc_stream_reg acc_stream_rs "
                                "acc_stream_tech"));
    }

    void AvailabilityCoversEveryCode() {
        QSet<int> periods;
        QSet<int> categories;
        QSet<int> streams;
        QSet<int> permissions;
        QSet<int> yearsBack;
        const int year = QDate::currentDate().year();
        for (const auto &type : *theTypes) {
            for (const auto &row : theTimes[type->ID()]) {
                yearsBack << year - row[0];
                periods << row[1];
            }
            for (const auto &row : theCategories[type->ID()]) {
                categories << row[0];
                streams << row[1];
                permissions << row[2] * 2 + row[3];
            }
        }
        for (int code = 1; code <= 21; ++code)
            QVERIFY2(periods.contains(code), qPrintable(QString::number(code)));
        QVERIFY(periods.contains(24));
        for (int code = 1; code <= 9; ++code)
            QVERIFY(categories.contains(code) && streams.contains(code));
        QCOMPARE(permissions.size(), 4);
        for (int back = -1; back <= 8; ++back) QVERIFY(yearsBack.contains(back));
    }

    void OtherDocumentsAloneBesidePeriodsAndNeither() {
        int alone = 0;
        int beside = 0;
        int nothing = 0;
        for (const auto &type : *theTypes) {
            bool hasOther = false;
            bool hasPeriods = false;
            for (const auto &row : theTimes[type->ID()])
                (row[1] == 18 ? hasOther : hasPeriods) = true;
            alone += hasOther && !hasPeriods ? 1 : 0;
            beside += hasOther && hasPeriods ? 1 : 0;
            nothing += !hasOther && !hasPeriods && theCategories[type->ID()].isEmpty() ? 1 : 0;
        }
        QVERIFY(alone > 0 && beside > 0 && nothing > 0);
    }

    void IsMadeOnce_data() { OfficeFolders::AddKinds(); }
    void IsMadeOnce() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice);
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), thePersons->Count());
        Vk_Records::CloseDatabase();
        folder.Tamper(address, {QStringLiteral("DELETE FROM acc_stream WHERE id > 9001")});
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice);
        QCOMPARE(
            Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0)->Count(),
            qsizetype(1));
    }

private:
    OfficeFolders theFolders;
    std::shared_ptr<RecordCollection> theTypes;
    std::shared_ptr<RecordCollection> theVersions;
    std::shared_ptr<RecordCollection> thePersons;
    std::shared_ptr<RecordCollection> theTaxpayers;
    std::shared_ptr<RecordCollection> theStreams;
    QHash<double, NumberRows> theTimes;
    QHash<double, NumberRows> theCategories;
};

VK_TEST_CLASS(TestSampleOffice);

#include "TestSampleOffice.moc"
