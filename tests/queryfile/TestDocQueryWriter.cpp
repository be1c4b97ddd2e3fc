#include <limits>
#include <thread>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/MemoryRecords.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::MemoryOffice;
using VkTests::RaisedBy;

namespace {

// "@" stands for the year of today.
const char16_t *const theNewRecord[] = {
    u"<?xml version=\"1.0\" encoding=\"windows-1251\"?>",
    u"<VkDocQuery ver=\"1\">",
    u"    <DocCriteria ",
    u"        IsDocStatus=\"0\" DocStatuses=\"0\" ",
    u"        IsNotes=\"0\" NotesMode=\"0\" Notes=\"\" ",
    u"        IsSignDate=\"0\" SignDate1=\"\" SignDate2=\"\" ",
    u"        IsSignerFio=\"0\" SignerSurname=\"\" ",
    (u"        IsOrvex=\"0\" IsOrvexStages=\"0\" OrvexStages=\"0\" IsOrvexTerms=\"0\" "
     u"OrvexTerms=\"0\" "),
    u"        IsFss=\"0\" IsFssStages=\"0\" FssStages=\"0\" IsFssTerms=\"0\" FssTerms=\"0\" ",
    u"        IsDocNum=\"0\" DocNumMode=\"1\" DocNum1=\"0\" DocNum2=\"0\" LastDocNumsCount=\"10\" ",
    u"        WholePfrCluster=\"0\" ",
    u"    />",
    u"    <TemplateCriteria ",
    u"        IsTemplate=\"0\" TemplatesMode=\"1\" ",
    u"    >",
    u"        <Templates>",
    u"        </Templates>",
    u"    </TemplateCriteria>",
    u"    <PeriodCriteria ",
    u"        IsPeriods=\"0\" PeriodCriterion=\"1\" ",
    u"        OnePeriodYear=\"@\" OnePeriodMonthID=\"16\" ",
    (u"        RangePeriodYear1=\"@\" RangePeriodMonth1=\"1\" RangePeriodYear2=\"@\" "
     u"RangePeriodMonth2=\"12\" "),
    u"        IsPeriodTypes=\"0\" PeriodTypes=\"0\" ",
    u"    />",
    u"    <AccStreamCriteria ",
    u"        IsAccStreamType=\"0\" AccStreamTypes=\"0\" ",
    u"        IsAccStreamOpeness=\"0\" AccStreamOpen=\"1\" ",
    (u"        IsContoraPrefix1=\"0\" ContoraPrefix1=\"\" IsContoraPrefix2=\"0\" "
     u"ContoraPrefix2=\"\" ContoraJoining=\"0\" "),
    u"        IsAccStreamsList=\"0\" ",
    u"    >",
    u"        <AccStreamsList>",
    u"        </AccStreamsList>",
    u"    </AccStreamCriteria>",
    u"    <TaxpayersCriteria ",
    u"        IsTaxpayers=\"0\" TaxpayersType=\"1\" IncludeMainOrgDocs=\"0\" ",
    u"    >",
    u"        <TaxpayersList>",
    u"        </TaxpayersList>",
    u"    </TaxpayersCriteria>",
    u"    <OtherOptions ",
    u"        LastTab=\"\"",
    u"    />",
    u"</VkDocQuery>",
};

QString NewRecordText() {
    QString text;
    for (const char16_t *line : theNewRecord)
        text += QString::fromUtf16(line) + QStringLiteral("\r\n");
    return text.replace(u'@', QString::number(QDate::currentDate().year()));
}

QString LineWith(const QString &aText, const char *aWord) {
    for (const QString &line : aText.split(QStringLiteral("\r\n"))) {
        if (line.contains(QLatin1String(aWord))) return line;
    }
    return QStringLiteral("no such line");
}

/// A record that has an identity and nothing else.
class BareRecord : public Record {
public:
    explicit BareRecord(double aID) : theID(aID) {}
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }

private:
    double theID;
};

class FailingRecord : public BareRecord {
public:
    FailingRecord() : BareRecord(0) {}
    double ID() const override {
        throw Failure(438, QStringLiteral("S"), QStringLiteral("no member ID"));
    }
};

std::shared_ptr<RecordCollection> ListOf(const QList<double> &aIDs) {
    auto list = std::make_shared<RecordCollection>();
    for (const double id : aIDs) list->Add(std::make_shared<BareRecord>(id));
    return list;
}

const QString theChain = QStringLiteral("[Vk_DocQuery::VkDocQueryData.");

}  // namespace

class TestDocQueryWriter : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Install(); }

    void NewRecordGivesFortyThreeLines() {
        QCOMPARE(int(std::size(theNewRecord)), 43);
        QCOMPARE(VkDocQueryData().WriteToXmlString(true, 0), NewRecordText());
    }

    void EveryLine_data() {
        QTest::addColumn<int>("line");
        for (int i = 0; i < 43; ++i) QTest::addRow("line %d", i + 1) << i;
    }
    void EveryLine() {
        QFETCH(int, line);
        const QStringList lines =
            VkDocQueryData().WriteToXmlString(true, 0).split(QStringLiteral("\r\n"));
        QCOMPARE(lines.size(), 44);  // and nothing behind the last line end
        QCOMPARE(lines[43], QString());
        QString expected = QString::fromUtf16(theNewRecord[line]);
        expected.replace(u'@', QString::number(QDate::currentDate().year()));
        QCOMPARE(lines[line], expected);
    }

    void TwoSavesGiveTheSameBytes() {
        VkDocQueryData record;
        record.Notes = QStringLiteral("Акт сверки");
        record.TaxpayersList = ListOf({3, 1, 2});
        const QString first = record.WriteToXmlString(true, 0);
        QCOMPARE(record.WriteToXmlString(true, 0), first);
    }

    void DeclarationAndDepthAreAskedFor() {
        const QString text = VkDocQueryData().WriteToXmlString(false, 2);
        QVERIFY(
            text.startsWith(QStringLiteral("        <VkDocQuery ver=\"1\">\r\n"
                                           "            <DocCriteria \r\n"
                                           "                IsDocStatus=")));
        QVERIFY(text.endsWith(QStringLiteral("\r\n        </VkDocQuery>\r\n")));
        QVERIFY(VkDocQueryData().WriteToXmlString(true, 1).startsWith(QStringLiteral(
            "<?xml version=\"1.0\" encoding=\"windows-1251\"?>\r\n    <VkDocQuery")));
    }

    /// Every line stands as many steps deeper, those of the lists too.
    void DeeperLines_data() {
        QTest::addColumn<int>("depth");
        for (const int depth : {1, 5, 6, 20}) QTest::addRow("%d", depth) << depth;
    }
    void DeeperLines() {
        QFETCH(int, depth);
        VkDocQueryData record;
        record.Templates = ListOf({-999999999999999, 1, 0.5});
        record.AccStreamsList = ListOf(QList<double>(200, 999999999999999));
        QStringList lines = record.WriteToXmlString(false, 0).split(QStringLiteral("\r\n"));
        for (qsizetype i = 0; i + 1 < lines.size(); ++i) lines[i].prepend(QString(4 * depth, u' '));
        QCOMPARE(record.WriteToXmlString(false, depth), lines.join(QStringLiteral("\r\n")));
    }

    void TextsAreShielded_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        const auto row = [](const char *aName, const char16_t *aText, const char16_t *aWritten) {
            QTest::newRow(aName) << QString::fromUtf16(aText) << QString::fromUtf16(aWritten);
        };
        row("all four", u"a&b\"c<d>e", u"a&amp;b&quot;c&lt;d&gt;e");
        row("shielded already", u"&amp;", u"&amp;amp;");
        row("shielded quote", u"&quot;", u"&amp;quot;");
        row("apostrophe stays", u"'", u"'");
        row("only quotes", u"\"\"", u"&quot;&quot;");
        row("Russian", u"Акт № 5", u"Акт № 5");
        row("empty", u"", u"");
    }
    void TextsAreShielded() {
        QFETCH(QString, text);
        QFETCH(QString, written);
        VkDocQueryData record;
        record.Notes = text;
        record.SignerSurname = text;
        record.ContoraPrefix1 = text;
        record.ContoraPrefix2 = text;
        record.LastTab = text;
        const QString file = record.WriteToXmlString(true, 0);
        QCOMPARE(
            LineWith(file, " Notes="),
            QStringLiteral("        IsNotes=\"0\" NotesMode=\"0\" Notes=\"%1\" ").arg(written));
        QCOMPARE(LineWith(file, "SignerSurname="),
                 QStringLiteral("        IsSignerFio=\"0\" SignerSurname=\"%1\" ").arg(written));
        QCOMPARE(
            LineWith(file, "ContoraPrefix1="),
            QStringLiteral("        IsContoraPrefix1=\"0\" ContoraPrefix1=\"%1\" "
                           "IsContoraPrefix2=\"0\" ContoraPrefix2=\"%1\" ContoraJoining=\"0\" ")
                .arg(written));
        QCOMPARE(LineWith(file, "LastTab="), QStringLiteral("        LastTab=\"%1\"").arg(written));
    }

    void Dates_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("written");
        QTest::newRow("date") << 0 << QStringLiteral("05.03.2024");
        QTest::newRow("empty") << 1 << QString();
        QTest::newRow("null") << 2 << QString();
        QTest::newRow("early date") << 3 << QStringLiteral("31.12.0987");
        QTest::newRow("text of a date") << 4 << QStringLiteral("05.03.2024");
        QTest::newRow("day number") << 5 << QStringLiteral("31.12.1899");
        QTest::newRow("invalid date") << 6 << QString();
        QTest::newRow("text that is no date") << 7 << QString();
        QTest::newRow("text of a day too many") << 8 << QStringLiteral("03.03.2021");
    }
    void Dates() {
        const LooseValue values[] = {
            QDate(2024, 3, 5),          Empty(),   Null(),  QDate(987, 12, 31),
            QStringLiteral("5.3.2024"), qint32(1), QDate(), QStringLiteral("\"/><!--"),
            QStringLiteral("31.2.21")};
        QFETCH(int, kind);
        QFETCH(QString, written);
        VkDocQueryData record;
        record.SignDate1 = values[kind];
        QCOMPARE(LineWith(record.WriteToXmlString(true, 0), "SignDate1="),
                 QStringLiteral("        IsSignDate=\"0\" SignDate1=\"%1\" SignDate2=\"\" ")
                     .arg(written));
        record.SignDate1 = Empty();
        record.SignDate2 = values[kind];
        QCOMPARE(LineWith(record.WriteToXmlString(true, 0), "SignDate1="),
                 QStringLiteral("        IsSignDate=\"0\" SignDate1=\"\" SignDate2=\"%1\" ")
                     .arg(written));
    }

    /// A date that would come back as another one is no date of a file, under a switch that is off
    /// as well.
    void YearsOfDates_data() {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("isWritten");
        QTest::newRow("100") << QDate(100, 1, 1) << QStringLiteral("01.01.0100") << true;
        QTest::newRow("9999") << QDate(9999, 12, 31) << QStringLiteral("31.12.9999") << true;
        QTest::newRow("99") << QDate(99, 12, 31) << QStringLiteral("31.12.0099") << false;
        QTest::newRow("10000") << QDate(10000, 1, 1) << QStringLiteral("01.01.10000") << false;
        QTest::newRow("before our era")
            << QDate(-44, 3, 15) << QStringLiteral("15.03.-044") << false;
    }
    void YearsOfDates() {
        QFETCH(QDate, date);
        QFETCH(QString, shown);
        QFETCH(bool, isWritten);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        for (const auto field : {&VkDocQueryData::SignDate1, &VkDocQueryData::SignDate2}) {
            VkDocQueryData record;
            record.*field = date;
            const Failure failure = RaisedBy([&] { record.WriteToXmlFile(name); });
            QCOMPARE(QFile::exists(name), isWritten);
            QCOMPARE(record.LastError, QString());
            if (isWritten) {
                QVERIFY(record.WriteToXmlString(true, 0).contains(u'"' + shown + u'"'));
                continue;
            }
            QCOMPARE(failure.Number(), qint32(InvalidArgument));
            QCOMPARE(failure.Description(),
                     theChain + QStringLiteral("WriteToXmlFile]\r\n") + theChain +
                         QStringLiteral("WriteToXmlString]\r\nДату %1 записать нельзя: год может "
                                        "быть от 100 до 9999.")
                             .arg(shown));
        }
    }

    void DateThatIsNoneIsRaised() {
        VkDocQueryData record;
        record.SignDate1 = 3e9;  // days
        const Failure failure = RaisedBy([&] { record.WriteToXmlString(true, 0); });
        QCOMPARE(failure.Number(), 13);
        QCOMPARE(failure.Description(),
                 theChain + QStringLiteral("WriteToXmlString]\r\nНесоответствие типа."));
    }

    void NumbersAndSwitchesAreWrittenWhateverTheSwitchesSay() {
        VkDocQueryData record;
        record.DocStatuses = DocQueryDocStatuses(5);
        record.IsNotes = true;
        record.DocNum1 = std::numeric_limits<qint32>::min();
        record.DocNum2 = std::numeric_limits<qint32>::max();
        record.AccStreamTypes = DocQueryAccStreamTypes(1 | 16 | 256);
        const QString file = record.WriteToXmlString(true, 0);
        QCOMPARE(LineWith(file, "DocStatuses="),
                 QStringLiteral("        IsDocStatus=\"0\" DocStatuses=\"5\" "));
        QCOMPARE(LineWith(file, "NotesMode="),
                 QStringLiteral("        IsNotes=\"1\" NotesMode=\"0\" Notes=\"\" "));
        QCOMPARE(LineWith(file, "DocNum1="),
                 QStringLiteral("        IsDocNum=\"0\" DocNumMode=\"1\" DocNum1=\"-2147483648\" "
                                "DocNum2=\"2147483647\" LastDocNumsCount=\"10\" "));
        QCOMPARE(LineWith(file, "AccStreamTypes="),
                 QStringLiteral("        IsAccStreamType=\"0\" AccStreamTypes=\"273\" "));
    }

    void FileNameAndLastErrorAreNotWritten() {
        VkDocQueryData record;
        record.FileName = QStringLiteral("somewhere.qvk");
        record.LastError = QStringLiteral("something");
        QCOMPARE(record.WriteToXmlString(true, 0), NewRecordText());
    }

    void ListsStandInTheirOrder() {
        VkDocQueryData record;
        record.Templates = ListOf({30, 10, 20});
        record.AccStreamsList = ListOf({});
        record.TaxpayersList = ListOf({7, 7});
        const QString file = record.WriteToXmlString(true, 0);
        QVERIFY(
            file.contains(QStringLiteral("\r\n        <Templates>\r\n"
                                         "            <i id=\"30\" />\r\n"
                                         "            <i id=\"10\" />\r\n"
                                         "            <i id=\"20\" />\r\n"
                                         "        </Templates>\r\n    </TemplateCriteria>\r\n")));
        QVERIFY(file.contains(
            QStringLiteral("\r\n        <AccStreamsList>\r\n        </AccStreamsList>\r\n")));
        QVERIFY(file.contains(
            QStringLiteral("\r\n        <TaxpayersList>\r\n"
                           "            <i id=\"7\" />\r\n"
                           "            <i id=\"7\" />\r\n"
                           "        </TaxpayersList>\r\n    </TaxpayersCriteria>\r\n")));
    }

    void Identities_data() {
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("written");
        QTest::newRow("12345") << 12345.0 << QStringLiteral("12345");
        QTest::newRow("0") << 0.0 << QStringLiteral("0");
        QTest::newRow("-5") << -5.0 << QStringLiteral("-5");
        QTest::newRow("beyond 32 bits") << 99999999999.0 << QStringLiteral("99999999999");
        QTest::newRow("fraction") << 1.5 << QStringLiteral("1.5");
        QTest::newRow("exponent") << 1e15 << QStringLiteral("1E+15");
        QTest::newRow("negative exponent") << -1e15 << QStringLiteral("-1E+15");
        QTest::newRow("last plain") << 999999999999999.0 << QStringLiteral("999999999999999");
    }
    void Identities() {
        QFETCH(double, id);
        QFETCH(QString, written);
        VkDocQueryData record;
        record.Templates = ListOf({id});
        QCOMPARE(LineWith(record.WriteToXmlString(true, 0), "<i "),
                 QStringLiteral("            <i id=\"%1\" />").arg(written));
    }

    void ItemWithoutIdentityIsRaisedUpTheChain() {
        QTemporaryDir folder;
        VkDocQueryData record;
        record.TaxpayersList = ListOf({1});
        record.TaxpayersList->Add(std::make_shared<FailingRecord>());
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        const Failure failure = RaisedBy([&] { record.WriteToXmlFile(name); });
        QCOMPARE(failure.Number(), 438);
        QCOMPARE(failure.Description(),
                 theChain + QStringLiteral("WriteToXmlFile]\r\n") + theChain +
                     QStringLiteral("WriteToXmlString]\r\n") + theChain +
                     QStringLiteral("WriteCollectedIDsToXmlString]\r\n[S]\r\nno member ID"));
        QCOMPARE(record.LastError, QString());
        QVERIFY(!QFile::exists(name));
        record.TaxpayersList.reset();
        QCOMPARE(record.WriteToXmlString(true, 0), NewRecordText());  // the depth is set anew
    }

    void AbsentItemIsRaised() {
        VkDocQueryData record;
        record.Templates = std::make_shared<RecordCollection>();
        record.Templates->Add(nullptr);
        const Failure failure = RaisedBy([&] { record.WriteToXmlString(true, 0); });
        QCOMPARE(failure.Number(), 91);
        QCOMPARE(failure.Description(),
                 theChain + QStringLiteral("WriteToXmlString]\r\n") + theChain +
                     QStringLiteral("WriteCollectedIDsToXmlString]\r\n"
                                    "Элемент списка \"Templates\" отсутствует."));
    }

    void NegativeDepthIsRaised() {
        const Failure failure = RaisedBy([] { VkDocQueryData().WriteToXmlString(false, -1); });
        QCOMPARE(failure.Description(), theChain + QStringLiteral("WriteToXmlString]\r\n") +
                                            theChain +
                                            QStringLiteral("Indent]\r\n"
                                                           "Отрицательная глубина отступа: -1."));
        QCOMPARE(failure.Number(), qint32(InvalidArgument));
    }

    void DepthBeyondTheRangeOfNumbersIsRaised_data() {
        QTest::addColumn<int>("depth");
        QTest::addColumn<QString>("chain");
        QTest::newRow("four blanks a step")
            << std::numeric_limits<qint32>::max() / 4 + 1 << QStringLiteral("Indent]\r\n");
    }
    void DepthBeyondTheRangeOfNumbersIsRaised() {
        QFETCH(int, depth);
        QFETCH(QString, chain);
        const Failure failure = RaisedBy([&] { VkDocQueryData().WriteToXmlString(false, depth); });
        QCOMPARE(failure.Number(), 6);
        QCOMPARE(failure.Description(), theChain + QStringLiteral("WriteToXmlString]\r\n") +
                                            theChain + chain + QStringLiteral("Переполнение."));
    }

    void FileHoldsTheTextInItsCodePage() {
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("Запрос.qvk"));
        VkDocQueryData record;
        record.FileName = QStringLiteral("old");
        record.LastError = QStringLiteral("old");
        record.Notes = QStringLiteral("Ёж");
        QVERIFY(record.WriteToXmlFile(name));
        QCOMPARE(record.FileName, QStringLiteral("old"));
        QCOMPARE(record.LastError, QString());
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(
            bytes.startsWith("<?xml version=\"1.0\" encoding=\"windows-1251\"?>\r\n<VkDocQuery"));
        QVERIFY(bytes.contains("Notes=\"\xA8\xE6\" \r\n"));
        QVERIFY(bytes.endsWith("</VkDocQuery>\r\n"));
    }

    /// On a thread of its own, which has no files library yet.
    void LibraryOfAHostThatCannotBeMadeIsRaised() {
        ClassRegistry::Register(QStringLiteral("Vk_Lib.FilesLibrary"),
                                [] { return std::shared_ptr<Object>(); });
        Failure failure(0, QString(), QString());
        QString lastError;
        std::thread([&] {
            VkDocQueryData record;
            record.LastError = QStringLiteral("old");
            failure = RaisedBy([&] { record.WriteToXmlFile(QStringLiteral("x.qvk")); });
            lastError = record.LastError;
        }).join();
        QCOMPARE(failure.Number(), 429);
        QCOMPARE(failure.Description(),
                 theChain + QStringLiteral("WriteToXmlFile]\r\n[Vk_DocQuery::mVkLib.FilesLib]\r\n"
                                           "[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: "
                                           "Vk_Lib.FilesLibrary}\r\n[ClassRegistry]\r\n"
                                           "Не удалось создать объект класса "
                                           "\"Vk_Lib.FilesLibrary\"."));
        QCOMPARE(lastError, QString());
    }

    /// A host without a supplier, on a thread of its own: the character that no file can hold is
    /// told, and the file stays.
    void SavingNeedsNoSupplier() {
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        VkDocQueryData record;
        bool first = false;
        bool second = true;
        std::thread([&] {
            first = record.WriteToXmlFile(name);
            record.Notes = QChar(0x1A);
            second = record.WriteToXmlFile(name);
        }).join();
        QVERIFY(first);
        QVERIFY(!second);
        QCOMPARE(record.LastError, QStringLiteral("Символ U+001A нельзя сохранить в файле. "
                                                  "Уберите его из текста."));
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromLatin1(file.readAll()), NewRecordText());
    }

    void FailedWriteIsToldInThreeWays() {
        MemoryOffice::The().OnCall = [](const QString &aMember) {
            if (aMember == QStringLiteral("SaveTextToFile"))
                throw Failure(61, QStringLiteral("Files"), QStringLiteral("Диск полон."));
        };
        VkDocQueryData record;
        record.FileName = QStringLiteral("kept");
        QVERIFY(!record.WriteToXmlFile(QStringLiteral("x.qvk")));
        QCOMPARE(record.LastError, QStringLiteral("Диск полон."));
        QCOMPARE(record.FileName, QStringLiteral("kept"));

        QString message = QStringLiteral("before");
        QVERIFY(!record.WriteToFileSafe(QStringLiteral("x.qvk"), message));
        QCOMPARE(message, QStringLiteral("Диск полон."));

        const Failure failure = RaisedBy([&] { record.WriteToFile(QStringLiteral("x.qvk")); });
        QCOMPARE(failure.Number(), 1001);
        QCOMPARE(failure.Source(), QString());
        QCOMPARE(failure.Description(),
                 theChain + QStringLiteral("WriteToFile]\r\nОшибка сохранения критериев поиска "
                                           "\"x.qvk\":\r\nДиск полон."));

        MemoryOffice::The().OnCall = nullptr;
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("x.qvk"));
        message = QStringLiteral("before");
        QVERIFY(record.WriteToFileSafe(name, message));
        QCOMPARE(message, QStringLiteral("before"));
        QCOMPARE(record.LastError, QString());
        record.WriteToFile(name);
        QVERIFY(QFile::exists(name));
    }
};

VK_TEST_CLASS(TestDocQueryWriter);

#include "TestDocQueryWriter.moc"
