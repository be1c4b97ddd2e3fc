#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/FileBounds.h"
#include "queryfile/XmlNode.h"
#include "support/AsNobody.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::AsNobody;

namespace {

/// A file of the folder of broken and foreign files, and what reading it gives.
struct Foreign {
    const char *File;
    const char16_t *Reason;  ///< null: it is read
    const char16_t *Source = u"";
    int Line = 0;
};

const char16_t *const theDocumentType =
    u"Объявление типа документа (DOCTYPE) в файле не допускается.";
const char16_t *const theRootMissing =
    u"Неверный формат файла критериев поиска. Отсутствует корневой узел VkDocQuery.";

const Foreign theFiles[] = {
    {"bad-utf-16.qvk", u"Здесь стоят байты, недопустимые в кодировке файла.",
     u"<VkDocQuery Notes=\"", 1},
    {"bad-utf-8.qvk", u"Input is not proper UTF-8, indicate encoding ! Bytes: 0xC6 0xF3 0x22 0x20",
     u"<VkDocQuery><DocCriteria IsNotes=\"1\" Notes=\"��\" /></VkDocQuery>", 2},
    {"bare-ampersand.qvk", u"xmlParseEntityRef: no name",
     u"<DocCriteria IsNotes=\"1\" Notes=\"Рога & копыта\" />", 3},
    {"control-character.qvk", u"invalid character in attribute value",
     u"<DocCriteria IsNotes=\"1\" Notes=\"a b\" />", 3},
    {"control-reference.qvk", u"xmlParseCharRef: invalid xmlChar value 1",
     u"<DocCriteria IsNotes=\"1\" Notes=\"a&#1;b\" />", 3},
    {"duplicate-attribute.qvk", u"Attribute IsNotes redefined",
     u"<DocCriteria IsNotes=\"1\" IsNotes=\"0\" />", 3},
    {"entity-bomb.qvk", theDocumentType, u"<!DOCTYPE VkDocQuery [", 2},
    {"external-dtd.qvk", theDocumentType,
     u"<!DOCTYPE VkDocQuery SYSTEM \"http://127.0.0.1:9/query.dtd\">", 2},
    {"external-entity.qvk", theDocumentType,
     u"<!DOCTYPE VkDocQuery [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>", 2},
    {"good-byte-98.qvk", nullptr, u"Жук\u0098"},
    {"good-koi8-r.qvk", nullptr, u"Жук"},
    {"good-no-declaration.qvk", nullptr, u"Жук"},
    {"good-one-line.qvk", nullptr, u"Жук"},
    {"good-unix-lines.qvk", nullptr, u"Жук"},
    {"good-utf-16-be-mark.qvk", nullptr, u"Жук"},
    {"good-utf-16-be.qvk", nullptr, u"Жук"},
    {"good-utf-16-le-mark.qvk", nullptr, u"Жук"},
    {"good-utf-16-le.qvk", nullptr, u"Жук"},
    {"good-utf-16-mark-other-declaration.qvk", nullptr, u"Жук"},
    {"good-utf-8-mark-other-declaration.qvk", nullptr, u"Жук"},
    {"good-utf-8-mark.qvk", nullptr, u"Жук"},
    {"good-utf-8.qvk", nullptr, u"Жук"},
    {"not-xml.qvk", u"Start tag expected, '<' not found", u"��� �� ���� ���������, � ������.", 1},
    {"page.html", theDocumentType, u"<!DOCTYPE html>", 1},
    {"two-roots.qvk", u"Extra content at the end of the document", u"<VkDocQuery ver=\"1\" />", 3},
    {"undeclared-entity.qvk", u"Entity 'nbsp' not defined",
     u"<DocCriteria IsNotes=\"1\" Notes=\"&nbsp;\" />", 3},
    {"unknown-encoding.qvk",
     u"Кодировка \"cuneiform-7\" не поддерживается. Сохраните файл в кодировке UTF-8 или "
     u"windows-1251.",
     u"<?xml version=\"1.0\" encoding=\"cuneiform-7\"?>", 1},
    {"wrong-closing-tag.qvk",
     u"Opening and ending tag mismatch: DocCriteria line 3 and TemplateCriteria",
     u"</TemplateCriteria>", 4},
    {"wrong-root.qvk", theRootMissing},
    {"zero-byte.qvk", u"Char 0x0 out of allowed range",
     u"<DocCriteria IsNotes=\"1\" Notes=\"a b\" />", 3},
};

QString Explained(const QString &aReason, const QString &aSource, int aLine) {
    return QStringLiteral("   Reason: %1\r\n   Source: %2\r\n   Line: %3")
        .arg(aReason, aSource)
        .arg(aLine);
}

QString Folder() {
    return QStringLiteral(VK_TEST_DATA "/broken");
}

void WriteBytes(const QString &aName, const QByteArray &aBytes) {
    QFile file(aName);
    if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size())
        qFatal("cannot write");
}

/// Highest use of memory of this process so far, in MB; the sanitizers' own use is not looked at.
[[maybe_unused]] qint64 PeakMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() / 1024;
    }
    return 0;
}

/// Memory that this process has taken and not given back, in MB.
[[maybe_unused]] qint64 MemoryInUse() {
    const auto use = mallinfo2();
    return static_cast<qint64>((use.hblkhd + use.uordblks) / (std::size_t{1024} * 1024));
}

}  // namespace

class TestForeignFiles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { VkTests::MemoryOffice::Install(); }

    void FilesOfTheFolder_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(theFiles)); ++i) QTest::newRow(theFiles[i].File) << i;
    }
    void FilesOfTheFolder() {
        QFETCH(int, index);
        const Foreign &foreign = theFiles[index];
        const QString name = Folder() + u'/' + QLatin1String(foreign.File);
        QVERIFY(QFile::exists(name));
        VkDocQueryData record;
        record.FileName = QStringLiteral("old");
        const bool read = record.ReadFromXmlFile(name);
        if (foreign.Reason) {
            const QString reason = QString::fromUtf16(foreign.Reason);
            QCOMPARE(record.LastError,
                     foreign.Reason == theRootMissing
                         ? reason
                         : Explained(reason, QString::fromUtf16(foreign.Source), foreign.Line));
            QVERIFY(!read);
            QCOMPARE(record.FileName, QString());
        } else {
            QCOMPARE(record.LastError, QString());
            QVERIFY(read);
            QCOMPARE(record.FileName, name);
            QCOMPARE(record.Notes, QString::fromUtf16(foreign.Source));
        }
    }

    void EveryFileOfTheFolderIsTested() {
        QStringList files = QDir(Folder()).entryList(QDir::Files);
        for (const Foreign &foreign : theFiles)
            QVERIFY2(files.removeOne(QString::fromLatin1(foreign.File)), foreign.File);
        QCOMPARE(files, QStringList());
    }

    /// A real file, cut short at every 97th byte.
    void CutFiles() {
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("cut.qvk"));
        VkDocQueryData saved;
        saved.IsTaxpayers = saved.IsNotes = true;
        saved.Notes = QStringLiteral("Акт \"сверки\" & прочее <5>");
        saved.TaxpayersList = std::make_shared<RecordCollection>();
        for (const double id : {1.0, 2.0, 3.0}) saved.TaxpayersList->Add(VkTests::MakePerson(id));
        QVERIFY(saved.WriteToXmlFile(name));
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        file.close();
        QVERIFY(bytes.size() > 1500);

        const QRegularExpression explained(
            QStringLiteral("^   Reason: [^\r\n]+\r\n   Source: [^\r\n]*\r\n   Line: [0-9]+$"));
        for (qsizetype length = 0; length < bytes.size(); length += 97) {
            WriteBytes(name, bytes.left(length));
            VkDocQueryData record;
            QVERIFY2(!record.ReadFromXmlFile(name), QByteArray::number(length).constData());
            QVERIFY2(explained.match(record.LastError).hasMatch(), qPrintable(record.LastError));
            if (length == 0)
                QCOMPARE(record.LastError, Explained(QStringLiteral("Файл пуст."), {}, 0));
        }
        WriteBytes(name, bytes);
        VkDocQueryData whole;
        QVERIFY(whole.ReadFromXmlFile(name));
        QCOMPARE(whole.Notes, saved.Notes);
        QCOMPARE(whole.TaxpayersList->Count(), 3);
    }

    void PathsThatAreNoFile_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << QStringLiteral("missing") << QStringLiteral("Файл не найден.");
        QTest::newRow("no name") << QString() << QStringLiteral("Имя файла не задано.");
        QTest::newRow("folder") << QStringLiteral("folder")
                                << QStringLiteral("По этому пути находится папка, а не файл.");
        const QString special =
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство.");
        QTest::newRow("pipe") << QStringLiteral("pipe") << special;
        QTest::newRow("device") << QStringLiteral("/dev/zero") << special;
        QTest::newRow("link to itself")
            << QStringLiteral("loop")
            << QStringLiteral("По этому пути находится ссылка, которая ведет по кругу.");
        QTest::newRow("below a file")
            << QStringLiteral("secret/a.qvk") << QStringLiteral("Файл не найден.");
        QTest::newRow("name that is too long")
            << QString(256, u'x') << QStringLiteral("Файл не найден.");
        QTest::newRow("half a character") << QString(QStringLiteral("a") + QChar(0xD800) + u'b')
                                          << QStringLiteral("Файл не найден.");
        QTest::newRow("closed folder")
            << QStringLiteral("closed/a.qvk") << QStringLiteral("Нет прав на чтение файла.");
        QTest::newRow("no permission")
            << QStringLiteral("secret") << QStringLiteral("Нет прав на чтение файла.");
    }
    void PathsThatAreNoFile() {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        QTemporaryDir folder;
        QFile::setPermissions(folder.path(), QFileDevice::Permissions(0x7755));
        const QString name = kind.isEmpty() || kind.startsWith(u'/') ? kind : folder.filePath(kind);
        const QByteArray bytes = QFile::encodeName(name);
        if (kind == QStringLiteral("folder")) QVERIFY(QDir().mkdir(name));
        if (kind == QStringLiteral("pipe")) QCOMPARE(mkfifo(bytes.constData(), 0666), 0);
        if (kind == QStringLiteral("loop"))
            QCOMPARE(symlink(bytes.constData(), bytes.constData()), 0);
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("closed")));
        // In a name the second stands for half a pair as well.
        for (const char16_t *file : {u"secret", u"a\uFFFDb", u"closed/a.qvk"})
            WriteBytes(folder.filePath(QString::fromUtf16(file)), "<VkDocQuery/>");
        for (const char *closed : {"secret", "closed"})
            QVERIFY(QFile::setPermissions(folder.filePath(QString::fromLatin1(closed)), {}));
        VkDocQueryData record;
        bool read = true;
        {
            const AsNobody nobody;
            read = record.ReadFromXmlFile(name);
        }
        QVERIFY(!read);
        QCOMPARE(record.LastError, Explained(reason, QString(), 0));
    }

    /// What the reader does not look at takes no room in the tree.
    void MuchThatIsNoElement_data() {
        QTest::addColumn<QByteArray>("item");
        QTest::newRow("comments") << QByteArray("<!---->");
        QTest::newRow("instructions") << QByteArray("<?i?>");
        QTest::newRow("sections") << QByteArray("<![CDATA[]]>x");
    }
    void MuchThatIsNoElement() {
        QFETCH(QByteArray, item);
        const QByteArray bytes =
            "<VkDocQuery>" + item.repeated(1000000) + "<DocCriteria Notes='x'/></VkDocQuery>";
        [[maybe_unused]] const qint64 before = MemoryInUse();
        XmlDocument document;
        QVERIFY(document.LoadBytes(bytes));
        const XmlNode root = document.Node().SelectSingleNode("VkDocQuery");
        QCOMPARE(root.SelectSingleNode("DocCriteria").Attribute("Notes"), QByteArray("x"));
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(MemoryInUse() - before < 20);
#endif
    }

    void FilesOfExtremeSizeAndDepth_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("read");
        QTest::addColumn<QString>("reason");
        QTest::newRow("blanks") << QStringLiteral("blanks") << false
                                << QStringLiteral("Файл пуст.");
        QTest::newRow("blanks in the root") << QStringLiteral("inner") << true << QString();
        QTest::newRow("too large")
            << QStringLiteral("large") << false
            << QStringLiteral("Файл слишком велик: допускается не более 64 МБ.");
        QTest::newRow("deep")
            << QStringLiteral("deep") << false
            << QStringLiteral(
                   "Файл слишком сложен: допускается не более 256 вложенных друг в друга "
                   "элементов.\r\n");
        QTest::newRow("long attribute") << QStringLiteral("attribute") << false
                                        << QStringLiteral(
                                               "Текст \"a\" слишком длинный: допускается не более "
                                               "10000000 байт, русская буква занимает два.\r\n");
        QTest::newRow("many bad ids") << QStringLiteral("ids") << true << QString();
    }
    void FilesOfExtremeSizeAndDepth() {
        QFETCH(QString, kind);
        QFETCH(bool, read);
        QFETCH(QString, reason);
        constexpr qsizetype megabyte = qsizetype{1024} * 1024;
        QByteArray bytes;
        if (kind == QStringLiteral("blanks")) bytes = QByteArray(50 * megabyte, ' ');
        if (kind == QStringLiteral("inner"))
            bytes = "<VkDocQuery>" + QByteArray(9 * megabyte, ' ') + "</VkDocQuery>";
        if (kind == QStringLiteral("large")) bytes = QByteArray(theLargestFile + 1, 'x');
        if (kind == QStringLiteral("deep"))
            bytes = QByteArray("<VkDocQuery>").repeated(100000) +
                    QByteArray("</VkDocQuery>").repeated(100000);
        if (kind == QStringLiteral("attribute"))
            bytes = "<VkDocQuery a=\"" + QByteArray(20 * megabyte, 'x') + "\"/>";
        if (kind == QStringLiteral("ids"))
            bytes = "<VkDocQuery><TaxpayersCriteria IsTaxpayers='1'><TaxpayersList>" +
                    QByteArray("<i id='abc'/>").repeated(200000) +
                    "</TaxpayersList></TaxpayersCriteria></VkDocQuery>";
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        WriteBytes(name, bytes);
        VkDocQueryData record;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(record.ReadFromXmlFile(name), read);
        QVERIFY(timer.elapsed() < 60000);
        if (!read)
            QVERIFY2(record.LastError.startsWith(QStringLiteral("   Reason: ") + reason),
                     qPrintable(record.LastError.left(300)));
        QVERIFY(record.LastError.size() < 600);
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(PeakMemory() < 600);
#endif
    }

    /// What the parser itself would keep without end, and what it would say about it at length.
    void Bounds_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *aName, const QByteArray &aContent,
                            const QString &aReason = QString()) {
            QTest::newRow(aName) << aContent << aReason;
        };
        const auto nested = [](int aDepth) {
            return QByteArray("<a>").repeated(aDepth) + QByteArray("</a>").repeated(aDepth);
        };
        const QString tooDeep = QStringLiteral(
            "Файл слишком сложен: допускается не более 256 вложенных друг в друга элементов.");
        row("deep", nested(255));
        row("too deep", nested(256), tooDeep);
        row("deep again and again", nested(255).repeated(10));
        row("too deep behind much", "<!--" + QByteArray(11'000'000, 'x') + "-->" + nested(256),
            tooDeep);
        const auto many = [](const char *aForm, int aCount) {
            QByteArray names;
            for (int i = 0; i < aCount; ++i)
                names += QByteArray(aForm).replace('@', QByteArray::number(i));
            return names;
        };
        const QString tooMany =
            QStringLiteral("Файл слишком сложен: допускается не более 10000 разных имен.");
        for (const char *form : {"<a@/>", "<b a@=''/>", "<?a@?>", "<x:a@/>", "<b x:a@=''/>"}) {
            row(form, many(form, 9900));
            row(QByteArray(form) + ", too many", many(form, 10001), tooMany);
        }
        row("very many instructions", many("<?a@?>", 2'000'000), tooMany);
        const QString tooLong =
            QStringLiteral("Файл слишком сложен: допускаются имена не длиннее 1000 байт.");
        for (const char *form : {"<@/>", "<b @=''/>", "<?@?>", "<x:@/>", "<@:b/>", "<b x:@=''/>",
                                 "<b @:b=''/>", "<b xmlns:@='u'/>", "<b xmlns:b='@'/>"}) {
            const auto named = [&](qsizetype aSize) {
                return QByteArray(form).replace('@', QByteArray(aSize, 'n'));
            };
            row(form, named(1000));
            row(QByteArray(form) + ", too long", named(1001), tooLong);
            row(QByteArray(form) + ", huge", named(9'000'000), tooLong);
        }
        row("letters of two bytes", "<" + QByteArray("\xD0\x96").repeated(500) + "/>");
        row("letters of two bytes, too long", "<" + QByteArray("\xD0\x96").repeated(501) + "/>",
            tooLong);
        row("long name of an end", "<b></" + QByteArray(20'000, 'n') + ">",
            QStringLiteral("Opening and ending tag mismatch: b line 1 and ") + QString(254, u'n') +
                QStringLiteral("..."));
        row("long name of an entity", "&" + QByteArray(20'000, 'n') + ";",
            QStringLiteral("Entity '") + QString(292, u'n') + QStringLiteral("..."));
    }
    void Bounds() {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        XmlDocument document;
        QCOMPARE(document.LoadBytes("<VkDocQuery>" + content + "</VkDocQuery>"), reason.isEmpty());
        QCOMPARE(document.ParseError().Reason, reason);
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(PeakMemory() < 900);
#endif
    }

    /// No entity is ever made longer, wherever and however it is declared.
    void Entities_data() {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QString>("reason");
        QByteArray bomb = "<!DOCTYPE VkDocQuery [<!ENTITY e0 'boom'>";
        for (int i = 1; i < 30; ++i) {
            const QByteArray one = "&e" + QByteArray::number(i - 1) + ";";
            bomb += "<!ENTITY e" + QByteArray::number(i) + " '" + one.repeated(10) + "'>";
        }
        bomb += "<!ATTLIST VkDocQuery a CDATA '&e29;'>]>";
        const QString refused = QString::fromUtf16(theDocumentType);
        QTest::newRow("at once") << bomb << refused;
        QTest::newRow("behind much")
            << "<!--" + QByteArray(11'000'000, 'x') + "-->" + bomb << refused;
        QTest::newRow("behind an instruction") << "<?a b?>" + bomb << refused;
        QTest::newRow("parameters")
            << QByteArray("<!DOCTYPE VkDocQuery [<!ENTITY % p \"<!ENTITY e29 'x'>\"> %p;]>")
            << refused;
        QTest::newRow("behind a fault of the declaration")
            << "<?xml version='1.0' standalone='x'?>" + bomb
            << QStringLiteral("standalone accepts only 'yes' or 'no'");
        QTest::newRow("behind a lesser fault")
            << "<?xml version='7.0'?>" + bomb << QStringLiteral("Unsupported version '7.0'");
    }
    void Entities() {
        QFETCH(QByteArray, head);
        QFETCH(QString, reason);
        XmlDocument document;
        QVERIFY(!document.LoadBytes(head + "<VkDocQuery b='&e29;'>&e29;</VkDocQuery>"));
        QCOMPARE(document.ParseError().Reason, reason);
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(PeakMemory() < 900);
#endif
    }

    /// Many more elements than a saved list can have in a file of the largest size.
    void TooManyElements_data() {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("item");
        QTest::addColumn<qsizetype>("size");
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("line");
        constexpr qsizetype most = theLargestFile - 100;
        const QString elements =
            QStringLiteral("/>") + QStringLiteral("<j/>").repeated(79) + QStringLiteral("<j");
        QTest::newRow("elements") << QByteArray("<VkDocQuery>") << QByteArray("<j/>") << most
                                  << elements << 1;
        QTest::newRow("after a lesser fault")
            << QByteArray("<VkDocQuery><x:y/>") << QByteArray("<j/>") << qsizetype{12100000}
            << elements << 1;
        QTest::newRow("attributes")
            << QByteArray("<VkDocQuery>")
            << QByteArray("<i a='' b='' c='' d='' e='' f='' g='' h='' i='' j=''/>\n")
            << qsizetype{18000000}
            << QStringLiteral("<i a='' b='' c='' d='' e='' f='' g='' h='' i='' j=''/>") << 300001;
    }
    void TooManyElements() {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, item);
        QFETCH(qsizetype, size);
        QFETCH(QString, source);
        QFETCH(int, line);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        WriteBytes(name,
                   head + item.repeated((size - head.size()) / item.size()) + "</VkDocQuery>");
        VkDocQueryData record;
        QVERIFY(!record.ReadFromXmlFile(name));
        QCOMPARE(record.LastError,
                 Explained(QStringLiteral("Файл слишком сложен: допускается не более 3000000 "
                                          "элементов и стольких же атрибутов."),
                           source, line));
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(PeakMemory() < 900);
#endif
    }

    /// How a text is written down in the file, and with what in front of it.
    void CharacterSets_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("notes");
        const QString root = QStringLiteral(
            "<VkDocQuery><DocCriteria IsNotes='1' Notes='%1'/>"
            "</VkDocQuery>");
        const auto declared = [](const char *aSet) {
            return "<?xml version=\"1.0\" encoding='" + QByteArray(aSet) + "' ?>\n";
        };
        const auto row =
            [&](const char *aName, const char *aSet, const char *aBytes, const char16_t *aNotes) {
                QTest::newRow(aName)
                    << declared(aSet) +
                           root.arg(QStringLiteral("|")).toLatin1().replace('|', aBytes)
                    << QString::fromUtf16(aNotes);
            };
        row("windows-1251", "windows-1251", "\xC6\xF3\xEA\xB8\xB9\x98", u"Жукё№\u0098");
        row("cp1251, in large letters", "CP1251", "\xC6\xF3\xEA", u"Жук");
        row("koi8-r", "KOI8-R", "\xF6\xD5\xCB\xA3\xB3\x80\x9A", u"ЖукёЁ─\u00A0");
        row("koi8-u", "koi8-u", "\xF6\xD5\xCB\xA4\xA7\xBD", u"ЖукєїҐ");
        row("ibm866", "IBM866", "\x86\xE3\xAA\xF1\xFC\x80\xEF", u"Жукё№Ая");
        row("cp866", "cp866", "\x86\xE3\xAA", u"Жук");
        row("iso-8859-5", "ISO-8859-5", "\xB6\xE3\xDA\xF1\xF0\xA1", u"Жукё№Ё");
        row("iso-8859-1", "iso-8859-1", "\xA9\xFC", u"©ü");
        row("latin1", "latin1", "\xFF", u"ÿ");
        row("windows-1252", "windows-1252", "\x80\x93\xFF\x81", u"€“ÿ\u0081");
        row("cp1252", "cp1252", "\x80", u"€");
        row("us-ascii", "US-ASCII", "Zhuk", u"Zhuk");
        row("ascii", "ascii", "Zhuk", u"Zhuk");
        row("utf-8", "UTF-8", "\xD0\x96", u"Ж");
        row("utf8", "utf8", "\xD0\x96", u"Ж");

        // So many that the text has hardly a character of fewer than four bytes.
        const QString notes = QStringLiteral("Жук ") + QStringLiteral("\U0001F41E").repeated(500);
        const QString text = root.arg(notes);
        const auto wide = [&](const char *aName, QStringConverter::Encoding aEncoding) {
            QStringEncoder plain(aEncoding);
            QTest::newRow(aName) << QByteArray(plain.encode(text)) << notes;
            QStringEncoder marked(aEncoding, QStringConverter::Flag::WriteBom);
            QTest::addRow("%s with a mark", aName) << QByteArray(marked.encode(text)) << notes;
            if (aEncoding == QStringConverter::Utf8) return;
            QStringEncoder contradicted(aEncoding);
            QTest::addRow("%s with another declaration", aName)
                << QByteArray(contradicted.encode(QString::fromLatin1(declared("koi8-r")) + text))
                << notes;
        };
        wide("UTF-8", QStringConverter::Utf8);
        wide("UTF-16, small end", QStringConverter::Utf16LE);
        wide("UTF-16, big end", QStringConverter::Utf16BE);
        wide("UTF-32, small end", QStringConverter::Utf32LE);
        wide("UTF-32, big end", QStringConverter::Utf32BE);
        QTest::newRow("UTF-8 with a mark and another declaration")
            << "\xEF\xBB\xBF" + declared("windows-1251") + text.toUtf8() << notes;
        QTest::newRow("no declaration") << text.toUtf8() << notes;
        // Not the declaration, whatever it says.
        QTest::newRow("style sheet")
            << "<?xml-stylesheet href=\"a\" encoding=\"windows-1251\"?>" + text.toUtf8() << notes;
        QTest::newRow("encoding in another part of the declaration")
            << "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='yes'?>" + text.toUtf8()
            << notes;
        QTest::newRow("long declaration")
            << "<?xml version=\"1.0\"" + QByteArray(1000, ' ') + "encoding = \"windows-1251\"?>" +
                   root.arg(QStringLiteral("|")).toLatin1().replace('|', "\xC6")
            << QStringLiteral("Ж");
    }
    void CharacterSets() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, notes);
        XmlDocument document;
        VkDocQueryData record;
        const bool loaded = document.LoadBytes(bytes);
        QCOMPARE(document.ParseError().Reason, QString());
        QVERIFY(loaded && record.ReadFromXml(document.Node()));
        QCOMPARE(record.Notes, notes);
    }

    void UnreadableCharacters_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("line");
        const auto declared = [](const QByteArray &aSet) {
            return "<?xml version='1.0' encoding='" + aSet + "'?>";
        };
        const QString wrong = QStringLiteral("Здесь стоят байты, недопустимые в кодировке файла.");
        const auto row = [&](const char *aName, const QByteArray &aBytes, const QString &aReason,
                             const QByteArray &aSource, int aLine) {
            QTest::newRow(aName) << aBytes << aReason << QString::fromUtf8(aSource) << aLine;
        };
        const auto refused = [&](const QByteArray &aSet) {
            row(aSet.constData(), declared(aSet) + "\n<VkDocQuery/>",
                QStringLiteral("Кодировка \"%1\" не поддерживается. Сохраните файл в кодировке "
                               "UTF-8 или windows-1251.")
                    .arg(QString::fromLatin1(aSet)),
                declared(aSet), 1);
        };
        for (const char *set : {"UTF-7", "ISO-2022-JP", "ISO-2022-KR", "HZ-GB-2312", "Shift_JIS",
                                "GB18030", "EBCDIC-CP-US", "IBM037", "IBM-1047", "SCSU", "Big5"})
            refused(set);
        const auto contradicted = [&](const QByteArray &aSet) {
            row(aSet.constData(), declared(aSet) + "\n<VkDocQuery/>",
                QStringLiteral("Файл записан не в той кодировке, которую он объявляет (%1).")
                    .arg(QString::fromLatin1(aSet)),
                declared(aSet), 1);
        };
        for (const char *set : {"UTF-16", "utf-16le", "UTF-32", "ISO-10646-UCS-4", "UCS-2"})
            contradicted(set);
        row("EBCDIC", "\x4C\x6F\xA7\x94\x93",
            QStringLiteral("Кодировка \"EBCDIC\" не поддерживается. Сохраните файл в кодировке "
                           "UTF-8 или windows-1251."),
            "", 1);
        row("letters that ASCII has not", declared("us-ascii") + "\n<VkDocQuery\xC6/>", wrong,
            "<VkDocQuery", 2);
        const auto utf16 = [](const QString &aText) -> QByteArray {
            return QStringEncoder(QStringConverter::Utf16LE).encode(aText);
        };
        const QByteArray half("\x3D\xD8", 2);
        row("half a character",
            utf16(QStringLiteral("<VkDocQuery>\n<a ")) + half +
                utf16(QStringLiteral("x</VkDocQuery>")),
            wrong, "<a", 2);
        row("half a character at the end", utf16(QStringLiteral("<VkDocQuery/>")) + half, wrong,
            "<VkDocQuery/>", 1);
        row("second half alone", utf16(QStringLiteral("<a>")) + QByteArray("\x1E\xDC", 2), wrong,
            "<a>", 1);
        row("half a unit", utf16(QStringLiteral("<VkDocQuery/>")) + " ", wrong, "<VkDocQuery/>", 1);
        row("beyond Unicode", QByteArray("<\0\0\0a\0\0\0\0\0\x11\0", 12), wrong, "<a", 1);
        row("zero byte behind the root", QByteArray("<VkDocQuery/>\n\0", 15),
            QStringLiteral("Extra content at the end of the document"), QByteArray(" "), 2);
        row("zero byte and more behind the root", QByteArray("<VkDocQuery/>\n\0<b/>", 19),
            QStringLiteral("Extra content at the end of the document"), " <b/>", 2);
        row("zero in UTF-16 behind the root", utf16(QStringLiteral("<VkDocQuery/>") + QChar(0)),
            QStringLiteral("Extra content at the end of the document"), "<VkDocQuery/> ", 1);
        // What begins like the mark of another character set once it is decoded.
        row("zeros in UTF-16", QByteArray("\0<\0\0\0?\0\0", 8),
            QStringLiteral("Char 0x0 out of allowed range"), "< ? ", 1);
        const QByteArray mark("\xEF\xBB\xBF");
        const QString none = QStringLiteral("Start tag expected, '<' not found");
        row("two marks", mark + mark + "<VkDocQuery/>", none, mark + mark + "<VkDocQuery/>", 1);
        row("two marks in UTF-16", utf16(QStringLiteral("\uFEFF\uFEFF<VkDocQuery/>")), none,
            mark + mark + "<VkDocQuery/>", 1);
        row("mark behind the declaration", "<?xml version='1.0'?>" + mark + "<VkDocQuery/>", none,
            "<?xml version='1.0'?>" + mark + "<VkDocQuery/>", 1);
        row("nothing but a mark", mark, QStringLiteral("Файл пуст."), "", 0);
        row("blanks behind a mark", utf16(QStringLiteral("\uFEFF  \n")),
            QStringLiteral("Файл пуст."), "", 0);
    }
    void UnreadableCharacters() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        QFETCH(QString, source);
        QFETCH(int, line);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        WriteBytes(name, bytes);
        VkDocQueryData record;
        QVERIFY(!record.ReadFromXmlFile(name));
        QCOMPARE(record.LastError, Explained(reason, source, line));
    }

    void ManyNamespaces_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("as many as there may be") << 100;
        QTest::newRow("one more") << 101;
    }
    void ManyNamespaces() {
        QFETCH(int, count);
        QByteArray bytes = "<VkDocQuery>";
        for (int i = 0; i < count; ++i) bytes += "<x xmlns:n" + QByteArray::number(i) + "='u'/>";
        XmlDocument document;
        QCOMPARE(document.LoadBytes(bytes + "</VkDocQuery>"), count == 100);
        QCOMPARE(document.ParseError().Reason,
                 count == 100 ? QString()
                              : QStringLiteral("Файл слишком сложен: допускается не более 100 "
                                               "пространств имен."));
    }

    void TooManyAttributesOfOneElement_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("line");
        const auto tag = [](int aCount) {
            QByteArray bytes = "<VkDocQuery>\n<i";
            for (int i = 0; i < aCount; ++i) bytes += " a" + QByteArray::number(i) + "='\"='";
            return bytes + "/></VkDocQuery>";
        };
        const QString text = QString::fromLatin1(tag(1001));
        const auto encoded = [&](QStringConverter::Encoding aEncoding) -> QByteArray {
            return QStringEncoder(aEncoding).encode(text);
        };
        QTest::newRow("as many as there may be") << tag(1000) << 0;
        QTest::newRow("one more") << tag(1001) << 2;
        QTest::newRow("very many") << tag(700000) << 2;
        QTest::newRow("the same again and again")
            << "<VkDocQuery" + QByteArray(" a=''").repeated(1000000) + "/>" << 1;
        QTest::newRow("quotes in a value")
            << "<VkDocQuery>\n<DocCriteria Notes='" + QByteArray("\"=").repeated(5000) +
                   "'/>\"\"\"</VkDocQuery>"
            << 0;
        const QByteArray quotes = QByteArray(" a=''").repeated(2000);
        QTest::newRow("quotes in a comment")
            << "<VkDocQuery><!-- < " + quotes + " > --></VkDocQuery>" << 0;
        QTest::newRow("quotes in an instruction")
            << "<VkDocQuery><?i < " + quotes + " > ?></VkDocQuery>" << 0;
        QTest::newRow("quotes in a section")
            << "<VkDocQuery><![CDATA[ < " + quotes + " > ]]></VkDocQuery>" << 0;
        QTest::newRow("quotes in a text")
            << "<VkDocQuery>" + quotes + "<a>" + quotes + "</a>" + quotes + "</VkDocQuery>" << 0;
        QTest::newRow("many behind a comment with a tag in it")
            << "<!-- <a b=' -->\n" + tag(1001) << 3;
        QTest::newRow("many behind a section with a tag in it")
            << "<VkDocQuery><![CDATA[ <a b=' ]]>\n" + tag(1001) + "</VkDocQuery>" << 3;
        QTest::newRow("UTF-16, small end") << encoded(QStringConverter::Utf16LE) << 2;
        QTest::newRow("UTF-16, big end") << encoded(QStringConverter::Utf16BE) << 2;
        QTest::newRow("UTF-32, small end") << encoded(QStringConverter::Utf32LE) << 2;
        QTest::newRow("UTF-32, big end") << encoded(QStringConverter::Utf32BE) << 2;
    }
    void TooManyAttributesOfOneElement() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, line);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        WriteBytes(name, bytes);
        VkDocQueryData record;
        QCOMPARE(record.ReadFromXmlFile(name), line == 0);
        QCOMPARE(record.LastError,
                 line == 0 ? QString()
                           : Explained(QStringLiteral("Файл слишком сложен: допускается не более "
                                                      "1000 атрибутов у одного элемента."),
                                       QString(), line));
    }

    /// The bound is that of one list, wherever its entries stand.
    void TooLongList_data() {
        QTest::addColumn<QByteArray>("between");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("reason");
        const QString tooLong = QStringLiteral(
            "Список \"TaxpayersList\" слишком длинный: допускается не более 1000000 записей.");
        QTest::newRow("as long as it may be") << QByteArray() << 1000000 << QString();
        QTest::newRow("one more") << QByteArray() << 1000001 << tooLong;
        QTest::newRow("nested entries between") << QByteArray("<j><i/></j>") << 600000 << QString();
    }
    void TooLongList() {
        QFETCH(QByteArray, between);
        QFETCH(int, count);
        QFETCH(QString, reason);
        const QByteArray bytes =
            "<VkDocQuery><TaxpayersCriteria><TaxpayersList>\n" +
            ("<i id='1'/>" + between).repeated(count) +
            "</TaxpayersList></TaxpayersCriteria><AccStreamCriteria><AccStreamsList><i/>"
            "</AccStreamsList></AccStreamCriteria></VkDocQuery>";
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        WriteBytes(name, bytes);
        VkDocQueryData record;
        QCOMPARE(record.ReadFromXmlFile(name), reason.isEmpty());
        if (reason.isEmpty()) return;
        QVERIFY2(record.LastError.startsWith(QStringLiteral("   Reason: ") + reason +
                                             QStringLiteral("\r\n   Source: ")),
                 qPrintable(record.LastError));
        QVERIFY(record.LastError.endsWith(QStringLiteral("\r\n   Line: 2")));
    }

    void MillionOfIdentitiesIsNotTooMany() {
        const QByteArray bytes =
            "<VkDocQuery>" + QByteArray("<i id='1'/>").repeated(1000000) + "</VkDocQuery>";
        XmlDocument document;
        QVERIFY(document.LoadBytes(bytes));
        int count = 0;
        const XmlNode root = document.Node().SelectSingleNode("VkDocQuery");
        for (XmlNode item = root.SelectSingleNode("i"); item; item = item.NextNode("i"))
            count += item.Attribute("id") == "1";
        QCOMPARE(count, 1000000);
    }
};

VK_TEST_CLASS(TestForeignFiles);

#include "TestForeignFiles.moc"
