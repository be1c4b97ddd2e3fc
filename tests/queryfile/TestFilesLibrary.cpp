#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/FilesLibrary.h"
#include "foundation/XmlBytes.h"
#include "queryfile/XmlText.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::AsNobody;

namespace {

const QByteArray theOldBytes = "the file as it was before";

QByteArray BytesOf(const QString &aName) {
    QFile file(aName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void WriteBytes(const QString &aName, const QByteArray &aBytes) {
    QFile file(aName);
    if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size())
        qFatal("cannot write");
}

/// What saving raises; empty if it does not.
QString Saved(const QString &aText, const QString &aName, qint32 aCodePage = 1251) {
    try {
        DefaultFilesLibrary().SaveTextToFile(aText, aName, aCodePage);
    } catch (const Failure &failure) {
        return failure.Description();
    }
    return QString();
}

/// No file of this process grows beyond the size while it lives; the signal that says so would end
/// it.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t aBytes) {
        getrlimit(RLIMIT_FSIZE, &theBefore);
        const rlimit limit{aBytes, theBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &theBefore); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit theBefore{};
};

/// A small file system on a folder while it lives, where that is allowed.
class TinyDisk {
public:
    explicit TinyDisk(const QString &aFolder, const char *aOptions = "size=64k")
        : theFolder(QFile::encodeName(aFolder)),
          theIsThere(mount("tmpfs", theFolder.constData(), "tmpfs", 0, aOptions) == 0) {}
    ~TinyDisk() {
        if (theIsThere) umount(theFolder.constData());
    }
    TinyDisk(const TinyDisk &) = delete;
    TinyDisk &operator=(const TinyDisk &) = delete;
    bool IsThere() const { return theIsThere; }
    bool MakeReadOnly() const {
        return mount(nullptr, theFolder.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

private:
    QByteArray theFolder;
    bool theIsThere;
};

}  // namespace

class TestFilesLibrary : public QObject {
    Q_OBJECT

private slots:
    void init() {
        theFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(theFolder->isValid());
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 0755), 0);
    }

    void Characters_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("page");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *aName, const QString &aText, int aPage,
                            const QByteArray &aBytes) {
            QTest::newRow(aName) << aText << aPage << aBytes;
        };
        row("plain", QStringLiteral("abc\t\r\n~"), 1251, "abc\t\r\n~");
        row("Russian", QStringLiteral("Ёж № я"), 1251, "\xA8\xE6 \xB9 \xFF");
        row("outside", QStringLiteral("a\u4E00b"), 1251, "a&#19968;b");
        row("accent", QStringLiteral("caf\u00E9"), 1251, "caf&#233;");
        row("pair", QStringLiteral("x\U0001F600y"), 1251, "x&#128512;y");
        row("C1 control", QStringLiteral("\u0098\u0085"), 1251, "&#152;&#133;");
        row("delete", QStringLiteral("\u007F"), 1251, "\x7F");
        row("no-break space", QStringLiteral("\u00A0"), 1251, "\xA0");
        row("question mark", QStringLiteral("?"), 1251, "?");
        row("empty", QString(), 1251, "");
        row("many outside", QString(1000, QChar(0x4E00)), 1251,
            QByteArray("&#19968;").repeated(1000));
        row("long, one outside", QString(99, u'a') + QChar(0x4E00) + QString(99, u'b'), 1251,
            QByteArray(99, 'a') + "&#19968;" + QByteArray(99, 'b'));
        row("866", QStringLiteral("Ж\u4E00"), 866, "\x86&#19968;");
        row("UTF-8", QStringLiteral("Ж\U0001F600"), 65001, "\xD0\x96\xF0\x9F\x98\x80");
    }
    void Characters() {
        QFETCH(QString, text);
        QFETCH(int, page);
        QFETCH(QByteArray, bytes);
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        QCOMPARE(Saved(text, name, page), QString());
        QCOMPARE(BytesOf(name), bytes);
    }

    /// Every byte of the upper half, written and read.
    void Windows1251() {
        static constexpr char16_t characters[] = {
            0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
            0x20AC, 0x2030, 0x0409, 0x2039, 0x040A, 0x040C, 0x040B, 0x040F,  // 88
            0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
            0,      0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F,  // 98
            0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7,  // A0
            0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,  // A8
            0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7,  // B0
            0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457,  // B8
        };
        const auto character = [&](int aByte) {
            if (aByte < 0xC0) return characters[aByte - 0x80];
            return static_cast<char16_t>(aByte - 0xC0 + 0x0410);  // the alphabet is in order
        };
        for (int byte = 0x80; byte < 0x100; ++byte) {
            if (character(byte) == 0) continue;
            const QByteArray coded(1, static_cast<char>(byte));
            const QString text(QChar(character(byte)));
            QCOMPARE(XmlBytes(text, 1251), coded);
            const QByteArray declaration = "<?xml version='1.0' encoding='windows-1251'?>";
            QCOMPARE(XmlTextOf(declaration + coded).Utf8, declaration + text.toUtf8());
        }
    }

    void RefusedCharacters_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("code");
        const auto row = [](char16_t aUnit, const char *aCode) {
            QTest::newRow(aCode) << QString(40, u'a') + QChar(aUnit) + QStringLiteral("b")
                                 << QString::fromLatin1(aCode);
        };
        row(0x0000, "U+0000");
        row(0x0001, "U+0001");
        row(0x000B, "U+000B");
        row(0x001F, "U+001F");
        row(0xFFFE, "U+FFFE");
        row(0xFFFF, "U+FFFF");
        row(0xD83D, "U+D83D");
        row(0xDE00, "U+DE00");
    }
    void RefusedCharacters() {
        QFETCH(QString, text);
        QFETCH(QString, code);
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        for (const qint32 page : {1251, 65001}) {
            QCOMPARE(Saved(text, name, page),
                     QStringLiteral("Символ %1 нельзя сохранить в файле. Уберите его из текста.")
                         .arg(code));
            QCOMPARE(Saved(text.left(41), name, page),
                     QStringLiteral("Символ %1 нельзя сохранить в файле. Уберите его из текста.")
                         .arg(code));
        }
        OldFileIsThereAlone(name);
    }

    void UnknownCodePage() {
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        QCOMPARE(Saved(QStringLiteral("x"), name, 77777),
                 QStringLiteral("Кодовая страница 77777 не поддерживается."));
        QVERIFY(!QFile::exists(name));
    }

    /// What a record holds comes back whole, whatever characters they are.
    void TextsComeBack() {
        const QString name = theFolder->filePath(QStringLiteral("Запрос \u4E00.qvk"));
        VkDocQueryData record;
        record.IsNotes = true;
        record.Notes = QStringLiteral("caf\u00E9 \u4E00 \U0001F600 \u0098 Ёж & <\"'> ?");
        DefaultFilesLibrary().SaveTextToFile(record.WriteToXmlString(true, 0), name, 1251);
        VkDocQueryData loaded;
        QVERIFY2(loaded.ReadFromXmlFile(name), qPrintable(loaded.LastError));
        QCOMPARE(loaded.Notes, record.Notes);
    }

    void FileIsReplacedAsAWhole() {
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        QVERIFY(QFile::setPermissions(name, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        QCOMPARE(Saved(QStringLiteral("new"), name), QString());
        QCOMPARE(BytesOf(name), QByteArray("new"));
        QCOMPARE(QFile::permissions(name) & 0x0077, QFileDevice::Permissions());
        QCOMPARE(Files(), QStringList{QStringLiteral("a.txt")});
    }

    void NewFileHasTheRightsOfAnyNewFile() {
        WriteBytes(theFolder->filePath(QStringLiteral("any.txt")), theOldBytes);
        QCOMPARE(Saved(QStringLiteral("new"), theFolder->filePath(QStringLiteral("a.txt"))),
                 QString());
        QCOMPARE(ModeOf(QStringLiteral("a.txt")), ModeOf(QStringLiteral("any.txt")));
    }

    void LinkStaysALink_data() {
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("whole path") << QFile::encodeName(QStringLiteral("@/e/y/real.txt"));
        QTest::newRow("beside it") << QByteArray("../y/real.txt");
        QTest::newRow("link to a link") << QByteArray("../y/second");
        QTest::newRow("in a linked folder") << QByteArray("../linked/real.txt");
    }
    /// Among the folders there is a link, so that the words of a path lead elsewhere: "f" leads to
    /// "e/x", and "f/../y" is "e/y".
    void LinkStaysALink() {
        QFETCH(QByteArray, target);
        MakeLinkedFolders();
        const QString link = theFolder->filePath(QStringLiteral("f/link.txt"));
        Link(target.replace('@', QFile::encodeName(theFolder->path())),
             QStringLiteral("e/x/link.txt"));
        for (const bool isThere : {true, false}) {
            if (!isThere) QVERIFY(QFile::remove(InFolder("e/y/real.txt")));
            QCOMPARE(Saved(QStringLiteral("new"), link), QString());
            QVERIFY(QFileInfo(link).isSymLink());
            QCOMPARE(BytesOf(InFolder("e/y/real.txt")), QByteArray("new"));
            QCOMPARE(BytesOf(InFolder("y/real.txt")), theOldBytes);
        }
        QCOMPARE(QDir(InFolder("e/x")).entryList(QDir::Files | QDir::Hidden | QDir::System),
                 QStringList{QStringLiteral("link.txt")});
    }

    void LinksThatLeadNowhere_data() {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QString>("reason");
        const QString circle =
            QStringLiteral("По этому пути находится ссылка, которая ведет по кругу.");
        QTest::newRow("to itself") << QByteArray("link.txt") << circle;
        QTest::newRow("there and back") << QByteArray("back") << circle;
        QTest::newRow("through itself") << QByteArray("link.txt/a.txt") << circle;
        QTest::newRow("missing folder")
            << QByteArray("../none/a.txt") << QStringLiteral("Папка \"@/e/none\" не найдена.");
        QTest::newRow("below a file") << QByteArray("../y/real.txt/a.txt")
                                      << QStringLiteral("Папка \"@/e/y/real.txt\" не найдена.");
        QTest::newRow("to a folder")
            << QByteArray("../y") << QStringLiteral("По этому пути находится папка, а не файл.");
        QTest::newRow("to a device")
            << QByteArray("/dev/null")
            << QStringLiteral("По этому пути находится не обычный файл, а канал или устройство.");
    }
    void LinksThatLeadNowhere() {
        QFETCH(QByteArray, target);
        QFETCH(QString, reason);
        MakeLinkedFolders();
        Link(target, QStringLiteral("e/x/link.txt"));
        Link("link.txt", QStringLiteral("e/x/back"));
        const QString link = InFolder("f/link.txt");
        QString raised = Saved(QStringLiteral("new"), link);
        raised.replace(QStringLiteral("/f/../"), QStringLiteral("/e/"));
        QCOMPARE(raised.replace(theFolder->path() + QStringLiteral("/e/x/../"),
                                theFolder->path() + QStringLiteral("/e/")),
                 reason.replace(u'@', theFolder->path()));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(BytesOf(InFolder("e/y/real.txt")), theOldBytes);
    }

    /// Who gives a file a second name keeps a version by it.
    void OtherNameKeepsTheOldFile() {
        const QString name = InFolder("a.txt");
        WriteBytes(name, theOldBytes);
        QCOMPARE(link(QFile::encodeName(name).constData(),
                      QFile::encodeName(InFolder("version.txt")).constData()),
                 0);
        QCOMPARE(Saved(QStringLiteral("new"), name), QString());
        QCOMPARE(BytesOf(name), QByteArray("new"));
        QCOMPARE(BytesOf(InFolder("version.txt")), theOldBytes);
    }

    void NameAlone() {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(theFolder->path()));
        const QString first = Saved(QStringLiteral("new"), QStringLiteral("a.txt"));
        const QString second = Saved(QStringLiteral("newer"), QStringLiteral("./a.txt"));
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(first + second, QString());
        QCOMPARE(BytesOf(InFolder("a.txt")), QByteArray("newer"));
    }

    /// What stands in front of a ".." is told as well: it is what may be missing.
    void MissingFolderInFrontOfItsParent() {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(theFolder->path()));
        const QString plain = Saved(QStringLiteral("new"), QStringLiteral("./нет/a.txt"));
        const QString parent = Saved(QStringLiteral("new"), QStringLiteral("нет/../a.txt"));
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(plain, QStringLiteral("Папка \"%1\" не найдена.").arg(InFolder("нет")));
        QCOMPARE(parent, QStringLiteral("Папка \"%1\" не найдена.").arg(InFolder("нет/..")));
        QCOMPARE(Files(), QStringList());
    }

    /// A name without its folder, when there is no folder that the program stands in.
    void WorkingFolderThatHasGone() {
        const QString before = QDir::currentPath();
        const QString gone = InFolder("gone");
        QVERIFY(QDir().mkdir(gone) && QDir::setCurrent(gone) && QDir().rmdir(gone));
        QStringList raised;
        for (const char *name : {"a.txt", "./a.txt", "b/a.txt", "../a.txt"})
            raised << Saved(QStringLiteral("new"), QString::fromLatin1(name));
        const QString whole = Saved(QStringLiteral("new"), InFolder("a.txt"));
        const QString missing = Saved(QStringLiteral("new"), InFolder("none/a.txt"));
        QVERIFY(QDir::setCurrent(before));
        raised.removeDuplicates();
        QCOMPARE(raised,
                 QStringList{QStringLiteral("Текущая папка программы удалена или недоступна. "
                                            "Укажите полный путь к файлу.")});
        QCOMPARE(whole, QString());
        QCOMPARE(missing, QStringLiteral("Папка \"%1\" не найдена.").arg(InFolder("none")));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.txt")});
    }

    void LongNames_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        for (const int length : {248, 249, 255})
            QTest::addRow("%d", length) << QString(length, u'x') << QString();
        QTest::newRow("Russian") << QString(127, u'ж') << QString();
        const QString refused = QStringLiteral("Слишком длинное имя файла.");
        QTest::newRow("256") << QString(256, u'x') << refused;
        QTest::newRow("Russian, 256") << QString(128, u'ж') << refused;
    }
    void LongNames() {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        for (const char *text : {"first", "second", "third"}) {
            QCOMPARE(Saved(QString::fromLatin1(text), theFolder->filePath(name)), reason);
            if (reason.isEmpty()) QCOMPARE(BytesOf(theFolder->filePath(name)), QByteArray(text));
        }
        QCOMPARE(Files(), reason.isEmpty() ? QStringList{name} : QStringList());
    }

    void PlacesThatCannotBeWritten() {
        QCOMPARE(Saved(QStringLiteral("x"), QString()), QStringLiteral("Имя файла не задано."));
        QCOMPARE(Saved(QStringLiteral("x"), InFolder("a") + QChar(0) + u'b'),
                 QStringLiteral("В имени файла есть недопустимый знак."));
        WriteBytes(InFolder("a\uFFFDb"), theOldBytes);  // as half a character would be written
        QCOMPARE(Saved(QStringLiteral("x"), InFolder("a") + QChar(0xD800) + u'b'),
                 QStringLiteral("В имени файла есть недопустимый знак."));
        OldFileIsThereAlone(InFolder("a\uFFFDb"));
        const QString missing = theFolder->filePath(QStringLiteral("нет"));
        QCOMPARE(Saved(QStringLiteral("x"), missing + QStringLiteral("/a.qvk")),
                 QStringLiteral("Папка \"%1\" не найдена.").arg(missing));
        QVERIFY(QDir().mkdir(missing));
        QCOMPARE(Saved(QStringLiteral("x"), missing),
                 QStringLiteral("По этому пути находится папка, а не файл."));
        QVERIFY(QFileInfo(missing).isDir());
        QCOMPARE(
            Saved(QStringLiteral("x"), QStringLiteral("/dev/full")),
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
        const QString pipe = theFolder->filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0666), 0);
        QCOMPARE(
            Saved(QStringLiteral("x"), pipe),
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
    }

    void ReadOnlyFile() {
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        QCOMPARE(chmod(QFile::encodeName(name).constData(), 0444), 0);
        QString reason;
        {
            const AsNobody nobody;
            reason = Saved(QStringLiteral("new"), name);
        }
        QCOMPARE(reason, QStringLiteral("Файл доступен только для чтения."));
        OldFileIsThereAlone(name);
    }

    void ReadOnlyFolder() {
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        QCOMPARE(chmod(QFile::encodeName(name).constData(), 0666), 0);
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 0555), 0);
        QString reason;
        {
            const AsNobody nobody;
            reason = Saved(QStringLiteral("new"), name);
        }
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 0755), 0);
        QCOMPARE(reason,
                 QStringLiteral("Нет прав на запись в папку \"%1\".").arg(theFolder->path()));
        OldFileIsThereAlone(name);
    }

    /// A folder whose list may be seen, but that nobody gets into.
    void ClosedFolder() {
        if (geteuid() != 0) QSKIP("needs a folder of another user");
        const QString name = InFolder("a.txt");
        WriteBytes(name, theOldBytes);
        GiveToNobody(name);
        const QByteArray folder = QFile::encodeName(theFolder->path());
        QCOMPARE(chmod(folder.constData(), 0666), 0);
        QString reason;
        {
            const AsNobody nobody;
            reason = Saved(QStringLiteral("new"), name);
        }
        QCOMPARE(chmod(folder.constData(), 0755), 0);
        QCOMPARE(reason,
                 QStringLiteral("Нет прав на доступ к папке \"%1\".").arg(theFolder->path()));
        OldFileIsThereAlone(name);
    }

    /// A folder in which files may be made, but whose list may not be seen.
    void HiddenFolder() {
        const QString name = InFolder("a.txt");
        WriteBytes(name, theOldBytes);
        GiveToNobody(name);
        const QByteArray folder = QFile::encodeName(theFolder->path());
        QCOMPARE(chmod(folder.constData(), 0333), 0);
        QString reason;
        {
            const AsNobody nobody;
            reason = Saved(QStringLiteral("new"), name);
        }
        QCOMPARE(chmod(folder.constData(), 0755), 0);
        QCOMPARE(reason, QString());
        QCOMPARE(BytesOf(name), QByteArray("new"));
    }

    /// Little room after little room, and no file is lost for it.
    void FullDisk_data() {
        QTest::addColumn<QByteArray>("options");
        QTest::addColumn<int>("length");
        QTest::newRow("bytes") << QByteArray("size=64k") << 200000;
        QTest::newRow("last byte") << QByteArray("size=64k") << 65536 - 4096 + 1;
        QTest::newRow("files") << QByteArray("size=64k,nr_inodes=2") << 10;
    }
    void FullDisk() {
        QFETCH(QByteArray, options);
        QFETCH(int, length);
        const QString disk = InFolder("disk");
        QVERIFY(QDir().mkdir(disk));
        const TinyDisk tiny(disk, options.constData());
        if (!tiny.IsThere()) QSKIP("mounting is not allowed here");
        const QString name = disk + QStringLiteral("/a.txt");
        WriteBytes(name, theOldBytes);
        QCOMPARE(Saved(QString(length, u'x'), name), QStringLiteral("На диске не хватает места."));
        QCOMPARE(BytesOf(name), theOldBytes);
        QCOMPARE(QDir(disk).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("a.txt")});
    }

    void DiskForReadingAlone() {
        const QString disk = InFolder("disk");
        QVERIFY(QDir().mkdir(disk));
        const TinyDisk tiny(disk);
        if (!tiny.IsThere()) QSKIP("mounting is not allowed here");
        const QString name = disk + QStringLiteral("/a.txt");
        WriteBytes(name, theOldBytes);
        QVERIFY(tiny.MakeReadOnly());
        for (const QString &file : {name, disk + QStringLiteral("/b.txt")})
            QCOMPARE(Saved(QStringLiteral("new"), file),
                     QStringLiteral("Диск доступен только для чтения."));
        QCOMPARE(BytesOf(name), theOldBytes);
    }

    /// As a container puts a file of its host over one of its own.
    void FileThatIsMounted() {
        const QString name = InFolder("a.txt");
        WriteBytes(name, theOldBytes);
        const QByteArray path = QFile::encodeName(name);
        if (mount(path.constData(), path.constData(), nullptr, MS_BIND, nullptr) != 0)
            QSKIP("mounting is not allowed here");
        const QString reason = Saved(QStringLiteral("new"), name);
        QCOMPARE(umount(path.constData()), 0);
        QCOMPARE(reason, QStringLiteral("Файл не удалось заменить: он подключен к этой папке как "
                                        "отдельный диск. Сохраните под другим именем."));
        OldFileIsThereAlone(name);
    }

    void FileSizeLimitReached() {
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        QString reason;
        {
            const FileSizeLimit limit(1000);
            reason = Saved(QString(200000, u'x'), name);
        }
        QCOMPARE(reason, QStringLiteral("На диске не хватает места."));
        OldFileIsThereAlone(name);
    }

    /// In a folder with the sticky bit nobody may write into the file of another, but not replace
    /// it.
    void RenameThatFails() {
        if (geteuid() != 0) QSKIP("needs a file of another user");
        const QString name = theFolder->filePath(QStringLiteral("a.txt"));
        WriteBytes(name, theOldBytes);
        GiveToNobody(name);
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 01777), 0);
        QString reason;
        {
            const AsNobody nobody;
            reason = Saved(QStringLiteral("new"), name);
        }
        QCOMPARE(reason, QStringLiteral("Файл не удалось заменить: нет прав на его удаление."));
        OldFileIsThereAlone(name);
    }

    void Paths_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("shown");
        const QString folder = QStringLiteral("/") + QString(30, u'b');
        const QString deep = folder + folder + folder + folder;
        const QString name(120, u'n');
        QTest::newRow("short") << QStringLiteral("/home/user/a.qvk")
                               << QStringLiteral("/home/user/a.qvk");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("just short") << u'/' + QString(99, u'x') << u'/' + QString(99, u'x');
        QTest::newRow("long") << QStringLiteral("/home") + deep + QStringLiteral("/a.qvk")
                              << QStringLiteral("/home/...") + folder + folder +
                                     QStringLiteral("/a.qvk");
        QTest::newRow("drive") << QStringLiteral("C:\\Дом") + QString(deep).replace(u'/', u'\\') +
                                      QStringLiteral("\\a.qvk")
                               << QStringLiteral("C:\\Дом\\...") +
                                      QString(folder + folder).replace(u'/', u'\\') +
                                      QStringLiteral("\\a.qvk");
        QTest::newRow("long name")
            << QStringLiteral("/home/") + name << QStringLiteral(".../") + name;
        QTest::newRow("long first folder")
            << u'/' + QString(100, u'f') + QStringLiteral("/a.qvk") << QStringLiteral(".../a.qvk");
        QTest::newRow("name alone") << name << QStringLiteral("...") + name;
    }
    void Paths() {
        QFETCH(QString, path);
        QFETCH(QString, shown);
        QString head;
        QString tail;
        QString name;
        QCOMPARE(DefaultFilesLibrary().ShortenFilePath(path, head, tail, name), shown);
        QVERIFY(shown.endsWith(name));
        QVERIFY(path.startsWith(head));
        QVERIFY(path.endsWith(tail));
        QVERIFY(!name.contains(u'/') && !name.contains(u'\\'));
        QCOMPARE(shown, path == shown ? tail : head + QStringLiteral("...") + tail);
    }

private:
    QString InFolder(const char *aName) const {
        return theFolder->filePath(QString::fromUtf8(aName));
    }
    /// Anybody may write into the file, and the group is one that the user without rights is in.
    static void GiveToNobody(const QString &aName) {
        const QByteArray name = QFile::encodeName(aName);
        if (chmod(name.constData(), 0666) != 0 ||
            (geteuid() == 0 && chown(name.constData(), 0, 65534) != 0))
            qFatal("cannot give away");
    }
    void Link(const QByteArray &aTarget, const QString &aName) const {
        const QByteArray name = QFile::encodeName(theFolder->filePath(aName));
        if (symlink(aTarget.constData(), name.constData()) != 0) qFatal("cannot link");
    }
    void MakeLinkedFolders() const {
        for (const char *folder : {"e/x", "e/y", "y"}) QVERIFY(QDir().mkpath(InFolder(folder)));
        WriteBytes(InFolder("e/y/real.txt"), theOldBytes);
        WriteBytes(InFolder("y/real.txt"), theOldBytes);
        Link("e/x", QStringLiteral("f"));
        Link("real.txt", QStringLiteral("e/y/second"));
        Link("y", QStringLiteral("e/linked"));
    }
    mode_t ModeOf(const QString &aName) const {
        struct stat stat {};
        const QByteArray name = QFile::encodeName(theFolder->filePath(aName));
        return ::stat(name.constData(), &stat) == 0 ? stat.st_mode : 0;
    }

    QStringList Files() const {
        return QDir(theFolder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    /// The file is as it was, and nothing else was left in its folder.
    void OldFileIsThereAlone(const QString &aName) const {
        QCOMPARE(BytesOf(aName), theOldBytes);
        QCOMPARE(Files(), QStringList{QFileInfo(aName).fileName()});
    }

    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestFilesLibrary);

#include "TestFilesLibrary.moc"
