#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/FilesFailure.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace Vk_DocQuery {
/// The replacement for systems whose own calls the library does not know, under a name of its own.
void ReplaceFileByQt(const QString &aFileName, const QByteArray &aBytes);
}  // namespace Vk_DocQuery

namespace {

constexpr char theOld[] = "old";
constexpr char theNew[] = "the new one";

}  // namespace

class TestReplacementByQt : public QObject {
    Q_OBJECT

private slots:
    void init() {
        theFolder = std::make_unique<QTemporaryDir>();
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 0755), 0);
        QFile file(InFolder("there.qvk"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(theOld) == 3);
        QVERIFY(QFile::link(InFolder("there.qvk"), InFolder("link.qvk")));
        QVERIFY(QDir().mkdir(InFolder("folder")));
        QVERIFY(QDir().mkdir(InFolder("open")) &&
                QFile::copy(InFolder("there.qvk"), InFolder("open/there.qvk")));
        QCOMPARE(chmod(QFile::encodeName(InFolder("open")).constData(), 0777), 0);
        QCOMPARE(chmod(QFile::encodeName(InFolder("open/there.qvk")).constData(), 0444), 0);
        QCOMPARE(mkfifo(QFile::encodeName(InFolder("pipe")).constData(), 0666), 0);
    }

    void Saved_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("real");
        QTest::newRow("made") << QStringLiteral("нов.qvk") << QStringLiteral("нов.qvk");
        QTest::newRow("replaced") << QStringLiteral("there.qvk") << QStringLiteral("there.qvk");
        QTest::newRow("link") << QStringLiteral("link.qvk") << QStringLiteral("there.qvk");
    }
    void Saved() {
        QFETCH(QString, name);
        QFETCH(QString, real);
        const bool isLink = QFileInfo(theFolder->filePath(name)).isSymLink();
        const auto before = Files();
        ReplaceFileByQt(theFolder->filePath(name), theNew);
        QCOMPARE(Bytes(real), QByteArray(theNew));
        QCOMPARE(QFileInfo(theFolder->filePath(name)).isSymLink(), isLink);
        QCOMPARE(Files() - before, before.contains(real) ? QSet<QString>() : QSet<QString>{real});
    }

    void Refused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint32>("number");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *aName, const char *aFile, qint32 aNumber,
                            const char16_t *aReason) {
            QTest::newRow(aName) << QString::fromUtf8(aFile) << aNumber
                                 << QString::fromUtf16(aReason);
        };
        row("no name", "", InvalidArgument, u"Имя файла не задано.");
        row("folder", "@/folder", NotAFile, u"По этому пути находится папка, а не файл.");
        row("pipe", "@/pipe", NotAFile,
            u"По этому пути находится не обычный файл, а канал или устройство.");
        row("no folder", "@/нет/a.qvk", FolderMissing, u"Папка \"@/нет\" не найдена.");
        row("read-only", "@/open/there.qvk", PermissionDenied, u"Файл доступен только для чтения.");
        row("read-only folder", "@/a.qvk", PermissionDenied, u"Нет прав на запись в папку \"@\".");
    }
    void Refused() {
        QFETCH(QString, name);
        QFETCH(qint32, number);
        QFETCH(QString, reason);
        const auto before = Files();
        try {
            const VkTests::AsNobody nobody;
            ReplaceFileByQt(name.replace(u'@', theFolder->path()), theNew);
            QFAIL("it was saved");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Description(), reason.replace(u'@', theFolder->path()));
            QCOMPARE(failure.Number(), number);
        }
        QCOMPARE(Bytes(QStringLiteral("there.qvk")), QByteArray(theOld));
        QCOMPARE(Files(), before);
    }

private:
    QString InFolder(const char *aName) const {
        return theFolder->filePath(QString::fromUtf8(aName));
    }
    QByteArray Bytes(const QString &aName) const {
        QFile file(theFolder->filePath(aName));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QSet<QString> Files() const {
        const QStringList names =
            QDir(theFolder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
        return {names.cbegin(), names.cend()};
    }

    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestReplacementByQt);

#include "TestReplacementByQt.moc"
