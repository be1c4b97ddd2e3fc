#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/FilesLibrary.h"
#include "queryfile/XmlNode.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

const QByteArray theOldBytes = "the file as it was before";

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

    void Texts_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("isSaved");
        const auto row = [](const char *aName, const QString &aText, int aCount, bool aIsSaved) {
            QTest::newRow(aName) << aText << aCount << aIsSaved;
        };
        row("Latin", QStringLiteral("a"), 10'000'000, true);
        row("Latin, one more", QStringLiteral("a"), 10'000'001, false);
        row("Russian", QStringLiteral("ж"), 5'000'000, true);
        row("Russian, one more", QStringLiteral("ж"), 5'000'001, false);
        row("not of the code page, one more", QStringLiteral("\u4E00"), 3'333'334, false);
        row("pairs, one more", QStringLiteral("\U0001F600"), 2'500'001, false);
        row("signs of XML, one more", QStringLiteral("aaaaaaaa\"<"), 1'000'001, false);
    }
    void Texts() {
        QFETCH(QString, text);
        QFETCH(int, count);
        QFETCH(bool, isSaved);
        VkDocQueryData record;
        record.IsNotes = true;
        record.Notes = text.repeated(count);
        QCOMPARE(Save(record), isSaved);
        if (!isSaved) {
            QCOMPARE(record.LastError,
                     QStringLiteral("Текст \"Notes\" слишком длинный: допускается не более "
                                    "10000000 байт, русская буква занимает два."));
            return;
        }
        VkDocQueryData loaded;
        QVERIFY2(loaded.ReadFromXmlFile(theName), qPrintable(loaded.LastError));
        QVERIFY(loaded.Notes == record.Notes);
    }

    void Lists_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("as many as may be") << 1'000'000;
        QTest::newRow("one more") << 1'000'001;
    }
    void Lists() {
        QFETCH(int, count);
        VkDocQueryData record;
        record.AccStreamsList = std::make_shared<RecordCollection>();
        const auto entry = std::make_shared<BareRecord>();
        for (int i = 0; i < count; ++i) record.AccStreamsList->Add(entry);
        record.TaxpayersList = std::make_shared<RecordCollection>();  // is counted by itself
        for (int i = 0; i < 1000; ++i) record.TaxpayersList->Add(entry);
        if (count > 1'000'000) {
            QVERIFY(!Save(record));
            QCOMPARE(record.LastError,
                     QStringLiteral("Список \"AccStreamsList\" слишком длинный: допускается не "
                                    "более 1000000 записей."));
            return;
        }
        QVERIFY2(Save(record), qPrintable(record.LastError));
        XmlDocument document;
        QVERIFY2(document.Load(theName), qPrintable(document.ParseError().Reason));
    }

    void Elements_data() {
        QTest::addColumn<QString>("element");
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("elements, one more") << QStringLiteral("<b/>") << 3'000'000 << false;
        QTest::newRow("attributes, one more")
            << QStringLiteral("<b c='' d=\"'>\"/>") << 1'500'001 << false;
        QTest::newRow("lists of their own")
            << QStringLiteral("<b><i></i></b>") << 1'200'000 << true;
    }
    void Elements() {
        QFETCH(QString, element);
        QFETCH(int, count);
        QFETCH(bool, isSaved);
        QString raised;
        try {
            DefaultFilesLibrary().SaveTextToFile(QStringLiteral("<?xml version='1.0'?><a>") +
                                                     element.repeated(count) +
                                                     QStringLiteral("</a>"),
                                                 theName, 1251);
        } catch (const Failure &failure) {
            raised = failure.Description();
        }
        QCOMPARE(raised,
                 isSaved ? QString()
                         : QStringLiteral("Файл слишком сложен: в нем слишком много элементов."));
        QCOMPARE(QFileInfo(theName).size() == theOldBytes.size(), !isSaved);
    }

    void Sizes_data() {
        QTest::addColumn<int>("more");
        QTest::newRow("as large as may be") << 0;
        QTest::newRow("one byte more") << 1;
    }
    void Sizes() {
        QFETCH(int, more);
        constexpr qsizetype largest = qsizetype{64} * 1024 * 1024;
        QString raised;
        try {
            DefaultFilesLibrary().SaveTextToFile(QString(largest + more, u' '), theName, 1251);
        } catch (const Failure &failure) {
            raised = failure.Description();
        }
        QCOMPARE(raised, more == 0
                             ? QString()
                             : QStringLiteral("Файл слишком велик: допускается не более 64 МБ."));
        QCOMPARE(QFileInfo(theName).size(), more == 0 ? largest : theOldBytes.size());
    }

private:
    /// Saves; a save that fails leaves the file.
    bool Save(VkDocQueryData &rRecord) const {
        const bool saved = rRecord.WriteToXmlFile(theName);
        QFile file(theName);
        if (!saved && (!file.open(QIODevice::ReadOnly) || file.readAll() != theOldBytes))
            qFatal("the old file is lost");
        return saved;
    }

    std::unique_ptr<QTemporaryDir> theFolder;
    QString theName;
};

VK_TEST_CLASS(TestFileBounds);

#include "TestFileBounds.moc"
