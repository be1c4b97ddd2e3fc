#include "Refusals.h"

#include <QRegularExpression>

#include <Vk_Records/Database.h>

namespace Vk_Records {

namespace {

constexpr char16_t theBusyText[] =
    u"База данных \"%1\" занята другой программой. Дождитесь, пока та закончит работу, и "
    u"повторите.";
constexpr char16_t theDamagedText[] =
    u"База данных \"%1\" повреждена. Восстановите ее из резервной копии.";
constexpr char16_t theDiskText[] =
    u"База данных \"%1\" не читается с диска или не записывается на него. Проверьте диск, сеть и "
    u"место, отведенное на диске, и повторите.";
constexpr char16_t theFullText[] =
    u"На диске с базой данных \"%1\" не осталось места. Освободите место и повторите.";
constexpr char16_t theForbiddenText[] =
    u"Нет прав на работу с базой данных \"%1\". Попросите администратора дать права или укажите "
    u"другую базу.";
constexpr char16_t theForeignText[] =
    u"Файл \"%1\" не является базой данных. Укажите другой файл или восстановите базу из резервной "
    u"копии.";
constexpr char16_t theGoneText[] =
    u"Файла базы данных \"%1\" больше нет: его удалили или переименовали, либо диск отключен. "
    u"Верните файл на место и повторите.";
constexpr char16_t theLostText[] =
    u"Связь с базой данных \"%1\" прервалась. Проверьте сеть и сервер и повторите.";
constexpr char16_t theMemoryText[] =
    u"Для запроса к базе данных \"%1\" не хватило памяти. Закройте лишние программы и повторите.";
constexpr char16_t theOtherText[] =
    u"База данных \"%1\" не выполнила запрос. Обратитесь к администратору.";
constexpr char16_t theReadOnlyText[] =
    u"Сервер дает базу данных \"%1\" только для чтения. Укажите основной сервер или обратитесь к "
    u"администратору.";
constexpr char16_t theShortText[] =
    u"Серверу базы данных \"%1\" не хватает памяти или подключений. Повторите позже или обратитесь "
    u"к администратору сервера.";
constexpr char16_t theStoppedText[] =
    u"Сервер прервал запрос к базе данных \"%1\": тот длился слишком долго или его остановил "
    u"администратор. Повторите позже.";

constexpr char16_t theAbsentText[] =
    u"Сервер базы данных \"%1\" не отвечает. Проверьте адрес, сеть и работу сервера.";
constexpr char16_t theCrowdedText[] =
    u"Сервер базы данных \"%1\" не принимает новых подключений: их уже слишком много. Повторите "
    u"позже или обратитесь к администратору сервера.";
constexpr char16_t theMissingText[] =
    u"На сервере нет базы данных \"%1\". Попросите администратора создать ее или исправьте адрес.";
constexpr char16_t theNotAdmittedText[] =
    u"Сервер базы данных \"%1\" не пускает этого пользователя с этого компьютера. Попросите "
    u"администратора сервера разрешить вход.";
constexpr char16_t thePasswordText[] =
    u"Сервер базы данных \"%1\" не принял имя пользователя или пароль. Исправьте их в адресе базы.";
constexpr char16_t theRefusedText[] =
    u"Сервер базы данных \"%1\" отказал в подключении. Обратитесь к администратору сервера.";
constexpr char16_t theSecureText[] =
    u"Защищенное соединение с сервером базы данных \"%1\" не установлено. Проверьте параметры "
    u"защиты в адресе базы и сертификаты или обратитесь к администратору сервера.";
constexpr char16_t theStartingText[] =
    u"Сервер базы данных \"%1\" запускается или останавливается. Повторите через минуту.";

/// What a code means: SQLite's, or the beginning of PostgreSQL's. The first row that fits counts.
struct CodeRow {
    const char *Code;
    qint32 Number;
    const char16_t *Text;
    bool HasDetail;  ///< what the database said helps whoever has to mend it
};

constexpr CodeRow theFileRows[] = {
    {"1", DatabaseDamaged, theDamagedText, true},
    {"3", DatabaseUnreachable, theForbiddenText, true},
    {"5", DatabaseBusy, theBusyText, false},
    {"6", DatabaseBusy, theBusyText, false},
    {"7", DatabaseQueryFailed, theMemoryText, false},
    {"8", DatabaseUnreachable, theForbiddenText, true},
    {"10", DatabaseDiskFailed, theDiskText, true},
    {"11", DatabaseDamaged, theDamagedText, true},
    {"13", DatabaseFull, theFullText, false},
    {"14", DatabaseUnreachable, theForbiddenText, true},
    {"15", DatabaseBusy, theBusyText, false},
    {"26", DatabaseForeign, theForeignText, false},
};
constexpr int theSqliteCodeMask = 0xff;

constexpr CodeRow theServerRows[] = {
    {"08", DatabaseConnectionLost, theLostText, false},
    {"25006", DatabaseUnreachable, theReadOnlyText, true},
    {"3F000", DatabaseUnreachable, theForbiddenText, true},
    {"40001", DatabaseBusy, theBusyText, false},
    {"40P01", DatabaseBusy, theBusyText, false},
    {"42501", DatabaseUnreachable, theForbiddenText, true},
    {"42703", DatabaseDamaged, theDamagedText, true},
    {"42P01", DatabaseDamaged, theDamagedText, true},
    {"53100", DatabaseFull, theFullText, false},
    {"53", DatabaseBusy, theShortText, true},
    {"55P03", DatabaseBusy, theBusyText, false},
    {"57014", DatabaseQueryFailed, theStoppedText, true},
    {"57P", DatabaseConnectionLost, theLostText, false},
    {"58", DatabaseDiskFailed, theDiskText, true},
    {"XX", DatabaseDamaged, theDamagedText, true},
};
constexpr CodeRow theOtherRow = {"", DatabaseQueryFailed, theOtherText, true};
constexpr CodeRow theLostRow = {"", DatabaseConnectionLost, theLostText, false};

/// What the words mean with which a server turns a connection down, in English or Russian. Names in
/// quotes were taken out of them: a database may be called "password". The first row that fits
/// counts.
struct WordsRow {
    const char16_t *Words;
    const char16_t *Text;
};

constexpr WordsRow theWordsRows[] = {
    // A password that was refused under encryption is tried once more without it, where pg_hba.conf
    // may admit nobody.
    {u"authentication failed for user|no password supplied|empty password|role \"\" does not exist|"
     u"не прош[её]л проверку подлинности|роль \"\" не существует|пароль не",
     thePasswordText},
    {u"pg_hba\\.conf|is not permitted to log in|вход запрещ[её]н", theNotAdmittedText},
    {u"database \"\" does not exist|база данных \"\" не существует", theMissingText},
    {u"permission denied for database|доступ к базе \"\" запрещ[её]н|privilege|привилеги",
     theForbiddenText},
    {u"too many clients|too many connections|remaining connection slots|слишком много клиентов|"
     u"слишком много подключений|слоты подключений",
     theCrowdedText},
    {u"is starting up|is shutting down|not yet accepting connections|in recovery mode|"
     u"запускается|останавливается|ещ[её] не принимает подключения|режиме восстановления",
     theStartingText},
    {u"\\bSSL\\b|GSSAPI|certificate|сертификат", theSecureText},
    // The severity, a colon and two blanks begin what the server itself says, in every language.
    {u"(?:^|: )[^\\s:]+:  ", theRefusedText},
    {u"", theAbsentText},
};

QString Filled(const char16_t *aText, const Address &aAddress) {
    return QString::fromUtf16(aText).arg(aAddress.Shown);
}

/// The line that says what happened, without what stands before it.
QString Line(const Address &aAddress, const QSqlError &aError) {
    static const QRegularExpression severity(QStringLiteral("^(?:.*?: )??[^\\s:]+:  "),
                                             QRegularExpression::MultilineOption);
    const QString text = aError.databaseText();
    const auto said = severity.match(text);
    QString line = text.mid(said.hasMatch() ? said.capturedEnd() : 0).section(u'\n', 0, 0);
    if (!aAddress.Password.isEmpty()) line.replace(aAddress.Password, QStringLiteral("…"));
    line = line.simplified();
    while (line.endsWith(u'.')) line.chop(1);
    return line;
}

QString WithDetail(const QString &aText, const QString &aLine) {
    if (aLine.isEmpty()) return aText;
    return aText + QStringLiteral("\r\nСообщение базы данных: ") + aLine;
}

const CodeRow &RowOf(const Address &aAddress, const QSqlError &aError) {
    const QString code = aError.nativeErrorCode();
    if (aAddress.IsServer) {
        if (code.isEmpty()) return theLostRow;  // a server that goes away leaves no code behind
        for (const CodeRow &row : theServerRows) {
            if (code.startsWith(QLatin1String(row.Code))) return row;
        }
        return theOtherRow;
    }
    const QString primary = QString::number(code.toInt() & theSqliteCodeMask);
    for (const CodeRow &row : theFileRows) {
        if (primary == QLatin1String(row.Code)) return row;
    }
    return theOtherRow;
}

const WordsRow &RowOf(const QString &aWords) {
    for (const WordsRow &row : theWordsRows) {
        const QRegularExpression words(
            QString::fromUtf16(row.Words),
            QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption);
        if (words.match(aWords).hasMatch()) return row;
    }
    return *std::rbegin(theWordsRows);
}

}  // namespace

Refusal RequestRefusal(const Address &aAddress, const QSqlError &aError) {
    const CodeRow &row = RowOf(aAddress, aError);
    const QString text = Filled(row.Text, aAddress);
    return {row.Number, row.HasDetail ? WithDetail(text, Line(aAddress, aError)) : text};
}

Refusal ConnectionRefusal(const Address &aAddress, const QSqlError &aError) {
    static const QRegularExpression names(QStringLiteral("\"[^\"\\n]*\""));
    const WordsRow &row = RowOf(aError.databaseText().replace(names, QStringLiteral("\"\"")));
    return {DatabaseUnreachable, WithDetail(Filled(row.Text, aAddress), Line(aAddress, aError))};
}

QString GoneText(const Address &aAddress) {
    return Filled(theGoneText, aAddress);
}

QString ForbiddenText(const Address &aAddress) {
    return Filled(theForbiddenText, aAddress);
}

QString ForeignText(const Address &aAddress) {
    return Filled(theForeignText, aAddress);
}

}  // namespace Vk_Records
