#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/FileBounds.h"
#include "foundation/FilesLibrary.h"
#include "queryfile/XmlNode.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

const QByteArray theOldBytes = "the file as it was before";

const QString theTooLongText = QStringLiteral(
    "Текст \"Notes\" слишком длинный: допускается не более 10000000 байт, русская буква занимает "
    "два.");

QString FolderInMemory() {
    const QString memory = QStringLiteral("/dev/shm");
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}

class BareRecord : public Record {
public:
    double ID() const override { return 1; }
    void SetID(double) override {}
};

}  // namespace

/// What is too much for the reader is told when it is saved, and the old file stays.
class TestFileBounds : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));  // the library's own
    }
    void init() {
        theFolder = std::make_unique<QTemporaryDir>(FolderInMemory() + QStringLiteral("/bounds-"));
        theName = theFolder->filePath(QStringLiteral("a.qvk"));
        QFile file(theName);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(theOldBytes) == theOldBytes.size());
    }

    /// Saving and reading judge alike, to the last byte. Each text takes ten bytes of the parser.
    void Texts_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("Latin") << QStringLiteral("aaaaaaaaaa");
        QTest::newRow("characters") << QStringLiteral("aж\u4E00\U0001F600");
        QTest::newRow("by number") << QStringLiteral("&#127;&#1078;&#19968;&#128512;");
        QTest::newRow("ends of lines") << QStringLiteral("\r\n\r\raaa\n\n\n\r\n");
        QTest::newRow("signs of XML") << QStringLiteral("&amp;&#38;&quot;&lt;>'\t&amp;aa");
    }
    void Texts() {
        QFETCH(QString, text);
        const QString rest = QString(3'333'330, QChar(0x4E00)) + text;
        const QString form = QStringLiteral("<a>\r\n<b ver='1' Notes = \"%1\"/>\r\n%2</a>");
        const QString tail(1000, u' ');
        QCOMPARE(Judged(form.arg(rest, tail)), QStringList({QString(), QString()}));
        QCOMPARE(Judged(form.arg(rest + u'a', tail)),
                 QStringList({theTooLongText, theTooLongText}));
    }

    void Lists_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("refused");
        const QString full = QStringLiteral("<i/>").repeated(1'000'000);
        QTest::newRow("as many as may be")
            << QStringLiteral("<a><l>%1</l><m><i/><i></i></m></a>").arg(full) << QString();
        QTest::newRow("one more")
            << QStringLiteral("<a><l>%1<i></i></l></a>").arg(full)
            << QStringLiteral(
                   "Список \"l\" слишком длинный: допускается не более 1000000 записей.");
    }
    void Lists() {
        QFETCH(QString, text);
        QFETCH(QString, refused);
        QCOMPARE(Judged(text), QStringList({refused, refused}));
    }

    void Elements_data() {
        QTest::addColumn<QString>("element");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("refused");
        const QString tooMany =
            QStringLiteral("Файл слишком сложен: в нем слишком много элементов.");
        QTest::newRow("elements, one more") << QStringLiteral("<b/>") << 3'000'000 << tooMany;
        QTest::newRow("attributes, most")
            << QStringLiteral("<b c='' d=\"'>\" e='' f='' g=''/>") << 600'000 << QString();
        QTest::newRow("attributes, one more")
            << QStringLiteral("<b c='' d=\"'>\" e='' f='' g=''/>") << 600'001 << tooMany;
    }
    void Elements() {
        QFETCH(QString, element);
        QFETCH(int, count);
        QFETCH(QString, refused);
        const QString text =
            QStringLiteral("<?xml version='1.0'?><a>%1</a>").arg(element.repeated(count));
        QCOMPARE(JudgedOnSaving(text), refused);
    }

    void Sizes() {
        constexpr qint64 largest = qint64{64} * 1024 * 1024;
        CheckBounds(QStringView(), largest);
        QString raised;
        try {
            DefaultFilesLibrary().SaveTextToFile(QString(largest + 1, u' '), theName, 1251);
        } catch (const Failure &failure) {
            raised = failure.Description();
        }
        QCOMPARE(raised, QStringLiteral("Файл слишком велик: допускается не более 64 МБ."));
        OldFileIsThere();
    }

    /// The whole way from a record, and back.
    void Records_data() {
        QTest::addColumn<int>("text");
        QTest::addColumn<int>("tab");
        QTest::addColumn<int>("entries");
        QTest::addColumn<QString>("refused");
        // The parser may find no place to give memory back in front of the end of the file.
        for (const int tab : {0, 500})
            QTest::addRow("as much as may be, a tab of %d", tab)
                << 5'000'000 << tab << 1000 << QString();
        QTest::newRow("too long a text") << 5'000'001 << 0 << 0 << theTooLongText;
    }
    void Records() {
        QFETCH(int, text);
        QFETCH(int, tab);
        QFETCH(int, entries);
        QFETCH(QString, refused);
        VkDocQueryData record;
        record.IsNotes = true;
        record.Notes = QString(text, u'ж');
        record.LastTab = QString(tab, u't');
        record.AccStreamsList = std::make_shared<RecordCollection>();
        const auto entry = std::make_shared<BareRecord>();
        for (int i = 0; i < entries; ++i) record.AccStreamsList->Add(entry);
        QCOMPARE(record.WriteToXmlFile(theName), refused.isEmpty());
        QCOMPARE(record.LastError, refused);
        if (!refused.isEmpty()) {
            OldFileIsThere();
            return;
        }
        VkDocQueryData loaded;
        QVERIFY2(loaded.ReadFromXmlFile(theName), qPrintable(loaded.LastError));
        QVERIFY(loaded.Notes == record.Notes);
        QCOMPARE(loaded.LastTab, record.LastTab);
    }

private:
    /// What saving says against a text; empty if nothing.
    static QString JudgedOnSaving(const QString &aText) {
        try {
            CheckBounds(aText, 0);
        } catch (const Failure &failure) {
            return failure.Description();
        }
        return QString();
    }
    /// The same, and what reading says.
    static QStringList Judged(const QString &aText) {
        XmlDocument document;
        document.LoadBytes(aText.toUtf8());
        return {JudgedOnSaving(aText), document.ParseError().Reason};
    }

    void OldFileIsThere() const {
        QFile file(theName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), theOldBytes);
    }

    std::unique_ptr<QTemporaryDir> theFolder;
    QString theName;
};

VK_TEST_CLASS(TestFileBounds);

#include "TestFileBounds.moc"
