#include <QRegularExpression>
#include <QTest>

#include "docs/Page.h"
#include "query/Fields.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

/// The page about the criteria, held against the record and the panel.
class TestCriteriaPage : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        thePage = TextOfProject(QStringLiteral("docs/criteria.md"));
        QVERIFY(!thePage.isEmpty());
    }

    void TellsEveryFieldOnce() {
        QStringList told;
        static const QRegularExpression head(
            QStringLiteral("\\| Поле \\|[^\\n]*\\n\\|---[^\\n]*\\n((?:\\|[^\\n]*\\n)+)"));
        for (auto tables = head.globalMatch(thePage); tables.hasNext();) {
            for (const QStringList &row : CodeRowsOf(tables.next().captured(1)))
                told << CodesOf(row[0]);
        }
        QStringList real;
        for (const Field &field : theFields) real << QLatin1String(field.Name);
        told.sort();
        real.sort();
        QCOMPARE(told, real);
    }

    void TellsEveryNumberOfTheEnumerations() {
        const QString header =
            TextOfProject(QStringLiteral("include/Vk_DocQuery/VkDocQueryData.h"));
        static const QRegularExpression body(
            QStringLiteral("enum DocQuery\\w+ : qint32 \\{(.*?)\\};"),
            QRegularExpression::DotMatchesEverythingOption);
        static const QRegularExpression item(QStringLiteral("\\b(\\w+) = (\\d+)\\b"));
        int seen = 0;
        for (auto bodies = body.globalMatch(header); bodies.hasNext();) {
            const QString items = bodies.next().captured(1);
            for (auto found = item.globalMatch(items); found.hasNext(); ++seen) {
                const auto one = found.next();
                QVERIFY2(HasNumber(one.captured(1), one.captured(2)),
                         qUtf8Printable(one.captured()));
            }
        }
        QCOMPARE(seen, 51);
    }

    void TellsEveryCaption() {
        QFile file(QStringLiteral(VK_TEST_DATA "/panel_elements.csv"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        int seen = 0;
        for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            const QStringList cells = line.split(u';');
            if (cells.value(2) != u"check box" && cells.value(2) != u"option button") continue;
            const QString caption = u'"' + cells[4].trimmed() + u'"';
            QVERIFY2(thePage.contains(caption), qUtf8Printable(caption));
            ++seen;
        }
        QVERIFY(seen > 70);
    }

private:
    /// A row in which the enumerator stands, alone or beside one of the same number.
    bool HasNumber(const QString &aName, const QString &aNumber) const {
        for (const QStringList &row : CodeRowsOf(thePage)) {
            if (CodesOf(row[0]).contains(aName) && row[1] == aNumber) return true;
        }
        return false;
    }

    QString thePage;
};

VK_TEST_CLASS(TestCriteriaPage);

#include "TestCriteriaPage.moc"
