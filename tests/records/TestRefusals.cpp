#include <QSqlError>
#include <QTest>

#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "Refusals.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

const QString theShown = QStringLiteral("postgresql://u@server/office");

const char theNotAdmitted[] =
    "Сервер базы данных \"%1\" не пускает этого пользователя с этого компьютера. Попросите "
    "администратора сервера разрешить вход.";
const char thePassword[] =
    "Сервер базы данных \"%1\" не принял имя пользователя или пароль. Исправьте их в адресе базы.";
const char theCrowded[] =
    "Сервер базы данных \"%1\" не принимает новых подключений: их уже слишком много. Повторите "
    "позже или обратитесь к администратору сервера.";
const char theStarting[] =
    "Сервер базы данных \"%1\" запускается или останавливается. Повторите через минуту.";
const char theSecure[] =
    "Защищенное соединение с сервером базы данных \"%1\" не установлено. Проверьте параметры "
    "защиты в адресе базы и сертификаты или обратитесь к администратору сервера.";
const char theRefused[] =
    "Сервер базы данных \"%1\" отказал в подключении. Обратитесь к администратору сервера.";
const char theAbsent[] =
    "Сервер базы данных \"%1\" не отвечает. Проверьте адрес, сеть и работу сервера.";

struct Words {
    const char *Text;
    const char *Said;   ///< what the client library says, to the letter
    const char *Shown;  ///< what is shown of it
};

/// What no server of a test can be made to say, and the client library's own words.
const Words theWords[] = {
    {theStarting,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: FATAL:  the database system "
     "is starting up\n",
     "the database system is starting up"},
    {theStarting,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: ВАЖНО:  система баз "
     "данных запускается\n",
     "система баз данных запускается"},
    {theStarting,
     "connection to server on socket \"/run/.s.PGSQL.5432\" failed: FATAL:  the database system is "
     "shutting down\n",
     "the database system is shutting down"},
    {theStarting,
     "подключиться к серверу через сокет \"/run/.s.PGSQL.5432\" не удалось: ВАЖНО:  система баз "
     "данных останавливается\n",
     "система баз данных останавливается"},
    {theStarting, "connection to server failed: FATAL:  the database system is in recovery mode\n",
     "the database system is in recovery mode"},
    {theStarting,
     "подключиться не удалось: ВАЖНО:  система БД ещё не принимает подключения\n"
     "DETAIL:  Согласованное состояние восстановления ещё не достигнуто.\n",
     "система БД ещё не принимает подключения"},
    {theNotAdmitted,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: FATAL:  no pg_hba.conf "
     "entry for host \"10.0.0.2\", user \"u\", database \"office\", SSL encryption\n"
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: FATAL:  no pg_hba.conf "
     "entry for host \"10.0.0.2\", user \"u\", database \"office\", no encryption\n",
     "no pg_hba.conf entry for host \"10.0.0.2\", user \"u\", database \"office\", SSL encryption"},
    {theNotAdmitted,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: ВАЖНО:  в pg_hba.conf "
     "нет записи для компьютера \"10.0.0.2\", пользователя \"u\", базы \"office\", без "
     "шифрования\n",
     "в pg_hba.conf нет записи для компьютера \"10.0.0.2\", пользователя \"u\", базы \"office\", "
     "без шифрования"},
    {thePassword,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: FATAL:  password "
     "authentication failed for user \"u\"\n"
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: FATAL:  no pg_hba.conf "
     "entry for host \"10.0.0.2\", user \"u\", database \"office\", no encryption\n",
     "password authentication failed for user \"u\""},
    {thePassword,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: fe_sendauth: no password "
     "supplied\n",
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: fe_sendauth: no password "
     "supplied"},
    {theCrowded, "connection to server failed: FATAL:  sorry, too many clients already\n",
     "sorry, too many clients already"},
    {theCrowded, "подключиться не удалось: ВАЖНО:  извините, уже слишком много клиентов\n",
     "извините, уже слишком много клиентов"},
    {theCrowded,
     "connection to server failed: FATAL:  remaining connection slots are reserved for "
     "non-replication superuser connections\n",
     "remaining connection slots are reserved for non-replication superuser connections"},
    {theCrowded,
     "подключиться не удалось: ВАЖНО:  оставшиеся слоты подключений зарезервированы для "
     "подключений суперпользователя (не для репликации)\n",
     "оставшиеся слоты подключений зарезервированы для подключений суперпользователя (не для "
     "репликации)"},
    {theSecure,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: server does not support "
     "SSL, but SSL was required\n",
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: server does not support "
     "SSL, but SSL was required"},
    {theSecure,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: затребовано "
     "подключение через SSL, но сервер не поддерживает SSL\n",
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: затребовано "
     "подключение через SSL, но сервер не поддерживает SSL"},
    {theSecure,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: файл корневых "
     "сертификатов \"/root.crt\" не существует\nУкажите полный путь к файлу или отключите "
     "проверку сертификата сервера, изменив sslmode.\n",
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: файл корневых "
     "сертификатов \"/root.crt\" не существует"},
    {theSecure,
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: SSL error: certificate "
     "verify failed\n",
     "connection to server at \"server\" (10.0.0.1), port 5432 failed: SSL error: certificate "
     "verify failed"},
    {theRefused, "connection to server failed: FATAL:  unsupported frontend protocol 3.0\n",
     "unsupported frontend protocol 3.0"},
    {theRefused, "подключиться не удалось: ВАЖНО:  система БД не принимает подключения\n",
     "система БД не принимает подключения"},
    {theAbsent,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: Connection refused\n"
     "\tСервер действительно работает по данному адресу и принимает TCP-соединения?\n",
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: Connection refused"},
    {theAbsent, "преобразовать имя \"server\" в адрес не удалось: Name or service not known\n",
     "преобразовать имя \"server\" в адрес не удалось: Name or service not known"},
    {theAbsent, "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: тайм-аут\n",
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: тайм-аут"},
    {theAbsent,
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: сервер неожиданно "
     "закрыл соединение\n\tСкорее всего сервер прекратил работу из-за сбоя\n\tдо или в процессе "
     "выполнения запроса.\n",
     "подключиться к серверу \"server\" (10.0.0.1), порту 5432 не удалось: сервер неожиданно "
     "закрыл соединение"},
};

struct Code {
    const char *SqlState;
    qint32 Number;
    const char *Text;
    bool HasDetail;
};

const char theLost[] =
    "Связь с базой данных \"%1\" прервалась. Проверьте сеть и сервер и повторите.";
const char theBusy[] =
    "База данных \"%1\" занята другой программой. Дождитесь, пока та закончит работу, и "
    "повторите.";
const char theForbidden[] =
    "Нет прав на работу с базой данных \"%1\". Попросите администратора дать права или укажите "
    "другую базу.";
const char theDamaged[] = "База данных \"%1\" повреждена. Восстановите ее из резервной копии.";
const char theShort[] =
    "Серверу базы данных \"%1\" не хватает памяти или подключений. Повторите позже или обратитесь "
    "к администратору сервера.";
const char theDisk[] =
    "База данных \"%1\" не читается с диска или не записывается на него. Проверьте диск, сеть и "
    "место, отведенное на диске, и повторите.";
const char theFull[] =
    "На диске с базой данных \"%1\" не осталось места. Освободите место и повторите.";
const char theStopped[] =
    "Сервер прервал запрос к базе данных \"%1\": тот длился слишком долго или его остановил "
    "администратор. Повторите позже.";
const char theReadOnly[] =
    "Сервер дает базу данных \"%1\" только для чтения. Укажите основной сервер или обратитесь к "
    "администратору.";
const char theOther[] = "База данных \"%1\" не выполнила запрос. Обратитесь к администратору.";

const Code theCodes[] = {
    {"08006", Vk_Records::DatabaseConnectionLost, theLost, false},
    {"22012", Vk_Records::DatabaseQueryFailed, theOther, true},
    {"25006", Vk_Records::DatabaseUnreachable, theReadOnly, true},
    {"25P02", Vk_Records::DatabaseQueryFailed, theOther, true},
    {"3F000", Vk_Records::DatabaseUnreachable, theForbidden, true},
    {"40001", Vk_Records::DatabaseBusy, theBusy, false},
    {"40P01", Vk_Records::DatabaseBusy, theBusy, false},
    {"42501", Vk_Records::DatabaseUnreachable, theForbidden, true},
    {"42P01", Vk_Records::DatabaseDamaged, theDamaged, true},
    {"53000", Vk_Records::DatabaseBusy, theShort, true},
    {"53100", Vk_Records::DatabaseFull, theFull, false},
    {"53200", Vk_Records::DatabaseBusy, theShort, true},
    {"53300", Vk_Records::DatabaseBusy, theShort, true},
    {"55P03", Vk_Records::DatabaseBusy, theBusy, false},
    {"57014", Vk_Records::DatabaseQueryFailed, theStopped, true},
    {"57P01", Vk_Records::DatabaseConnectionLost, theLost, false},
    {"57P03", Vk_Records::DatabaseConnectionLost, theLost, false},
    {"58000", Vk_Records::DatabaseDiskFailed, theDisk, true},
    {"58030", Vk_Records::DatabaseDiskFailed, theDisk, true},
    {"58P01", Vk_Records::DatabaseDiskFailed, theDisk, true},
    {"XX001", Vk_Records::DatabaseDamaged, theDamaged, true},
    {"", Vk_Records::DatabaseConnectionLost, theLost, false},
};

Vk_Records::Address Server() {
    Vk_Records::Address address;
    address.IsServer = true;
    address.Shown = theShown;
    return address;
}

QString Filled(const char *aText) {
    return QString::fromUtf8(aText).arg(theShown);
}

}  // namespace

/// What a user is told of what a server or its client library said, word for word and code by code.
class TestRefusals : public QObject {
    Q_OBJECT

private slots:
    void Connecting_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(theWords)); ++i)
            QTest::addRow("%d: %s", i, theWords[i].Shown) << i;
    }
    void Connecting() {
        QFETCH(int, index);
        const Words &words = theWords[index];
        const auto refusal = Vk_Records::ConnectionRefusal(
            Server(), QSqlError(QStringLiteral("QPSQL: Unable to connect"),
                                QString::fromUtf8(words.Said), QSqlError::ConnectionError));
        QCOMPARE(refusal.Text, Filled(words.Text) + Said(QString::fromUtf8(words.Shown)));
        QCOMPARE(refusal.Number, qint32(Vk_Records::DatabaseUnreachable));
    }

    void Requesting_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(theCodes)); ++i)
            QTest::addRow("%s", *theCodes[i].SqlState ? theCodes[i].SqlState : "none") << i;
    }
    void Requesting() {
        QFETCH(int, index);
        const Code &code = theCodes[index];
        const QString said = QStringLiteral("так сказал сервер");
        const auto refusal = Vk_Records::RequestRefusal(
            Server(), QSqlError(QStringLiteral("QPSQL: Unable to create query"),
                                QStringLiteral("ОШИБКА:  %1\nСТРОКА 1: SELECT\n(%2)")
                                    .arg(said, QString::fromLatin1(code.SqlState)),
                                QSqlError::StatementError, QString::fromLatin1(code.SqlState)));
        QCOMPARE(refusal.Text, Filled(code.Text) + (code.HasDetail ? Said(said) : QString()));
        QCOMPARE(refusal.Number, code.Number);
    }
};

VK_TEST_CLASS(TestRefusals);

#include "TestRefusals.moc"
