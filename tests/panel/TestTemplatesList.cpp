#include <thread>

#include <QHeaderView>
#include <QScopeGuard>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "panel/LastTemplates.h"
#include "panel/OpenPanel.h"
#include "panel/ShownFailures.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

const QDate theFirst(2020, 1, 1);
const QDate theSecond(2023, 7, 15);

VersionFacts Version(double aID, double aClass, const LooseValue &aBegin, const LooseValue &aEnd,
                     const char *aName, const char *aIcon = "doc") {
    return {aID, aClass, aBegin, aEnd, QString::fromUtf8(aName), QString::fromLatin1(aIcon)};
}

ClassFacts Class(double aID, const char *aName) {
    return {aID, QString(), QString::fromUtf8(aName), false, QStringLiteral("doc_blank"), {}};
}

/// One office for all tests of the class: the newest versions are read once.
void InstallForms() {
    MemoryOffice::Install();
    MemoryOffice &office = MemoryOffice::The();
    office.Classes = {Class(21, "Налог"),  Class(22, "Аванс"),    Class(23, "Без начала"),
                      Class(24, "Пустая"), Class(25, "Двойники"), Class(26, "Поздняя")};
    office.Versions = {
        Version(31, 21, theFirst, theSecond, "Налог 1"),
        Version(32, 21, theSecond, Empty(), "Налог 2"),
        Version(33, 22, theSecond, Empty(), "Аванс 2", ""),
        Version(34, 22, theFirst, theSecond, "Аванс 1"),
        Version(35, 23, Empty(), Empty(), "Без начала"),
        Version(36, 25, theFirst, Empty(), "Двойник первый"),
        Version(37, 25, theFirst, Empty(), "Двойник второй"),
        Version(38, 26, Empty(), Empty(), "Поздняя без начала"),
        Version(39, 26, theFirst, Empty(), "Поздняя с началом"),
    };
}

ListView &Shown(OpenPanel &aPanel, DocQueryTemplatesMode aMode,
                const std::vector<std::shared_ptr<Record>> &aRecords) {
    VkDocQueryData record;
    record.IsTemplate = true;
    record.LastTab = QStringLiteral("template");
    record.TemplatesMode = aMode;
    record.Templates = Records(aRecords);
    aPanel.DistributeValues(record);
    return aPanel.List("theTemplatesList");
}

int TermWidth(const OpenPanel &aPanel) {
    return aPanel.List("theTemplatesList").Column(1).Width;
}

double NewestOf(double aClass) {
    const auto newest = GetLastTemplateByTemplType(aClass);
    return newest ? newest->ID() : 0;
}

/// In a thread of its own, where nothing has been read yet.
template <class Body>
void InFreshThread(Body aBody) {
    std::thread(aBody).join();
}

}  // namespace

class TestTemplatesList : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InstallForms(); }
    void cleanup() { MemoryOffice::The().OnCall = nullptr; }

    void RowOfAClass() {
        OpenPanel panel;
        const auto type = MakeClass(21);
        const ListRow &row = *Shown(panel, TemplateClass, {type}).Row(0);
        QCOMPARE(row.Key(), QStringLiteral("_21"));
        QCOMPARE(row.Text(), QString());
        QCOMPARE(row.Tag().get(), static_cast<Object *>(type.get()));
        QCOMPARE(row.Icon(), QStringLiteral("doc_blank"));
        QCOMPARE(row.CellText(1), QString());
        QCOMPARE(row.CellText(2), QStringLiteral("Налог"));
        QCOMPARE(TermWidth(panel), 0);
    }

    void RowOfAVersion_data() {
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("term");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("icon");
        QTest::newRow("both") << 31.0 << QStringLiteral("01.01.2020 - 15.07.2023")
                              << QStringLiteral("Налог 1") << QStringLiteral("doc");
        QTest::newRow("open end, no picture")
            << 33.0 << QStringLiteral("15.07.2023 - ") << QStringLiteral("Аванс 2") << QString();
        QTest::newRow("neither") << 35.0 << QStringLiteral(" - ") << QStringLiteral("Без начала")
                                 << QStringLiteral("doc");
    }
    void RowOfAVersion() {
        QFETCH(double, id);
        QFETCH(QString, term);
        QFETCH(QString, name);
        QFETCH(QString, icon);
        OpenPanel panel;
        const ListRow &row = *Shown(panel, TemplateVersion, {MakeVersion(id)}).Row(0);
        QCOMPARE(row.Key(), ObjectKey(id));
        QCOMPARE(row.Text(), QString());
        QCOMPARE(row.Icon(), icon);
        QCOMPARE(row.CellText(1), term);
        QCOMPARE(row.CellText(2), name);
        QCOMPARE(TermWidth(panel), 2100);
    }

    /// The picker shows such a version with a blank in place of the date.
    void VersionWhoseDateIsNullFails() {
        MemoryOffice::The().Versions.push_back(Version(40, 21, theFirst, Null(), "Налог 3"));
        const auto removed = qScopeGuard([] { MemoryOffice::The().Versions.pop_back(); });
        OpenPanel panel;
        const Failure failure = RaisedBy([&] { Shown(panel, TemplateVersion, {MakeVersion(40)}); });
        QCOMPARE(failure.Number(), qint32(TypeMismatch));
        QVERIFY(failure.Description().endsWith(
            QStringLiteral("RefreshItemInTemplatesList]\r\nНесоответствие типа.")));
    }

    void RowWithoutAModeIsBlank() {
        OpenPanel panel;
        const auto type = MakeClass(21);
        const ListRow &row = *Shown(panel, DocQueryTemplatesMode(7), {type}).Row(0);
        QCOMPARE(row.Tag().get(), static_cast<Object *>(type.get()));
        QCOMPARE(row.Icon(), QString());
        QCOMPARE(row.CellText(1) + row.CellText(2), QString());
    }

    void OtherModeLeavesTheWidth() {
        OpenPanel panel;
        Shown(panel, TemplateClass, {});
        Shown(panel, DocQueryTemplatesMode(7), {});
        QCOMPARE(TermWidth(panel), 0);
        Shown(panel, TemplateVersion, {});
        Shown(panel, DocQueryTemplatesMode(7), {});
        QCOMPARE(TermWidth(panel), 2100);
    }

    void SameModeWithoutForceDoesNothing() {
        OpenPanel panel;
        Shown(panel, TemplateVersion, {MakeVersion(31)});
        panel.List("theTemplatesList").SetColumnWidth(1, 500);
        panel.SetTemplatesModeInList(TemplateVersion, false, true);
        QCOMPARE(TermWidth(panel), 500);
        panel.SetTemplatesModeInList(TemplateVersion, true, true);
        QCOMPARE(TermWidth(panel), 2100);
        QCOMPARE(Keys(panel.List("theTemplatesList")), QStringLiteral("_31"));
    }

    void ModeWithoutConversionLeavesTheRows() {
        OpenPanel panel;
        Shown(panel, TemplateVersion, {MakeVersion(31)});
        panel.SetTemplatesModeInList(TemplateClass, false, false);
        QCOMPARE(panel.theCurTemplatesMode, TemplateClass);
        QCOMPARE(Keys(panel.List("theTemplatesList")), QStringLiteral("_31"));
    }

    void RowsStandByName() {
        OpenPanel panel;
        const ListView &list =
            Shown(panel, TemplateClass, {MakeClass(21), MakeClass(26), MakeClass(22)});
        QCOMPARE(Keys(list), QStringLiteral("_22 _21 _26"));
    }

    void UserConvertsVersionsToClassesAndBack() {
        OpenPanel panel;
        ListView &list =
            Shown(panel, TemplateVersion, {MakeVersion(31), MakeVersion(32), MakeVersion(34)});
        panel.show();
        panel.Refreshes = 0;
        QTest::mouseClick(&panel.Get("theOptTemplateClass"), Qt::LeftButton);
        QCOMPARE(Keys(list), QStringLiteral("_22 _21"));
        QCOMPARE(list.Row(1)->CellText(2), QStringLiteral("Налог"));
        QCOMPARE(list.Row(1)->CellText(1), QString());
        QCOMPARE(TermWidth(panel), 0);
        QTest::mouseClick(&panel.Get("theOptTemplate"), Qt::LeftButton);
        QCOMPARE(Keys(list), QStringLiteral("_33 _32"));
        QCOMPARE(TermWidth(panel), 2100);
        QCOMPARE(panel.Refreshes, 0);  // no rule depends on this mode
        VkDocQueryData record;
        panel.AssembleValuesTo(record);
        QCOMPARE(record.TemplatesMode, TemplateVersion);
        QVERIFY(std::dynamic_pointer_cast<VkTemplate>(record.Templates->At(0)));
    }

    void ClassWithoutVersionsDisappears() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateClass, {MakeClass(21), MakeClass(24)});
        const ShownFailures shown;
        panel.Option("theOptTemplate").SetValue(true);
        QCOMPARE(Keys(list), QStringLiteral("_32"));
        QVERIFY(ShownFailures::Texts().isEmpty());
        panel.Option("theOptTemplateClass").SetValue(true);
        QCOMPARE(Keys(list), QStringLiteral("_21"));
    }

    void FirstOfTwoVersionsGivesTheClassItsPlace() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateVersion, {});
        list.SetSorted(false);
        panel.FillTemplatesList(*Records({MakeVersion(31), MakeVersion(34), MakeVersion(32)}),
                                true);
        panel.UserSetTemplatesMode(TemplateClass);
        QCOMPARE(Keys(list), QStringLiteral("_21 _22"));
    }

    void ConversionOfOtherModesEmptiesTheList_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (const auto &[from, to] :
             std::initializer_list<std::pair<int, int>>{{0, 1}, {0, 2}, {1, 0}, {2, 3}, {3, 4}})
            QTest::addRow("%d to %d", from, to) << from << to;
    }
    void ConversionOfOtherModesEmptiesTheList() {
        QFETCH(int, from);
        QFETCH(int, to);
        OpenPanel panel;
        std::shared_ptr<Record> record = MakeClass(21);
        if (from == 2) record = MakeVersion(31);
        const ListView &list = Shown(panel, DocQueryTemplatesMode(from), {record});
        panel.ConvertTemplatesMode(DocQueryTemplatesMode(from), DocQueryTemplatesMode(from));
        QCOMPARE(list.RowCount(), 1);
        panel.UserSetTemplatesMode(DocQueryTemplatesMode(to));
        QCOMPARE(list.RowCount(), 0);
        QCOMPARE(int(panel.theCurTemplatesMode), to);
    }

    void ActiveOptionChangesNothing() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateVersion, {MakeVersion(31), MakeVersion(32)});
        panel.show();
        QTest::mouseClick(&panel.Get("theOptTemplate"), Qt::LeftButton);
        panel.UserSetTemplatesMode(TemplateVersion);
        QCOMPARE(Keys(list), QStringLiteral("_31 _32"));
    }

    void LockedPanelConvertsNothing() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateVersion, {MakeVersion(31)});
        panel.LockUpdate();
        panel.Option("theOptTemplateClass").SetValue(true);
        panel.UnlockUpdate();
        QCOMPARE(Keys(list), QStringLiteral("_31"));
        QCOMPARE(panel.theCurTemplatesMode, TemplateVersion);
        QCOMPARE(TermWidth(panel), 2100);
    }

    void ConversionKeepsTheSorting() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateVersion, {MakeVersion(31), MakeVersion(34)});
        list.SetSortKey(1);
        list.SetSortOrder(1);
        panel.Option("theOptTemplateClass").SetValue(true);
        QVERIFY(list.IsSorted());
        QCOMPARE(int(list.SortKey()), 1);  // the hidden column
        QCOMPARE(list.SortOrder(), 1);
        QCOMPARE(list.RowCount(), 2);
    }

    void HeaderSorts() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateClass, {MakeClass(21), MakeClass(22)});
        panel.show();
        const QHeaderView &header = *list.header();
        const QPoint name(header.sectionViewportPosition(2) + 30, header.height() / 2);
        QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, name);
        QCOMPARE(list.SortOrder(), 1);
        QCOMPARE(Keys(list), QStringLiteral("_21 _22"));
    }

    void RowBeforeAnother() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateClass, {MakeClass(21), MakeClass(22)});
        list.SetSorted(false);
        ListRow *row = panel.AddItemToTemplatesList(MakeClass(26), list.Row(1));
        QCOMPARE(list.PositionOf(row), 1);
        QCOMPARE(row->CellText(2), QStringLiteral("Поздняя"));
    }

    void TwoRowsOfOneRecordFail() {
        OpenPanel panel;
        VkDocQueryData record;
        record.Templates = Records({MakeClass(21), MakeClass(21)});
        try {
            panel.DistributeValues(record);
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(KeyAlreadyPresent));
            QVERIFY(failure.Description().startsWith(
                QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
                               "[Vk_DocQuery::VkDocQueryCriteries.FillTemplatesList]\r\n"
                               "[Vk_DocQuery::VkDocQueryCriteries.AddItemToTemplatesList]\r\n")));
        }
    }

    /// The rows are read before the mode changes, and written after it; the width of the column has
    /// changed by then.
    void StateAfterAFailedConversion_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("member");  // fails for the second row
        QTest::addColumn<int>("mode");        // afterwards
        QTest::addColumn<QString>("names");
        QTest::newRow("class read")
            << 1 << QStringLiteral("VkTemplType.ID") << 1 << QStringLiteral("_22 Аванс, _21 Налог");
        QTest::newRow("version written") << 1 << QStringLiteral("VkTemplate.GetDisplayName") << 2
                                         << QStringLiteral("_33 Аванс 2, _32 ");
        QTest::newRow("class written") << 2 << QStringLiteral("VkTemplType.ShortName") << 1
                                       << QStringLiteral("_22 Аванс, _21 ");
    }
    void StateAfterAFailedConversion() {
        QFETCH(int, from);
        QFETCH(QString, member);
        QFETCH(int, mode);
        QFETCH(QString, names);
        GetLastTemplateByTemplType(21);  // read before anything fails
        OpenPanel panel;
        ListView &list = from == 1
                             ? Shown(panel, TemplateClass, {MakeClass(21), MakeClass(22)})
                             : Shown(panel, TemplateVersion, {MakeVersion(31), MakeVersion(34)});
        list.SetSortKey(0);  // nothing stands in that column: the rows stay by name
        int calls = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == member && ++calls == 2)
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const ShownFailures shown;
        panel.Option(from == 1 ? "theOptTemplate" : "theOptTemplateClass").SetValue(true);
        QCOMPARE(ShownFailures::Texts().size(), 1);
        QCOMPARE(int(panel.theCurTemplatesMode), mode);
        QCOMPARE(TermWidth(panel), from == 1 ? 2100 : 0);
        QCOMPARE(panel.theLockCount, 0);
        QStringList left;
        for (int i = 0; i < list.RowCount(); ++i)
            left << list.Row(i)->Key() + u' ' + list.Row(i)->CellText(2);
        QCOMPARE(left.join(QStringLiteral(", ")), names);
        QVERIFY(list.IsSorted());
    }

    void VersionThatCannotTellItsClassIsDropped() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateVersion, {MakeVersion(31), MakeVersion(34)});
        int calls = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"VkTemplate.TemplateType" && ++calls == 1)
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const ShownFailures shown;
        panel.Option("theOptTemplateClass").SetValue(true);
        QVERIFY(ShownFailures::Texts().isEmpty());
        QCOMPARE(list.RowCount(), 1);
    }

    void ClassThatCannotTellItsIdentityIsReported() {
        OpenPanel panel;
        ListView &list = Shown(panel, TemplateClass, {MakeClass(21)});
        MemoryOffice::The().OnCall = [](const QString &aMember) {
            if (aMember == u"VkTemplType.ID")
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const ShownFailures shown;
        panel.Option("theOptTemplate").SetValue(true);
        QCOMPARE(ShownFailures::Texts(),
                 QStringList(
                     QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.theOptTemplate_Click]\r\n"
                                    "[Vk_DocQuery::VkDocQueryCriteries.UserSetTemplatesMode]\r\n"
                                    "[Vk_DocQuery::VkDocQueryCriteries.SetTemplatesModeInList]\r\n"
                                    "[Vk_DocQuery::VkDocQueryCriteries.ConvertTemplatesMode]\r\n"
                                    "[S]\r\nD")));
        QCOMPARE(list.RowCount(), 1);
    }

    // The newest versions.

    void NewestVersions_data() {
        QTest::addColumn<double>("type");
        QTest::addColumn<double>("version");
        QTest::newRow("later comes second") << 21.0 << 32.0;
        QTest::newRow("later comes first") << 22.0 << 33.0;
        QTest::newRow("without a start") << 23.0 << 35.0;
        QTest::newRow("no version") << 24.0 << 0.0;
        QTest::newRow("equal starts: the first") << 25.0 << 36.0;
        QTest::newRow("a start beats none") << 26.0 << 39.0;
    }
    void NewestVersions() {
        QFETCH(double, type);
        QFETCH(double, version);
        QCOMPARE(NewestOf(type), version);
    }

    void AllVersionsAreReadOnce() {
        int reads = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"GetTemplates") ++reads;
        };
        double newest = 0;
        double afterwards = 0;
        InFreshThread([&] {
            newest = NewestOf(21);
            NewestOf(24);
            MemoryOffice &office = MemoryOffice::The();
            const auto versions = office.Versions;
            office.Versions.push_back(Version(99, 21, QDate(2030, 1, 1), Empty(), "entered later"));
            afterwards = NewestOf(21);
            office.Versions = versions;
        });
        QCOMPARE(reads, 1);
        QCOMPARE(newest, 32.0);
        QCOMPARE(afterwards, 32.0);
        QVERIFY(IsNull(MemoryOffice::The().AskedFrom));
        QVERIFY(IsNull(MemoryOffice::The().AskedTo));
    }

    void FailedReadingIsTriedAnew() {
        int reads = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"GetTemplates" && ++reads == 1)
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        QString chain;
        double newest = 0;
        InFreshThread([&] {
            try {
                NewestOf(21);
            } catch (const Failure &failure) {
                chain = failure.Description();
            }
            newest = NewestOf(21);
        });
        QCOMPARE(chain, QStringLiteral("[Vk_DocQuery::miDocQuery.GetLastTemplateByTemplType]\r\n"
                                       "[Vk_DocQuery::miDocQuery.BuildLastTemplates]\r\n"
                                       "[S]\r\nD"));
        QCOMPARE(newest, 32.0);
    }
};

VK_TEST_CLASS(TestTemplatesList);

#include "TestTemplatesList.moc"
