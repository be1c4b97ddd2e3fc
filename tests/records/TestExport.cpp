#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <Vk_Records/Database.h>

#include "ExportOffice.h"
#include "ImportFolder.h"
#include "SmallOffice.h"
#include "StoredOffice.h"
#include "support/SystemCalls.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

struct WrittenFile {
    const char *Name;
    const char *Text;
};

/// The small office as files; the mark and the line ends are added.
constexpr WrittenFile theWritten[] = {
    {"categories.csv",
     "templ_type_id;category_id;stream_type;allowed_for_main;allowed_for_branch\n"
     "21;1;4;1;0\n21;2;1;0;1\n"},
    {"forms.csv",
     "id;knd;short_name;is_excluded;icon_key\n"
     "21;1151001;НДС;0;doc_blank\n22;1151006;Прибыль;1;\n23;;Письмо;0;doc\n"
     "24;1151111;РСВ;0;doc_blank\n"},
    {"names.csv", "templ_type_id;name_order;full_name\n21;1;Первое имя\n21;2;Второе имя\n21;3;\n"},
    {"periods.csv", "templ_type_id;the_year;month_id\n21;2019;18\n21;2020;13\n"},
    {"persons.csv",
     "id;kind;inn;kpp;display_name;owner_name;is_main;parent_id\n"
     "1;1;7701000001;770101001;\"ООО \"\"Ромашка\"\"\";\"Ромашка, ООО\";1;\n"
     "2;2;7701000001;770243001;\"ООО \"\"Ромашка\"\", филиал\";\"Ромашка, филиал\";0;1\n"
     "3;3;770300000003;;ИП Иванов И. И.;Иванов И. И.;0;\n"
     "4;1;7704000004;770401001;\"АО \"\"Василёк\"\"\";\"Василёк, АО\";0;\n"
     "5;2;7704000004;770443001;\"АО \"\"Василёк\"\", филиал\";\"Василёк, филиал\";0;4\n"},
    {"stream_types.csv",
     "id;name;icon_key\n"
     "1;Отчетность в ИФНС;acc_stream\n2;\"РСВ, НДФЛ и отчетность в ПФР\";acc_stream_pfr\n"
     "3;Отчетность в Росстат;acc_stream_rs\n4;Страховые взносы в ФСС;acc_stream_ind\n"
     "5;Отчетность в Росалкогольрегулирование;acc_stream_alc\n"
     "6;Отчетность в Росприроднадзор;acc_stream_tech\n7;Госрегистрация;acc_stream_reg\n"
     "8;Отчетность охотничьего хозяйства;acc_stream_hunthub\n"
     "9;Отчетность организаций финансового рынка;acc_stream_tech\n"},
    {"streams.csv",
     "id;person_id;type_id;display_name;kpp;office_codes;is_closed\n"
     "11;1;1;ИФНС;770101001;\"7701, 7702\";0\n12;1;2;ПФР;770101009;087-101;1\n"
     "13;3;3;Росстат;;77-01;0\n15;5;9;Финансовый рынок;770443001;45;0\n"},
    {"versions.csv",
     "id;templ_type_id;beg_date;end_date;display_name;icon_key\n"
     "31;21;2015-01-01;2018-12-31;НДС 1;doc_archived\n32;21;2019-01-01;;НДС 2;doc_blank\n"
     "33;22;;2016-06-30;Прибыль 1;\n34;23;;;Письмо 1;doc\n"},
};

/// A disk that refuses a call on the files of a folder with that code. False where no such disk can
/// be had.
bool OnBadDisk(const QString &aFolder, long aCall, int aCode, const std::function<void()> &aBody) {
    return WithCalls(
        {aCall},
        [&](const Call &call) {
            const auto file = QStringLiteral("/proc/self/fd/%1").arg(call.Arguments[0]);
            return QFileInfo(file).symLinkTarget().startsWith(aFolder + u'/') ? aCode : 0;
        },
        aBody);
}

}  // namespace

/// The tables of an office as files.
class TestExport : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void WritesEveryTable_data() { OfficeFolders::AddKinds(); }
    void WritesEveryTable() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QTemporaryDir place;
        const QString files = place.filePath(QStringLiteral("new"));
        Vk_Records::ExportOffice(OpenSmallOffice(folder), files);
        const auto written = FilesIn(files);
        QCOMPARE(written.size(), qsizetype(std::size(theWritten)));
        for (const WrittenFile &file : theWritten) {
            QCOMPARE(written.value(QString::fromLatin1(file.Name)),
                     "\xEF\xBB\xBF" + QByteArray(file.Text).replace("\n", "\r\n"));
        }
    }

    void OfficeOfAnEarlierVersion() {
        const QTemporaryDir files;
        Vk_Records::ExportOffice(StoredOffice(theFiles, 1), files.path());
        QCOMPARE(FilesIn(files.path()).size(), 8);
    }

    void OnlyAnOfficeIsWritten_data() {
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<int>("number");
        QTest::newRow("nothing") << QStringList{QStringLiteral("PRAGMA user_version = 1")}
                                 << int(Vk_Records::DatabaseEmpty);
        QTest::newRow("other tables") << QStringList{QStringLiteral("CREATE TABLE t (a)")}
                                      << int(Vk_Records::DatabaseForeign);
    }
    void OnlyAnOfficeIsWritten() {
        QFETCH(QStringList, statements);
        QFETCH(int, number);
        const QString address = theFiles.NewAddress();
        theFiles.Tamper(address, statements);
        const QTemporaryDir place;
        const QString files = place.filePath(QStringLiteral("new"));
        QCOMPARE(RaisedBy([&] { Vk_Records::ExportOffice(address, files); }).Number(),
                 qint32(number));
        QVERIFY(!QFile::exists(files));
    }

    void DiskThatRefuses_data() {
        QTest::addColumn<int>("call");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("reason");
        const QString full = QStringLiteral("на диске не осталось места.");
        const QString other = QStringLiteral("проверьте права на папку и диск.");
        QTest::newRow("full") << int(SYS_write) << ENOSPC << full;
        QTest::newRow("full at last") << int(SYS_fsync) << ENOSPC << full;
        QTest::newRow("broken") << int(SYS_write) << EIO << other;
        QTest::newRow("broken at last") << int(SYS_fsync) << EIO << other;
    }
    /// Half of a file never takes the place of a whole one, nor do some of the files that of all.
    void DiskThatRefuses() {
        QFETCH(int, call);
        QFETCH(int, code);
        QFETCH(QString, reason);
        const QString address = OpenSmallOffice(theFiles);
        Vk_Records::CloseDatabase();
        const ImportFolder files;
        const auto before = FilesIn(files.Path());
        Failure failure(0, QString(), QString());
        if (!OnBadDisk(files.Path(), call, code, [&] {
                failure = RaisedBy([&] { Vk_Records::ExportOffice(address, files.Path()); });
            }))
            QSKIP("no such disk here");
        QCOMPARE(
            failure.Description(),
            QStringLiteral("Файл \"%1/stream_types.csv\" не записан: %2 Прежние файлы остались "
                           "как были.")
                .arg(files.Path(), reason));
        QCOMPARE(FilesIn(files.Path()), before);
    }

    void FolderThatCannotBeMade() {
        const QString address = OpenSmallOffice(theFiles);
        for (const QString &folder :
             {QStringLiteral("/no-such-folder/files"), theFiles.Shown(address)}) {
            QCOMPARE(
                RaisedBy([&] { Vk_Records::ExportOffice(address, folder); }).Description(),
                QStringLiteral("Папки \"%1\" нет, и создать ее не удалось. Проверьте имя папки "
                               "и права.")
                    .arg(folder));
        }
    }

    void TableUnderAnotherName() {
        const QString address = OpenSmallOffice(theFiles);
        const ImportFolder files;
        files.Write(QStringLiteral("Forms.tsv"), "x");
        const auto before = FilesIn(files.Path());
        QCOMPARE(RaisedBy([&] { Vk_Records::ExportOffice(address, files.Path()); }).Description(),
                 QStringLiteral("В папке \"%1\" уже есть файл \"Forms.tsv\". Укажите другую папку "
                                "или уберите его.")
                     .arg(files.Path()));
        QCOMPARE(FilesIn(files.Path()), before);
    }

private:
    OfficeFolders theFolders;
    SqliteFolder theFiles;
};

VK_TEST_CLASS(TestExport);

#include "TestExport.moc"
