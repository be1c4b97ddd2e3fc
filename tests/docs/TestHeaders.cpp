#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include "docs/Page.h"
#include "support/TestMain.h"

using namespace VkTests;

/// What docs.api cannot see: doxygen says nothing of an enumerator without a word.
class TestHeaders : public QObject {
    Q_OBJECT

private slots:
    void TellEveryEnumerator_data() {
        QTest::addColumn<QString>("header");
        for (const char *folder : {"include/Vk_DocQuery", "records/include/Vk_Records"}) {
            const QDir headers(QStringLiteral(VK_PROJECT "/") + QLatin1String(folder));
            for (const QString &name : headers.entryList({QStringLiteral("*.h")}))
                QTest::addRow("%s", qUtf8Printable(name)) << QLatin1String(folder) + u'/' + name;
        }
    }
    void TellEveryEnumerator() {
        QFETCH(QString, header);
        static const QRegularExpression body(QStringLiteral("\\benum [^;{]*\\{(.*?)\\};"),
                                             QRegularExpression::DotMatchesEverythingOption);
        // A comment may follow on the next line where the value is long.
        static const QRegularExpression told(
            QStringLiteral("\\b[A-Z]\\w+( =\\s*\\w+)?,\\s*///< \\S"));
        static const QRegularExpression comment(QStringLiteral("///[^\\n]*"));
        static const QRegularExpression item(QStringLiteral("\\b[A-Z]\\w+( =\\s*\\w+)?\\s*(,|$)"));
        const QString text = TextOfProject(header);
        QVERIFY(!text.isEmpty());
        for (auto bodies = body.globalMatch(text); bodies.hasNext();) {
            const QString items = bodies.next().captured(1);
            QCOMPARE(items.count(told), QString(items).remove(comment).trimmed().count(item));
        }
    }
};

VK_TEST_CLASS(TestHeaders);

#include "TestHeaders.moc"
