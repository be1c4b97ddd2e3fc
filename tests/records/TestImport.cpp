#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <Vk_Records/Database.h>

#include "ExportOffice.h"
#include "ImportFolder.h"
#include "ImportOffice.h"
#include "LargeOffice.h"
#include "SmallOffice.h"
#include "StoredOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theWaitMs = 20000;

/// What a folder is told to hold and what is said about it: parts of a line are parted by "|".
struct BadFile {
    const char *Row;
    const char *Name;
    QByteArray Text;
    const char *Complaints;
};

QByteArray Head(const char *aName) {
    const QByteArray first = ImportFolder::First(QString::fromLatin1(aName));
    return first.left(first.indexOf('\n') + 1);
}

/// The first file and a line more.
QByteArray With(const char *aName, const char *aLine) {
    return ImportFolder::First(QString::fromLatin1(aName)) + aLine + '\n';
}

const QString theFacts = QStringLiteral(
    "SELECT id || '|' || kind || '|' || inn || '|' || kpp || '|' || display_name || '|' || "
    "owner_name || '|' || is_main || '|' || coalesce(parent_id, 0) || '|' || "
    "coalesce(parent_kind, 0) FROM person WHERE id = 2");

}  // namespace

/// An office that is made of files.
class TestImport : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void WhatWasWrittenIsReadAgain_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        for (const char *from : {"sqlite", "postgresql"}) {
            for (const char *to : {"sqlite", "postgresql"})
                QTest::addRow("%s to %s", from, to)
                    << QString::fromLatin1(from) << QString::fromLatin1(to);
        }
    }
    void WhatWasWrittenIsReadAgain() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        OfficeFolder &source = theFolders.Of(from);
        OfficeFolder &target = theFolders.Of(to);
        for (const OfficeFolder *folder : {&source, &target}) {
            if (!folder->Complaint().isEmpty()) QSKIP(qUtf8Printable(folder->Complaint()));
        }
        const QString address = OpenSmallOffice(source);
        Vk_Records::CloseDatabase();
        source.Tamper(address,
                      {QStringLiteral("INSERT INTO acc_stream_type VALUES (10, 'Свой; вид', '')"),
                       QStringLiteral("DELETE FROM acc_stream_type WHERE id = 8"),
                       QStringLiteral("UPDATE person SET display_name = ' \"А\";\t, \r\n\n𝄞 "
                                      "\\n ''' WHERE id = 1"),
                       QStringLiteral("UPDATE templ_type SET short_name = '\"' WHERE id = 22"),
                       QStringLiteral("UPDATE acc_stream SET type_id = 10 WHERE id = 11"),
                       QStringLiteral("INSERT INTO person VALUES (2147483647, 3, '', '', '', '', "
                                      "0, NULL, NULL)")});
        const QTemporaryDir files;
        Vk_Records::ExportOffice(address, files.path());
        const QString made = target.NewAddress();
        Vk_Records::ImportOffice(made, files.path());
        const QTemporaryDir again;
        Vk_Records::ExportOffice(made, again.path());
        QCOMPARE(FilesIn(again.path()).size(), 8);
        QCOMPARE(FilesIn(again.path()), FilesIn(files.path()));
        if (from == to) QCOMPARE(ContentsOf(target, made), ContentsOf(source, address));
        Vk_Records::OpenDatabase(made);
    }

    void TakesEveryWriting_data() {
        QTest::addColumn<QByteArray>("text");
        const QByteArray plain = Head("persons.csv") +
                                 "1;1;77;78;А;Б;1;\n"
                                 "2;2;77;79;В;Г;0;1\n";
        const auto with = [&](const char *aOld, const char *aNew) {
            return QByteArray(plain).replace(aOld, aNew);
        };
        QTest::newRow("plain") << plain;
        QTest::newRow("commas") << with(";", ",");
        QTest::newRow("tabs") << with(";", "\t");
        QTest::newRow("mark") << "\xEF\xBB\xBF" + plain;
        QTest::newRow("CR LF") << with("\n", "\r\n");
        QTest::newRow("CR") << with("\n", "\r");
        QTest::newRow("no line end at last") << plain.chopped(1);
        QTest::newRow("empty lines") << "\n" + with("\n", "\n\n;;;;;;;\n");
        QTest::newRow("quotes") << with(";В;", ";\"В\";").replace("id;kind", "\"id\";\"kind\"");
        QTest::newRow("blanks around numbers")
            << with("2;2;", " 2 ;2 ;").replace(";0;1", "; 0; 1 ");
        QTest::newRow("capitals in the heading") << with("inn", "Inn ");
        QTest::newRow("branch first")
            << Head("persons.csv") + "2;2;77;79;В;Г;0;1\n1;1;77;78;А;Б;1;\n";
        QTest::newRow("other order") << QByteArray(
            "parent_id;is_main;owner_name;display_name;kpp;inn;kind;id\n"
            ";1;Б;А;78;77;1;1\n1;0;Г;В;79;77;2;2\n");
        QTest::newRow("separators in quotes") << with("А;Б", "\"А;,\t\";\"Б\"\"\r\n\"");
        QTest::newRow("quote within a cell") << with(";А;", ";А \"Б\";");
    }
    void TakesEveryWriting() {
        QFETCH(QByteArray, text);
        const ImportFolder files;
        files.Write(QStringLiteral("persons.csv"), text);
        files.Write(QStringLiteral("streams.csv"), Head("streams.csv"));
        const QString address = theFiles.NewAddress();
        Vk_Records::ImportOffice(address, files.Path());
        QCOMPARE(theFiles.Tamper(address, {theFacts}).toString(),
                 QStringLiteral("2|2|77|79|В|Г|0|1|1"));
        QCOMPARE(theFiles.Tamper(address, {QStringLiteral("SELECT count(*) FROM person")}).toInt(),
                 2);
    }

    void KeepsWhatStandsInQuotes() {
        const ImportFolder files;
        files.Write(
            QStringLiteral("names.csv"),
            Head("names.csv") + "21;1;\"А \"\"Б\"\";\r\n\nВ\"\r\n21;2;\"\"\r\n21;3; Г \r\n");
        const QString address = theFiles.NewAddress();
        Vk_Records::ImportOffice(address, files.Path());
        QCOMPARE(theFiles
                     .Tamper(address, {QStringLiteral("SELECT group_concat(full_name, '|') FROM "
                                                      "templ_type_name ORDER BY name_order")})
                     .toString(),
                 QStringLiteral("А \"Б\";\r\n\nВ|| Г "));
    }

    void DaysAsASpreadsheetWritesThem() {
        const ImportFolder files;
        files.Write(QStringLiteral("versions.csv"),
                    Head("versions.csv") + "31;21;01.02.2019;31.12.2020;А;\n");
        const QString address = theFiles.NewAddress();
        Vk_Records::ImportOffice(address, files.Path());
        QCOMPARE(theFiles
                     .Tamper(address,
                             {QStringLiteral("SELECT beg_date || ' ' || end_date FROM template")})
                     .toString(),
                 QStringLiteral("2019-02-01 2020-12-31"));
    }

    void NamesOfFilesInAnyCase() {
        const ImportFolder files;
        files.Remove(QStringLiteral("persons.csv"));
        files.Write(QStringLiteral("Persons.TSV"),
                    ImportFolder::First(QStringLiteral("persons.csv")).replace(';', '\t'));
        const auto filled = Vk_Records::ImportOffice(theFiles.NewAddress(), files.Path());
        QCOMPARE(filled.constFirst().Name, QStringLiteral("Persons.TSV"));
        QCOMPARE(filled.constFirst().Rows, qsizetype(3));
    }

    void KindsOfStreamsOfItsOwn() {
        const ImportFolder files;
        files.Write(QStringLiteral("stream_types.csv"), "id;name;icon_key\n1;А;\n9;Б;org\n77;В;\n");
        const QString address = theFiles.NewAddress();
        Vk_Records::ImportOffice(address, files.Path());
        QCOMPARE(theFiles
                     .Tamper(address, {QStringLiteral("SELECT group_concat(id || name || icon_key)"
                                                      " FROM acc_stream_type")})
                     .toString(),
                 QStringLiteral("1А,9Бorg,77В"));
    }

    void BadFiles_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("complaints");
        const BadFile rows[] = {
            {"identity 0", "persons.csv", With("persons.csv", "0;1;;;;;0;"),
             "persons.csv, строка 5: столбец \"id\": нужно целое число от 1 до 2147483647, а стоит "
             "\"0\"."},
            {"identity too large", "streams.csv", With("streams.csv", "2147483648;1;1;;;;0"),
             "streams.csv, строка 4: столбец \"id\": нужно целое число от 1 до 2147483647, а стоит "
             "\"2147483648\"."},
            {"identity that is no number", "forms.csv", With("forms.csv", "1e3;;;0;"),
             "forms.csv, строка 3: столбец \"id\": нужно целое число от 1 до 2147483647, а стоит "
             "\"1e3\"."},
            {"no identity", "persons.csv", With("persons.csv", ";1;;;А;;0;"),
             "persons.csv, строка 5: столбец \"id\": нужно целое число от 1 до 2147483647, а стоит "
             "\"\"."},
            {"several in one line", "persons.csv", With("persons.csv", "x;4;;;;;да;-1"),
             "persons.csv, строка 5: столбец \"id\": нужно целое число от 1 до 2147483647, а стоит "
             "\"x\".|"
             "persons.csv, строка 5: столбец \"kind\": нужно 1, 2 или 3, а стоит \"4\".|"
             "persons.csv, строка 5: столбец \"is_main\": нужно 0 или 1, а стоит \"да\".|"
             "persons.csv, строка 5: столбец \"parent_id\": нужно целое число от 1 до 2147483647 "
             "или ничего, а стоит \"-1\"."},
            {"text too long", "persons.csv", With("persons.csv", "5;1;1234567890123;;;;0;"),
             "persons.csv, строка 5: столбец \"inn\": текст длиннее 12 знаков."},
            {"long cell", "periods.csv",
             With("periods.csv",
                  "21;2020;\"яяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяя\nэюя\""),
             "periods.csv, строка 3: столбец \"month_id\": нужно целое число от -2147483648 до "
             "2147483647, а стоит \"яяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяяя…\"."},
            {"no such day", "versions.csv", With("versions.csv", "32;21;2019-02-29;;;"),
             "versions.csv, строка 3: столбец \"beg_date\": нужна дата вида 2024-12-31 или "
             "31.12.2024 или ничего, а стоит \"2019-02-29\"."},
            {"ends before it begins", "versions.csv",
             With("versions.csv", "32;21;2019-01-02;01.01.2019;;"),
             "versions.csv, строка 3: beg_date позже, чем end_date."},
            {"branch of nobody", "persons.csv", With("persons.csv", "5;2;;;;;0;"),
             "persons.csv, строка 5: филиалу (kind 2) нужен parent_id."},
            {"parent of a private person", "persons.csv", With("persons.csv", "5;3;;;;;0;1"),
             "persons.csv, строка 5: parent_id бывает только у филиала (kind 2)."},
            {"branch of a branch", "persons.csv", With("persons.csv", "5;2;;;;;0;2"),
             "persons.csv, строка 5: столбец \"parent_id\": налогоплательщик с id 2 - не "
             "организация (kind 1)."},
            {"branch of one who is not there", "persons.csv", With("persons.csv", "5;2;;;;;0;9"),
             "persons.csv, строка 5: столбец \"parent_id\": в persons.csv нет id 9."},
            {"stream of one who is not there", "streams.csv", With("streams.csv", "13;7;1;;;;0"),
             "streams.csv, строка 4: столбец \"person_id\": в persons.csv нет id 7."},
            {"stream of no kind", "streams.csv", With("streams.csv", "13;1;10;;;;0"),
             "streams.csv, строка 4: столбец \"type_id\": в stream_types нет id 10."},
            {"name of no form", "names.csv", With("names.csv", "22;1;А"),
             "names.csv, строка 3: столбец \"templ_type_id\": в forms.csv нет id 22."},
            {"identity twice", "persons.csv", With("persons.csv", "1;1;;;;;0;\n1;3;;;;;0;"),
             "persons.csv, строка 5: id 1 уже есть в строке 2.|"
             "persons.csv, строка 6: id 1 уже есть в строке 2."},
            {"period twice", "periods.csv", With("periods.csv", "21;2020;14\n21;2020;13"),
             "periods.csv, строка 4: templ_type_id 21, the_year 2020, month_id 13 уже есть в "
             "строке 2."},
            {"too few cells", "forms.csv", With("forms.csv", "22;1;А;0"),
             "forms.csv, строка 3: ячеек 4, а столбцов 5."},
            {"too many cells", "forms.csv", With("forms.csv", "22;1;А;0;;"),
             "forms.csv, строка 3: ячеек 6, а столбцов 5."},
            {"open quote", "names.csv", With("names.csv", "21;2;\"А\n21;3;Б"),
             "names.csv, строка 3: кавычка в начале ячейки не закрыта до конца файла."},
            {"open quote, and rows behind it that others need", "forms.csv",
             Head("forms.csv") + "20;\"1;;0;\n21;;;0;\n",
             "forms.csv, строка 2: кавычка в начале ячейки не закрыта до конца файла."},
            {"text behind a quote", "names.csv", With("names.csv", "21;2;\"А\" Б\n21;x;В"),
             "names.csv, строка 3: за закрывающей кавычкой ячейки стоит текст. Кавычки внутри "
             "ячейки удваиваются.|"
             "names.csv, строка 4: столбец \"name_order\": нужно целое число от -2147483648 до "
             "2147483647, а стоит \"x\"."},
            {"line below a cell of two lines", "names.csv",
             With("names.csv", "21;2;\"А\r\nБ\"\n;;В"),
             "names.csv, строка 5: столбец \"templ_type_id\": нужно целое число от 1 до "
             "2147483647, а стоит \"\".|"
             "names.csv, строка 5: столбец \"name_order\": нужно целое число от -2147483648 до "
             "2147483647, а стоит \"\"."},
            {"not UTF-8", "names.csv", With("names.csv", "21;2;\xCF\xF0\n21;3;А\n21;4;\xE2"),
             "names.csv, строка 3: текст не в кодировке UTF-8. Сохраните файл в ней.|"
             "names.csv, строка 5: текст не в кодировке UTF-8. Сохраните файл в ней."},
            {"zero", "names.csv", Head("names.csv") + QByteArray("21;1;\0\n", 7),
             "names.csv, строка 2: в тексте стоит знак с кодом 0."},
            {"empty file", "names.csv", "",
             "names.csv: файл пуст: в нем нет строки с названиями столбцов."},
            {"empty file, and rows that need it", "persons.csv", "\xEF\xBB\xBF\r\n",
             "persons.csv: файл пуст: в нем нет строки с названиями столбцов."},
            {"missing column", "names.csv", "templ_type_id;full_name\n21;А\n",
             "names.csv, строка 1: нет столбца \"name_order\"."},
            {"unknown column", "names.csv", "templ_type_id;name_order;full_name;Язык\n21;1;А;ru\n",
             "names.csv, строка 1: неизвестный столбец \"язык\". Столбцы этого файла: "
             "templ_type_id, name_order, full_name."},
            {"column twice", "periods.csv", "templ_type_id;the_year;month_id;the_year\n21;1;1;1\n",
             "periods.csv, строка 1: столбец \"the_year\" повторяется."},
            {"no heading", "periods.csv", "21;2020;1\n",
             "periods.csv, строка 1: неизвестный столбец \"21\". Столбцы этого файла: "
             "templ_type_id, the_year, month_id.|"
             "periods.csv, строка 1: неизвестный столбец \"2020\". Столбцы этого файла: "
             "templ_type_id, the_year, month_id.|"
             "periods.csv, строка 1: неизвестный столбец \"1\". Столбцы этого файла: "
             "templ_type_id, the_year, month_id.|"
             "periods.csv, строка 1: нет столбца \"templ_type_id\".|"
             "periods.csv, строка 1: нет столбца \"the_year\".|"
             "periods.csv, строка 1: нет столбца \"month_id\"."},
            {"two files", "names.tsv", "templ_type_id\tname_order\tfull_name\n",
             "names.csv: таких файлов несколько (names.csv, names.tsv). Оставьте один."},
            {"bad kind of streams", "stream_types.csv", "id;name;icon_key\n1;А;\n9;Б;\nx;В;\n",
             "stream_types.csv, строка 4: столбец \"id\": нужно целое число от -2147483648 до "
             "2147483647, а стоит \"x\"."},
        };
        for (const BadFile &row : rows) {
            QTest::newRow(row.Row) << QString::fromLatin1(row.Name) << row.Text
                                   << QString::fromUtf8(row.Complaints).split(u'|');
        }
    }
    void BadFiles() {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        QFETCH(QStringList, complaints);
        const ImportFolder files;
        files.Write(name, text);
        CheckComplaints(files, complaints);
    }

    void ComplaintsOfAllFilesInTheirOrder() {
        const ImportFolder files;
        files.Write(QStringLiteral("categories.csv"), With("categories.csv", "21;1;4;1;0"));
        files.Write(QStringLiteral("streams.csv"), With("streams.csv", "11;9;1;;;;2"));
        files.Remove(QStringLiteral("names.csv"));
        CheckComplaints(
            files,
            {QStringLiteral("streams.csv, строка 4: столбец \"is_closed\": нужно 0 или 1, а стоит "
                            "\"2\"."),
             QStringLiteral("streams.csv, строка 4: id 11 уже есть в строке 2."),
             QStringLiteral("streams.csv, строка 4: столбец \"person_id\": в persons.csv нет id "
                            "9."),
             QStringLiteral("names.csv: файла нет. Если записей нет, нужен файл с одной строкой "
                            "названий столбцов."),
             QStringLiteral("categories.csv, строка 3: templ_type_id 21, category_id 1, "
                            "stream_type 4 уже есть в строке 2.")});
    }

    void FileThatCannotBeRead() {
        const ImportFolder files;
        files.Remove(QStringLiteral("names.csv"));
        QVERIFY(QDir(files.Path()).mkdir(QStringLiteral("names.csv")));
        CheckComplaints(files,
                        {QStringLiteral("names.csv: файл не читается. Проверьте права и диск.")});
    }

    void SoManyAsSomebodyCanRead() {
        const ImportFolder files;
        QByteArray text = Head("periods.csv");
        for (int i = 0; i < 150000; ++i) text += "21;x;1\n";
        files.Write(QStringLiteral("periods.csv"), text);
        const QStringList lines =
            RaisedBy([&] { Vk_Records::ImportOffice(theFiles.NewAddress(), files.Path()); })
                .Description()
                .split(u'\n');
        QCOMPARE(lines.size(), 1002);
        QCOMPARE(lines.first(), QStringLiteral("Ничего не загружено, ошибок в файлах: 150000."));
        QVERIFY(lines[1000].startsWith(QStringLiteral("periods.csv, строка 1001: ")));
        QCOMPARE(lines.last(), QStringLiteral("... и еще 149000."));
    }

    void OfficeThatIsThereIsLeftAlone_data() { OfficeFolders::AddKinds(); }
    void OfficeThatIsThereIsLeftAlone() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = OpenSmallOffice(folder);
        const QString before = ContentsOf(folder, address);
        const ImportFolder files;
        const Failure failure = RaisedBy([&] { Vk_Records::ImportOffice(address, files.Path()); });
        QCOMPARE(failure.Description(),
                 QStringLiteral("База данных \"%1\" уже есть. Укажите имя новой базы.")
                     .arg(folder.Shown(address)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseForeign));
        QCOMPARE(ContentsOf(folder, address), before);
    }

    void DatabaseThatAnotherProgramHolds_data() { OfficeFolders::AddKinds(); }
    void DatabaseThatAnotherProgramHolds() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        const ImportFolder files;
        Failure failure(0, QString(), QString());
        Hold(folder, address,
             [&] { failure = RaisedBy([&] { Vk_Records::ImportOffice(address, files.Path()); }); });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseBusy));
        QCOMPARE(failure.Description(),
                 QStringLiteral("База данных \"%1\" занята другой программой. Дождитесь, пока та "
                                "закончит работу, и повторите.")
                     .arg(folder.Shown(address)));
        Vk_Records::ImportOffice(address, files.Path());
    }

    void RefusedByTheDatabase() {
        OfficeFolder &folder = theFolders.Of(QStringLiteral("postgresql"));
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        folder.Tamper(address, {QStringLiteral("ALTER DATABASE %1 SET "
                                               "default_transaction_read_only = on")
                                    .arg(folder.Shown(address).section(u'/', -1))});
        const ImportFolder files;
        QCOMPARE(RaisedBy([&] { Vk_Records::ImportOffice(address, files.Path()); }).Number(),
                 qint32(Vk_Records::DatabaseUnreachable));
    }

    void KilledInTheMiddle_data() { OfficeFolders::AddKinds(); }
    void KilledInTheMiddle() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QTemporaryDir files;
        const QString source = theFiles.NewAddress();
        Vk_Records::MakeLargeOffice(source, {30000, 0, 0});
        Vk_Records::ExportOffice(source, files.path());
        const QString address = folder.NewAddress();
        QProcess program;
        program.start(QStringLiteral(VK_MAKE_OFFICE),
                      {QStringLiteral("--import"), files.path(), address});
        QVERIFY(program.waitForStarted(theWaitMs));
        const bool isFile = kind == QStringLiteral("sqlite");
        const QString journal = folder.Shown(address) + QStringLiteral("-journal");
        const auto isFilling = [&] {
            if (isFile) return QFile::exists(journal);
            return folder
                       .Tamper(
                           address,
                           {QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE query LIKE "
                                           "'EXECUTE%' AND datname = current_database()")})
                       .toInt() > 0;
        };
        while (!isFilling() && !program.waitForFinished(0)) {
        }
        QCOMPARE(program.state(), QProcess::Running);
        program.kill();
        QVERIFY(program.waitForFinished(theWaitMs));
        QCOMPARE(RaisedBy([&] { Vk_Records::OpenDatabase(address); }).Number(),
                 qint32(Vk_Records::DatabaseEmpty));
        const ImportFolder few;
        // A server takes a moment to give up.
        QVERIFY(QTest::qWaitFor([&] { return IsImported(address, few.Path()); }, theWaitMs));
        QCOMPARE(folder.Tamper(address, {QStringLiteral("SELECT count(*) FROM person")}).toInt(),
                 3);
    }

    void AtTheCommandLine_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("errors");
        const QString import = QStringLiteral("--import");
        const QString folder = QStringLiteral("FOLDER");
        QTest::newRow("good") << QStringList{import, folder} << 0
                              << QStringLiteral(
                                     "persons.csv: 3\nstreams.csv: 2\nforms.csv: 1\n"
                                     "versions.csv: 1\nnames.csv: 1\nperiods.csv: 1\n"
                                     "categories.csv: 1\n")
                              << QString();
        QTest::newRow("no folder")
            << QStringList{import, QStringLiteral("/no-such-folder")} << 1 << QString()
            << QStringLiteral("Папки \"/no-such-folder\" нет. Укажите папку с файлами записей.\n");
        QTest::newRow("two tasks")
            << QStringList{import, folder, QStringLiteral("--sample")} << 1 << QString()
            << QStringLiteral("Укажите что-то одно: --sample, --import.\n");
        QTest::newRow("with a size")
            << QStringList{import, folder, QStringLiteral("--forms"), QStringLiteral("5")} << 1
            << QString() << QStringLiteral("--forms не бывает вместе с --import.\n");
        QTest::newRow("export of nothing")
            << QStringList{QStringLiteral("--export"), folder} << 1 << QString()
            << QStringLiteral(
                   "База данных \"DATABASE\" не открыта: такого файла нет. Исправьте адрес; новую "
                   "базу создает программа vk_make_office.\n");
    }
    void AtTheCommandLine() {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, output);
        QFETCH(QString, errors);
        const ImportFolder files;
        const QString address = theFiles.NewAddress();
        arguments.replaceInStrings(QStringLiteral("FOLDER"), files.Path());
        QProcess program;
        program.start(QStringLiteral(VK_MAKE_OFFICE), arguments << address);
        QVERIFY(program.waitForFinished(theWaitMs));
        QCOMPARE(QString::fromUtf8(program.readAllStandardError()),
                 errors.replace(QStringLiteral("DATABASE"), theFiles.Shown(address)));
        QCOMPARE(QString::fromUtf8(program.readAllStandardOutput()), output);
        QCOMPARE(program.exitCode(), code);
        QCOMPARE(QFile::exists(theFiles.Shown(address)), code == 0);
    }

private:
    void CheckComplaints(const ImportFolder &aFiles, QStringList aComplaints) {
        const QString address = theFiles.NewAddress();
        const Failure failure = RaisedBy([&] { Vk_Records::ImportOffice(address, aFiles.Path()); });
        aComplaints.prepend(
            QStringLiteral("Ничего не загружено, ошибок в файлах: %1.").arg(aComplaints.size()));
        QCOMPARE(failure.Description().split(u'\n'), aComplaints);
        QCOMPARE(failure.Number(), qint32(InvalidArgument));
        QVERIFY(!QFile::exists(theFiles.Shown(address)));
    }

    static bool IsImported(const QString &aAddress, const QString &aFolder) {
        try {
            Vk_Records::ImportOffice(aAddress, aFolder);
            return true;
        } catch (const Failure &failure) {
            if (failure.Number() != Vk_Records::DatabaseBusy) qFatal("%s", failure.what());
            return false;
        }
    }

    /// Runs the body while another connection has begun to make an office there.
    template <class Body>
    static void Hold(const OfficeFolder &aFolder, const QString &aAddress, Body aBody) {
        const bool isFile = aAddress.startsWith(QStringLiteral("sqlite"));
        {
            QSqlDatabase holder = QSqlDatabase::addDatabase(
                isFile ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL"),
                QStringLiteral("holder"));
            holder.setDatabaseName(isFile ? aFolder.Shown(aAddress)
                                          : aFolder.Shown(aAddress).section(u'/', -1));
            holder.setHostName(isFile ? QString() : aAddress.section(u'=', -1));
            holder.setUserName(QStringLiteral("postgres"));
            if (!holder.open()) qFatal("no database");
            QSqlQuery query(holder);
            if (!query.exec(isFile ? QStringLiteral("BEGIN EXCLUSIVE") : QStringLiteral("BEGIN")) ||
                (!isFile && !query.exec(QStringLiteral("SELECT pg_advisory_xact_lock(286331153)"))))
                qFatal("no lock");
            aBody();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("holder"));
    }

    OfficeFolders theFolders;
    SqliteFolder theFiles;
};

VK_TEST_CLASS(TestImport);

#include "TestImport.moc"
