#include <QHeaderView>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "panel/OpenPanel.h"
#include "panel/ShownFailures.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

ListView &ShownPersons(OpenPanel &aPanel, DocQueryTaxpayersType aType,
                       const std::vector<std::shared_ptr<Record>> &aRecords) {
    VkDocQueryData record;
    record.IsTaxpayers = true;
    record.TaxpayersType = aType;
    record.TaxpayersList = Records(aRecords);
    aPanel.DistributeValues(record);
    return aPanel.List("theTaxpayersList");
}

ListView &ShownStreams(OpenPanel &aPanel, const std::vector<std::shared_ptr<Record>> &aRecords) {
    VkDocQueryData record;
    record.IsAccStreamsList = true;
    record.LastTab = QStringLiteral("accstream");
    record.AccStreamsList = Records(aRecords);
    aPanel.DistributeValues(record);
    return aPanel.List("theAccStreamsList");
}

int MainOrgWidth(const OpenPanel &aPanel) {
    return aPanel.List("theTaxpayersList").Column(4).Width;
}

QString Cells(const ListRow &aRow) {
    QStringList cells;
    for (int i = 1; i <= aRow.CellCount(); ++i) {
        const QString &icon = aRow.CellIcon(i);
        cells << (icon.isEmpty() ? aRow.CellText(i) : aRow.CellText(i) + u'{' + icon + u'}');
    }
    return cells.join(u'|');
}

void ClickHeader(ListView &aList, int aColumn) {
    const QHeaderView &header = *aList.header();
    const QPoint place(header.sectionViewportPosition(aColumn) + 30, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

/// The call of that number to the member fails, counted from now on.
void FailOnCall(const QString &aMember, int aCall) {
    const auto calls = std::make_shared<int>(0);
    MemoryOffice::The().OnCall = [=](const QString &aCalled) {
        if (aCalled == aMember && ++*calls == aCall)
            throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
    };
}

}  // namespace

class TestPersonLists : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    // Taxpayers.

    void RowsOfTaxpayers() {
        OpenPanel panel;
        const auto branch = MakePerson(2);
        const ListView &list =
            ShownPersons(panel, Taxpayers, {MakePerson(1), branch, MakePerson(3)});
        QCOMPARE(Keys(list), QStringLiteral("_3 _1 _2"));
        QCOMPARE(Cells(*list.Row(0)), QStringLiteral("770300000003||Иванов Иван Иванович|"));
        QCOMPARE(list.Row(0)->Icon(), QStringLiteral("man_purple"));
        QCOMPARE(Cells(*list.Row(1)), QStringLiteral("7701000001|770101001|ООО Ромашка|"));
        QCOMPARE(Cells(*list.Row(2)),
                 QStringLiteral("7701000001|770202002|ООО Ромашка, Тверской филиал|"
                                "ООО Ромашка{org}"));
        QCOMPARE(list.Row(2)->Icon(), QStringLiteral("branch"));
        QCOMPARE(list.Row(2)->Text(), QString());
        QCOMPARE(list.Row(2)->Tag().get(), static_cast<Object *>(branch.get()));
    }

    void WidthOfTheHeadColumn() {
        OpenPanel panel;
        ShownPersons(panel, MainOrgs, {});
        QCOMPARE(MainOrgWidth(panel), 0);
        ShownPersons(panel, DocQueryTaxpayersType(5), {});
        QCOMPARE(MainOrgWidth(panel), 0);
        ShownPersons(panel, Taxpayers, {});
        QCOMPARE(MainOrgWidth(panel), 6000);
        ShownPersons(panel, DocQueryTaxpayersType(5), {});
        QCOMPARE(MainOrgWidth(panel), 6000);
    }

    void HeadColumnIsWrittenWhileHidden() {
        OpenPanel panel;
        const ListView &list = ShownPersons(panel, MainOrgs, {MakePerson(2)});
        QCOMPARE(list.Row(0)->CellText(4), QStringLiteral("ООО Ромашка"));
    }

    void UserKeepsOrganisationsOnly() {
        OpenPanel panel;
        ListView &list =
            ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(2), MakePerson(3)});
        panel.show();
        panel.Refreshes = 0;
        QTest::mouseClick(&panel.Get("theOptMainOrgs"), Qt::LeftButton);
        QCOMPARE(Keys(list), QStringLiteral("_1"));
        QCOMPARE(MainOrgWidth(panel), 0);
        QCOMPARE(panel.Refreshes, 1);
        QVERIFY(panel.Get("theIncludeMainOrgDocs").isVisible());
        QTest::mouseClick(&panel.Get("theOptTaxpayers"), Qt::LeftButton);
        QCOMPARE(Keys(list), QStringLiteral("_1"));
        QCOMPARE(MainOrgWidth(panel), 6000);
        QCOMPARE(panel.Refreshes, 2);
    }

    // The picker would not offer this person as a head organisation.
    void OrganisationThatIsNoHeadStays() {
        OpenPanel panel;
        MemoryOffice::The().Persons[3].IsMain = false;
        QVERIFY(!MakePerson(4)->IsMainOrganization());
        ListView &list = ShownPersons(panel, Taxpayers, {MakePerson(4)});
        panel.Option("theOptMainOrgs").SetValue(true);
        QCOMPARE(Keys(list), QStringLiteral("_4"));
    }

    void EveryRowStaysOnTheWayBack() {
        OpenPanel panel;
        ListView &list = ShownPersons(panel, MainOrgs, {MakePerson(1), MakePerson(2)});
        panel.Option("theOptTaxpayers").SetValue(true);
        QCOMPARE(Keys(list), QStringLiteral("_1 _2"));
    }

    void ConversionOfOtherTypesEmptiesTheList_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (const auto &[from, to] :
             std::initializer_list<std::pair<int, int>>{{0, 1}, {0, 2}, {1, 0}, {2, 3}, {3, 4}})
            QTest::addRow("%d to %d", from, to) << from << to;
    }
    void ConversionOfOtherTypesEmptiesTheList() {
        QFETCH(int, from);
        QFETCH(int, to);
        OpenPanel panel;
        const ListView &list = ShownPersons(panel, DocQueryTaxpayersType(from), {MakePerson(1)});
        panel.ConvertTaxpayersType(DocQueryTaxpayersType(from), DocQueryTaxpayersType(from));
        QCOMPARE(list.RowCount(), 1);
        panel.UserSetTaxpayersType(DocQueryTaxpayersType(to));
        QCOMPARE(list.RowCount(), 0);
        QCOMPARE(int(panel.theCurTaxpayersType), to);
    }

    void LockedPanelChangesNothing() {
        OpenPanel panel;
        ListView &list = ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(3)});
        panel.Refreshes = 0;
        panel.LockUpdate();
        panel.Option("theOptMainOrgs").SetValue(true);
        panel.UnlockUpdate();
        QCOMPARE(Keys(list), QStringLiteral("_3 _1"));
        QCOMPARE(panel.theCurTaxpayersType, Taxpayers);
        QCOMPARE(panel.Refreshes, 0);
    }

    void ConversionKeepsTheSorting() {
        OpenPanel panel;
        ListView &list = ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(4)});
        list.SetSortKey(4);
        list.SetSortOrder(1);
        for (const char *option : {"theOptMainOrgs", "theOptTaxpayers", "theOptMainOrgs"}) {
            panel.Option(option).SetValue(true);
            QVERIFY(list.IsSorted());
            QCOMPARE(int(list.SortKey()), 4);  // hidden for head organisations
            QCOMPARE(list.SortOrder(), 1);
        }
    }

    void TwoRowsOfOnePersonFail() {
        OpenPanel panel;
        try {
            ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(1)});
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(KeyAlreadyPresent));
        }
    }

    void PersonThatCannotTellItsIdentityIsDropped() {
        OpenPanel panel;
        ListView &list = ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(4)});
        int calls = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"VkPerson.ID" && ++calls == 1)
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const ShownFailures shown;
        panel.Option("theOptMainOrgs").SetValue(true);
        QVERIFY(ShownFailures::Texts().isEmpty());
        QCOMPARE(list.RowCount(), 1);
    }

    void FailingConversionIsReported_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("member");
        QTest::addColumn<QString>("chain");
        QTest::newRow("theOptMainOrgs")
            << 1 << QStringLiteral("VkPerson.IsOrganization")
            << QStringLiteral(
                   "theOptMainOrgs_Click UserSetTaxpayersType SetTaxpayersTypeInList "
                   "ConvertTaxpayersType");
        QTest::newRow("theOptTaxpayers")
            << 2 << QStringLiteral("VkPerson.Inn")
            << QStringLiteral(
                   "theOptTaxpayers_Click UserSetTaxpayersType SetTaxpayersTypeInList "
                   "ConvertTaxpayersType FillTaxpayersList AddItemToTaxpayersList "
                   "RefreshItemInTaxpayersList");
    }
    void FailingConversionIsReported() {
        QFETCH(int, from);
        QFETCH(QString, member);
        QFETCH(QString, chain);
        OpenPanel panel;
        ShownPersons(panel, DocQueryTaxpayersType(from), {MakePerson(1)});
        MemoryOffice::The().OnCall = [=](const QString &aMember) {
            if (aMember == member) throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const ShownFailures shown;
        panel.Option(QTest::currentDataTag()).SetValue(true);
        QCOMPARE(ShownFailures::Chains(), QStringList(chain));
    }

    /// The rows are read before the mode changes, and written after it; the width of the column has
    /// changed by then. What stands is what a further conversion goes on with.
    void StateAfterAFailedConversion_data() {
        QTest::addColumn<QString>("member");
        QTest::addColumn<int>("call");  // fails
        QTest::addColumn<int>("type");  // afterwards
        QTest::addColumn<QString>("rows");
        const QString whole1 = QStringLiteral("_1 org 7701000001|770101001|ООО Ромашка|");
        const QString whole4 = QStringLiteral("_4 org 7704000004|770401001|АО Василёк|");
        QTest::newRow("first person read")
            << QStringLiteral("VkPerson.IsOrganization") << 1 << 1 << whole1 + u'\n' + whole4;
        QTest::newRow("last person read")
            << QStringLiteral("VkPerson.IsBranch") << 2 << 1 << whole1 + u'\n' + whole4;
        // The list stands by name, the second person first.
        QTest::newRow("first row")
            << QStringLiteral("VkPerson.Inn") << 1 << 2 << QStringLiteral("_4 org |||");
        QTest::newRow("last row") << QStringLiteral("VkPerson.Kpp") << 2 << 2
                                  << QStringLiteral("_1 org 7701000001|||\n") + whole4;
        QTest::newRow("picture") << QStringLiteral("VkPerson.GetIconKeyAsAccPerson") << 2 << 2
                                 << QStringLiteral("_1  |||\n") + whole4;
    }
    void StateAfterAFailedConversion() {
        QFETCH(QString, member);
        QFETCH(int, call);
        QFETCH(int, type);
        QFETCH(QString, rows);
        OpenPanel panel;
        ListView &list = ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(4)});
        list.SetSortKey(4);
        list.SetSortOrder(1);
        FailOnCall(member, call);
        const ShownFailures shown;
        panel.Option("theOptMainOrgs").SetValue(true);
        QCOMPARE(ShownFailures::Texts().size(), 1);
        QCOMPARE(int(panel.theCurTaxpayersType), type);
        QCOMPARE(MainOrgWidth(panel), 0);
        QCOMPARE(panel.theLockCount, 0);
        QStringList left;
        for (const char *key : {"_1", "_4"}) {
            const ListRow *row = list.RowByKey(QString::fromLatin1(key));
            if (!row) continue;
            QVERIFY(row->Tag());
            left << row->Key() + u' ' + row->Icon() + u' ' + Cells(*row);
        }
        QCOMPARE(left.join(u'\n'), rows);
        QCOMPARE(list.RowCount(), int(left.size()));
        QVERIFY(list.IsSorted() && list.SortKey() == 4 && list.SortOrder() == 1);

        MemoryOffice::The().OnCall = nullptr;
        panel.Option("theOptTaxpayers").SetValue(true);
        QCOMPARE(panel.theCurTaxpayersType, Taxpayers);
        QCOMPARE(list.RowCount(), int(left.size()));
    }

    /// A fill ends at the row that fails. That row stands, with its object and what it had told;
    /// the rows behind it are missing.
    void StateAfterAFailedRow_data() {
        QTest::addColumn<int>("id");  // of the first
        QTest::addColumn<QString>("member");
        QTest::addColumn<QString>("cells");
        QTest::newRow("theTaxpayersList")
            << 1 << QStringLiteral("VkPerson.Kpp") << QStringLiteral("7701000001|||");
        QTest::newRow("theAccStreamsList")
            << 11 << QStringLiteral("VkAccStream.Kpp") << QStringLiteral("ПФР|087-101|||");
        QTest::newRow("theTemplatesList")
            << 21 << QStringLiteral("VkTemplType.ShortName") << QStringLiteral("|");
    }
    void StateAfterAFailedRow() {
        QFETCH(int, id);
        QFETCH(QString, member);
        QFETCH(QString, cells);
        OpenPanel panel;
        VkDocQueryData record;
        record.TaxpayersList = Records({MakePerson(1), MakePerson(2), MakePerson(3)});
        record.AccStreamsList = Records({MakeStream(11), MakeStream(12), MakeStream(13)});
        record.Templates = Records({MakeClass(21), MakeClass(22), MakeClass(23)});
        panel.DistributeValues(record);
        ListView &rows = panel.List(QTest::currentDataTag());
        const auto row = [&](int aNumber) {
            return rows.RowByKey(QStringLiteral("_%1").arg(id + aNumber));
        };
        const QString first = Cells(*row(0));
        rows.SetSortOrder(1);
        FailOnCall(member, 2);
        QCOMPARE(RaisedBy([&] { panel.DistributeValues(record); }).Number(), 70);
        MemoryOffice::The().OnCall = nullptr;
        QCOMPARE(rows.RowCount(), 2);
        QCOMPARE(Cells(*row(0)), first);
        QVERIFY(row(1)->Tag());
        QCOMPARE(Cells(*row(1)), cells);
        QCOMPARE(row(2), nullptr);
        QVERIFY(rows.IsSorted() && rows.SortOrder() == 1);
        QCOMPARE(panel.theLockCount, 0);
        panel.DistributeValues(record);
        QCOMPARE(rows.RowCount(), 3);
    }

    void HeaderOfTaxpayersSorts() {
        OpenPanel panel;
        ListView &list =
            ShownPersons(panel, Taxpayers, {MakePerson(1), MakePerson(3), MakePerson(4)});
        panel.show();
        ClickHeader(list, 1);
        QCOMPARE(Keys(list), QStringLiteral("_1 _3 _4"));
        ClickHeader(list, 1);
        QCOMPARE(Keys(list), QStringLiteral("_4 _3 _1"));
    }

    // Accounting streams.

    void RowsOfStreams() {
        OpenPanel panel;
        const auto stream = MakeStream(12);
        const ListView &list = ShownStreams(panel, {stream, MakeStream(11), MakeStream(13)});
        // By КПП, not by name.
        QCOMPARE(Keys(list), QStringLiteral("_13 _11 _12"));
        QCOMPARE(Cells(*list.Row(0)),
                 QStringLiteral("Предприниматель|7703||770300000003{man_purple}|"
                                "Иванов Иван Иванович"));
        QCOMPARE(Cells(*list.Row(2)),
                 QStringLiteral("ПФР|087-101|770101009|7701000001{org}|ООО Ромашка"));
        QCOMPARE(list.Row(2)->Icon(), QStringLiteral("acc_stream_pfr"));
        QCOMPARE(list.Row(2)->Text(), QString());
        QCOMPARE(list.Row(2)->Tag().get(), static_cast<Object *>(stream.get()));
    }

    void PersonIsReadOnce() {
        OpenPanel panel;
        int reads = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"VkAccStream.Person") ++reads;
        };
        ShownStreams(panel, {MakeStream(11)});
        MemoryOffice::The().OnCall = nullptr;
        QCOMPARE(reads, 1);
    }

    void StreamWithoutAPersonStopsTheFill() {
        OpenPanel panel;
        MemoryOffice::The().Streams.push_back(
            {14, 0, QStringLiteral("Ничей"), QString(), QString(), QStringLiteral("acc_stream")});
        QString chain;
        try {
            ShownStreams(panel, {MakeStream(11), MakeStream(14), MakeStream(12)});
        } catch (const Failure &failure) {
            chain = failure.Description();
        }
        QCOMPARE(chain,
                 QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.FillAccStreamsList]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.AddItemToAccStreamsList]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.RefreshItemInAccStreamsList]\r\n"
                                "[MemoryRecords]\r\nthe stream has no person"));
        QCOMPARE(panel.List("theAccStreamsList").RowCount(), 2);
        QVERIFY(panel.List("theAccStreamsList").RowByKey(QStringLiteral("_12")) == nullptr);
    }

    void EmptyCollectionKeepsTheSorting() {
        OpenPanel panel;
        ListView &list = ShownStreams(panel, {MakeStream(11)});
        list.SetSortKey(5);
        list.SetSortOrder(1);
        ShownStreams(panel, {});
        QCOMPARE(list.RowCount(), 0);
        QVERIFY(list.IsSorted());
        QCOMPARE(int(list.SortKey()), 5);
        QCOMPARE(list.SortOrder(), 1);
    }

    void HeaderOfStreamsSorts() {
        OpenPanel panel;
        ListView &list = ShownStreams(panel, {MakeStream(11), MakeStream(12), MakeStream(13)});
        panel.show();
        ClickHeader(list, 1);
        QCOMPARE(Keys(list), QStringLiteral("_11 _13 _12"));
    }
};

VK_TEST_CLASS(TestPersonLists);

#include "TestPersonLists.moc"
