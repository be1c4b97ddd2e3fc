#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "OneRecord.h"
#include "Schema.h"
#include "SmallOffice.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

void WriteFile(const QString &aPath, const QByteArray &aBytes) {
    QFile file(aPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size()) qFatal("no file");
}

/// A connection past the library that holds the file for itself.
class Holder {
public:
    explicit Holder(const QString &aPath) {
        theDatabase =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("holder"));
        theDatabase.setDatabaseName(aPath);
        if (!theDatabase.open()) qFatal("no database");
        if (!QSqlQuery(theDatabase).exec(QStringLiteral("BEGIN EXCLUSIVE"))) qFatal("no lock");
    }
    ~Holder() {
        theDatabase.close();
        theDatabase = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("holder"));
    }
    Q_DISABLE_COPY_MOVE(Holder)

private:
    QSqlDatabase theDatabase;
};

struct ThrowingReader {
    using Columns = qint64;
    explicit ThrowingReader(std::size_t = 1) {}
    void operator()(const Vk_Records::Row &, qint64 &) {
        throw Failure(7, QString(), QStringLiteral("in the middle"));
    }
};

}  // namespace

/// Databases that cannot be used, and databases that go bad while they are.
class TestBadDatabases : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        // Others must reach what is in the folder for their rights there to matter.
        QFile::setPermissions(theFolder.Path(QString()), QFileDevice::Permissions(0x7755));
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void WaitForALockIsBounded() {
        OpenSmallOffice(theFolder);
        QSqlQuery query =
            Vk_Records::ThisThreadsConnection().Run(QStringLiteral("PRAGMA busy_timeout"));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toInt(), 2500);
    }

    void MissingFolder() {
        const QString path = theFolder.Path(QStringLiteral("absent/office.db"));
        CheckOpening(
            path, Vk_Records::DatabaseUnreachable,
            QStringLiteral("База данных \"%1\" не открыта: нет папки \"%2\". Создайте папку, "
                           "подключите диск с базой или укажите другое место базы.")
                .arg(path, theFolder.Path(QStringLiteral("absent"))));
        QVERIFY(!QFile::exists(theFolder.Path(QStringLiteral("absent"))));
    }

    void LinkThatLeadsNowhere_data() {
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("reason");
        const QString noFolder = QStringLiteral(
            "нет папки \"%1/drive\". Создайте папку, подключите диск с базой или укажите другое "
            "место базы.");
        const QString noFile = QStringLiteral(
            "это ссылка на файл \"%1/there.db\", которого нет. Подключите диск с базой или "
            "исправьте ссылку.");
        QTest::newRow("no folder")
            << QStringLiteral("a.db") << QStringLiteral("drive/there.db") << noFolder;
        QTest::newRow("no file") << QStringLiteral("b.db") << QStringLiteral("there.db") << noFile;
        QTest::newRow("by way of another link")
            << QStringLiteral("c.db") << QStringLiteral("a.db") << noFolder;
    }
    void LinkThatLeadsNowhere() {
        QFETCH(QString, link);
        QFETCH(QString, target);
        QFETCH(QString, reason);
        const QString folder = theFolder.Path(QStringLiteral("links"));
        QDir().mkdir(folder);
        QFile::link(QStringLiteral("drive/there.db"), folder + QStringLiteral("/a.db"));
        const QString path = folder + u'/' + link;
        QFile::link(target, path);
        for (int i = 0; i < 2; ++i) {
            CheckOpening(
                path, Vk_Records::DatabaseUnreachable,
                QStringLiteral("База данных \"%1\" не открыта: %2").arg(path, reason.arg(folder)));
        }
        QVERIFY(QFileInfo(path).isSymLink());
        QVERIFY(!QFile::exists(path));
        QVERIFY(!QFile::exists(folder + QStringLiteral("/drive")));
    }

    void FolderInTheLinkThatLeadsNowhere() {
        const QString folder = theFolder.Path(QStringLiteral("linked"));
        QVERIFY(QFile::link(QStringLiteral("/no such drive"), folder));
        const QString path = folder + QStringLiteral("/office.db");
        CheckOpening(path, Vk_Records::DatabaseUnreachable,
                     QStringLiteral("База данных \"%1\" не открыта: нет папки \"/no such drive\". "
                                    "Создайте папку, подключите диск с базой или укажите другое "
                                    "место базы.")
                         .arg(path));
    }

    void FolderThatMayNotBeEntered() {
        const QString folder = theFolder.Path(QStringLiteral("shut"));
        QVERIFY(QDir().mkdir(folder));
        QFile::setPermissions(folder, QFileDevice::Permissions());
        const QString path = folder + QStringLiteral("/office.db");
        const AsNobody unprivileged;
        CheckOpening(path, Vk_Records::DatabaseUnreachable,
                     QStringLiteral("Нет прав на работу с базой данных \"%1\". Попросите "
                                    "администратора дать права или укажите другую базу.")
                         .arg(path));
    }

    void NothingIsMadeUnasked() {
        const QString path = theFolder.Path(QStringLiteral("unasked.db"));
        const QString address = QStringLiteral("sqlite:") + path;
        CheckRefusal([&] { Vk_Records::OpenDatabase(address); }, Vk_Records::DatabaseEmpty,
                     QStringLiteral("База данных \"%1\" не открыта: такого файла нет. Исправьте "
                                    "адрес; новую базу создает программа vk_make_office.")
                         .arg(path));
        QVERIFY(!QFile::exists(path));
        WriteFile(path, QByteArray());
        CheckRefusal([&] { Vk_Records::OpenDatabase(address); }, Vk_Records::DatabaseEmpty,
                     QStringLiteral("База данных \"%1\" пуста. Заполните ее программой "
                                    "vk_make_office или укажите другую базу.")
                         .arg(path));
        QCOMPARE(QFileInfo(path).size(), 0);
    }

    void GoneWhileOpen() {
        const QString path = OpenOffice();
        QVERIFY(QFile::remove(path));
        Failure failure(0, QString(), QString());
        std::thread([&] {
            failure = RaisedBy([] {
                Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
            });
        }).join();
        QCOMPARE(failure.Description(),
                 QStringLiteral("Файла базы данных \"%1\" больше нет: его удалили или "
                                "переименовали, либо диск отключен. Верните файл на место и "
                                "повторите.")
                     .arg(path));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseUnreachable));
        QVERIFY(!QFile::exists(path));
    }

    void FailureWithinARowFreesTheStatement() {
        const QString path = OpenOffice();
        auto &connection = Vk_Records::ThisThreadsConnection();
        const auto failure = RaisedBy([&] {
            connection.Read("SELECT id FROM person", {}, [](const Vk_Records::Row &) {
                throw Failure(7, QString(), QStringLiteral("in the middle"));
            });
        });
        QCOMPARE(failure.Number(), 7);
        const Holder holder(path);  // stops the test if the database is locked
    }

    void FailureWithinOneRecordFreesTheStatement() {
        const QString path = OpenOffice();
        static constexpr char sql[] = "SELECT id FROM person WHERE id >= ? ORDER BY id";
        qint64 columns = 0;
        const auto failure = RaisedBy(
            [&] { Vk_Records::ReadOne<ThrowingReader>(sql, u"Vk_Records.VkPerson", 1, columns); });
        QCOMPARE(failure.Number(), 7);
        const Holder holder(path);  // stops the test if the database is locked
    }

    void FolderInPlaceOfAFile() {
        const QString path = theFolder.Path(QStringLiteral("folder.db"));
        QVERIFY(QDir().mkdir(path));
        CheckOpening(
            path, Vk_Records::DatabaseForeign,
            QStringLiteral("База данных \"%1\" не открыта: это папка, а не файл. Укажите файл "
                           "базы.")
                .arg(path));
    }

    void NotARegularFile_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("pipe") << theFolder.Path(QStringLiteral("pipe.db"));
        QTest::newRow("device") << QStringLiteral("/dev/zero");
    }
    void NotARegularFile() {
        QFETCH(QString, path);
        if (!QFile::exists(path)) QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0666), 0);
        CheckOpening(path, Vk_Records::DatabaseForeign,
                     QStringLiteral("База данных \"%1\" не открыта: это не обычный файл, а канал "
                                    "или устройство. Укажите файл базы.")
                         .arg(path));
        QVERIFY(QFile::exists(path));
    }

    void NoRightToTheFolder() {
        const QString folder = theFolder.Path(QStringLiteral("closed"));
        QVERIFY(QDir().mkdir(folder));
        QFile::setPermissions(folder, QFileDevice::Permissions(0x5555));
        const QString path = folder + QStringLiteral("/office.db");
        const AsNobody unprivileged;
        CheckOpening(path, Vk_Records::DatabaseUnreachable,
                     Forbidden(path, "unable to open database file"));
    }

    void NoRightToTheFile() {
        const QString path = NewOffice();
        QFile::setPermissions(path, QFileDevice::Permissions());
        const AsNobody unprivileged;
        CheckOpening(path, Vk_Records::DatabaseUnreachable,
                     Forbidden(path, "unable to open database file"));
    }

    void FileThatCanOnlyBeRead() {
        const QString path = NewOffice();
        QFile::setPermissions(path, QFileDevice::Permissions(0x4444));
        const AsNobody unprivileged;
        Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + path);
        QCOMPARE(
            Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0)->Count(),
            5);
        Vk_Records::CloseDatabase();
    }

    void EmptyFileThatCanOnlyBeRead() {
        const QString path = theFolder.Path(QStringLiteral("empty.db"));
        WriteFile(path, QByteArray());
        QFile::setPermissions(path, QFileDevice::Permissions(0x4444));
        const AsNobody unprivileged;
        CheckOpening(path, Vk_Records::DatabaseUnreachable,
                     Forbidden(path, "attempt to write a readonly database"));
        QVERIFY(QFile::exists(path));
    }

    void NotADatabase_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("text") << QByteArray("Это не база данных, а текст. ").repeated(100);
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("head cut short") << QByteArray("SQLite format 3");
    }
    void NotADatabase() {
        QFETCH(QByteArray, bytes);
        const QString path = theFolder.Path(QStringLiteral("text.db"));
        WriteFile(path, bytes);
        CheckOpening(path, Vk_Records::DatabaseForeign,
                     QStringLiteral("Файл \"%1\" не является базой данных. Укажите другой файл или "
                                    "восстановите базу из резервной копии.")
                         .arg(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), bytes);
    }

    void DatabaseOfAnotherProgram() {
        const QString address = theFolder.NewAddress();
        theFolder.Tamper(address, {QStringLiteral("CREATE TABLE album (id INTEGER)")});
        const QString path = theFolder.Shown(address);
        CheckOpening(
            path, Vk_Records::DatabaseForeign,
            QStringLiteral("База данных \"%1\" создана другой программой. Укажите другую базу.")
                .arg(path));
        QCOMPARE(theFolder.Tamper(address, {QStringLiteral("SELECT count(*) FROM sqlite_master")})
                     .toInt(),
                 1);
    }

    void NewerSchema_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << QStringLiteral("newer.db");
        QTest::newRow("marks of a text") << QStringLiteral("%3 %2 %1.db");
    }
    void NewerSchema() {
        QFETCH(QString, name);
        const QString path = theFolder.Path(name);
        QVERIFY(QFile::rename(NewOffice(), path));
        theFolder.Tamper(QStringLiteral("sqlite:") + path,
                         {QStringLiteral("UPDATE vk_schema SET version = 7")});
        CheckOpening(
            path, Vk_Records::DatabaseTooNew,
            QStringLiteral("База данных \"%1\" создана более новой версией программы (версия "
                           "базы 7, программа понимает версию 3). Обновите программу.")
                .arg(path));
    }

    void SchemaWithoutVersion() {
        const QString path = NewOffice();
        theFolder.Tamper(QStringLiteral("sqlite:") + path,
                         {QStringLiteral("DELETE FROM vk_schema")});
        CheckOpening(
            path, Vk_Records::DatabaseDamaged,
            QStringLiteral("База данных \"%1\" повреждена: в ней нет номера версии. Восстановите "
                           "ее из резервной копии.")
                .arg(path));
    }

    void LockedAtOpening() {
        const QString path = NewOffice();
        const Holder holder(path);
        CheckOpening(path, Vk_Records::DatabaseBusy, Busy(path));
    }

    void LockedWhileRunning() {
        const QString path = OpenOffice();
        const auto person = Made<VkPerson>(u"Vk_Records.VkPerson");
        {
            const Holder holder(path);
            CheckRefusal([&] { person->SetID(1); }, Vk_Records::DatabaseBusy, Busy(path));
        }
        person->SetID(1);
        QCOMPARE(person->Inn(), QStringLiteral("7701000001"));
    }

    void TableGoneWhileRunning() {
        const QString path = OpenOffice();
        const auto person = Made<VkPerson>(u"Vk_Records.VkPerson");
        person->SetID(1);
        theFolder.Tamper(QStringLiteral("sqlite:") + path,
                         {QStringLiteral("ALTER TABLE person RENAME TO elsewhere")});
        const QString text = (Damaged(path) + Said(QStringLiteral("no such table: person")));
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        CheckRefusal([&] { persons->GetPersons(QString(), 0); }, Vk_Records::DatabaseDamaged, text);
        CheckRefusal([&] { person->SetID(2); }, Vk_Records::DatabaseDamaged, text);
        QCOMPARE(person->ID(), 1.0);
        theFolder.Tamper(QStringLiteral("sqlite:") + path,
                         {QStringLiteral("ALTER TABLE elsewhere RENAME TO person")});
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
    }

    void PagesOverwritten() {
        const QString path = NewOffice();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const qint64 page = 4096;
        QVERIFY(file.seek(page));
        file.write(QByteArray(static_cast<int>(file.size() - page), '\x5a'));
        file.close();
        const Failure failure = RaisedBy([&] {
            Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + path);
            Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
        });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseDamaged));
        QCOMPARE(failure.Description(),
                 Damaged(path) + Said(QStringLiteral("database disk image is malformed")));
    }

    void RefusedStatement() {
        const QString path = OpenOffice();
        CheckRefusal(
            [] {
                Vk_Records::ThisThreadsConnection().Run(
                    QStringLiteral("UPDATE person SET is_main = 2 WHERE id = 1"));
            },
            Vk_Records::DatabaseQueryFailed,
            QStringLiteral("База данных \"%1\" не выполнила запрос. Обратитесь к администратору.")
                    .arg(path) +
                Said(QStringLiteral("CHECK constraint failed: is_main IN (0, 1)")));
    }

    void FillingIsAllOrNothing() {
        // The disk is full for this file after a few pages.
        const QString address = theFolder.NewAddress();
        const QString path = theFolder.Shown(address);
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
        rlimit small = before;
        small.rlim_cur = 20000;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const Failure failure = RaisedBy(
            [&] { Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice); });
        setrlimit(RLIMIT_FSIZE, &before);
        signal(SIGXFSZ, oldHandler);
        QCOMPARE(failure.Description(),
                 QStringLiteral("База данных \"%1\" не читается с диска или не записывается на "
                                "него. Проверьте диск, сеть и место, отведенное на диске, и "
                                "повторите.\r\nСообщение базы данных: disk I/O error")
                     .arg(path));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseDiskFailed));
        QCOMPARE(QFileInfo(path).size(), 0);
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice);
        QVERIFY(Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")
                    ->GetPersons(QString(), 0)
                    ->Count() >= 60);
    }

    void NoRoomForTheTables() {
        const QString address = theFolder.NewAddress();
        const QString path = theFolder.Shown(address);
        {
            Vk_Records::Connection connection(Vk_Records::AddressOf(address),
                                              Vk_Records::MissingFile::IsMade);
            connection.Run(QStringLiteral("PRAGMA max_page_count = 5"));
            CheckRefusal(
                [&] { Vk_Records::MakeOffice(connection, [](Vk_Records::Connection &) {}); },
                Vk_Records::DatabaseFull,
                QStringLiteral("На диске с базой данных \"%1\" не осталось места. Освободите место "
                               "и повторите.")
                    .arg(path));
        }
        QCOMPARE(theFolder.Tamper(address, {QStringLiteral("SELECT count(*) FROM sqlite_master")})
                     .toInt(),
                 0);
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice);
    }

    void CompiledFileMissing() {
        const QString address = theFolder.NewAddress();
        Q_CLEANUP_RESOURCE(records);
        const Failure failure = RaisedBy(
            [&] { Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice); });
        Q_INIT_RESOURCE(records);
        QCOMPARE(
            failure.Description(),
            QStringLiteral("В программе нет файла \"sql/schema_2.sql\". Установите ее заново."));
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseQueryFailed));
        QCOMPARE(QFileInfo(theFolder.Shown(address)).size(), 0);
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::WithSampleOffice);
    }

private:
    QString NewOffice() {
        QString path = OpenOffice();
        Vk_Records::CloseDatabase();
        return path;
    }
    QString OpenOffice() { return theFolder.Shown(OpenSmallOffice(theFolder)); }
    static QString Forbidden(const QString &aPath, const char *aDetail) {
        return QStringLiteral(
                   "Нет прав на работу с базой данных \"%1\". Попросите администратора дать "
                   "права или укажите другую базу.")
                   .arg(aPath) +
               Said(QString::fromLatin1(aDetail));
    }
    static QString Damaged(const QString &aPath) {
        return QStringLiteral("База данных \"%1\" повреждена. Восстановите ее из резервной копии.")
            .arg(aPath);
    }
    static QString Busy(const QString &aPath) {
        return QStringLiteral(
                   "База данных \"%1\" занята другой программой. Дождитесь, пока та закончит "
                   "работу, и повторите.")
            .arg(aPath);
    }
    static void CheckRefusal(const std::function<void()> &aBody, qint32 aNumber,
                             const QString &aText) {
        const Failure failure = RaisedBy(aBody);
        QCOMPARE(failure.Description(), aText);
        QCOMPARE(failure.Number(), aNumber);
    }
    static void CheckOpening(const QString &aPath, qint32 aNumber, const QString &aText) {
        CheckRefusal(
            [&] {
                Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + aPath,
                                         Vk_Records::NewDatabase::WithSampleOffice);
            },
            aNumber, aText);
    }

    SqliteFolder theFolder;
};

VK_TEST_CLASS(TestBadDatabases);

#include "TestBadDatabases.moc"
