#include <algorithm>

#include <QDate>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/VkDocQueryData.h>

#include "docs/Page.h"
#include "foundation/FileBounds.h"
#include "query/Fields.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

QRegularExpression AttributeNamed(const QString &aName) {
    return QRegularExpression(QStringLiteral("\\b%1=\"([^\"]*)\"").arg(aName));
}

QString ValueIn(const QString &aFile, const QString &aName) {
    const auto match = AttributeNamed(aName).match(aFile);
    return match.hasMatch() ? match.captured(1) : QStringLiteral("(absent)");
}

QString WithSwitchOff(QString aFile, const QString &aSwitch) {
    return aFile.replace(aSwitch + QStringLiteral("=\"1\""), aSwitch + QStringLiteral("=\"0\""));
}

QString Without(QString aFile, const QString &aAttribute) {
    return aFile.remove(AttributeNamed(aAttribute));
}

}  // namespace

/// The page about the query file, held against the files that are written and read.
class TestFilePage : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        thePage = TextOfProject(QStringLiteral("docs/file-format.md"));
        QVERIFY(!thePage.isEmpty());
        QVERIFY(theFolder.isValid());
        theAttributes = CodeRowsOf(SectionOf(thePage, QStringLiteral("Every attribute"))
                                       .section(QStringLiteral("\n| List |"), 0, 0));
        QFile file(QStringLiteral(VK_TEST_DATA "/saved/full.qvk"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        // Nobody supplies records here, and characters are TestGoldenFiles' affair.
        static const QRegularExpression entry(QStringLiteral(" *<i id=[^>]*>\r\n"));
        theFull = QString::fromLatin1(file.readAll()).remove(entry);
        for (const char *text : {"Notes", "SignerSurname"}) {
            const QString name = QString::fromLatin1(text);
            theFull.replace(AttributeNamed(name), name + QStringLiteral("=\"sought\""));
        }
    }

    void ShowsTheFileOfANewRecord() {
        QString shown =
            thePage.section(QStringLiteral("```xml\n"), 1).section(QStringLiteral("```"), 0, 0);
        shown.replace(u'·', u' ').replace(u'\n', QStringLiteral("\r\n"));
        const int year = QDate::currentDate().year();
        shown.replace(QStringLiteral("\"Y\""), QStringLiteral("\"%1\"").arg(year));
        VkDocQueryData record;
        record.OnePeriodYear = record.RangePeriodYear1 = record.RangePeriodYear2 = year;
        QCOMPARE(Saved(record), shown);
    }

    void TellsEveryAttribute() {
        static const QRegularExpression attribute(QStringLiteral("(\\w+)=\""));
        QStringList written;
        for (auto found = attribute.globalMatch(theFull); found.hasNext();)
            written << found.next().captured(1);
        for (const char *other : {"version", "encoding", "ver"})
            QCOMPARE(written.removeAll(QLatin1String(other)), 1);
        QStringList told;
        for (const QStringList &row : theAttributes) told << CodesOf(row[0]);
        QCOMPARE(told, written);
    }

    void TellsWhenAnAttributeIsRead_data() { AddAttributes(); }
    void TellsWhenAnAttributeIsRead() {
        QFETCH(QString, name);
        QFETCH(QStringList, switches);
        QCOMPARE(ValueIn(SavedAgain(theFull), name), ValueIn(theFull, name));
        for (const QString &one : switches)
            QVERIFY(ValueIn(SavedAgain(WithSwitchOff(theFull, one)), name) !=
                    ValueIn(theFull, name));
        // Whatever else is off does not matter.
        QString others = theFull;
        for (const QStringList &row : theAttributes) {
            const QString other = CodesOf(row[0]).first();
            if (other.startsWith(u"Is") && other != name && !switches.contains(other))
                others = WithSwitchOff(others, other);
        }
        QCOMPARE(ValueIn(SavedAgain(others), name), ValueIn(theFull, name));
    }

    void TellsWhatAMissingAttributeGives_data() { AddAttributes(); }
    void TellsWhatAMissingAttributeGives() {
        QFETCH(QString, name);
        QFETCH(QString, missing);
        QVERIFY(missing == u"0" || missing == u"nothing");
        const QString expected = missing == u"0" ? missing : QString();
        QVERIFY(ValueIn(theFull, name) != expected || name == u"DocNumMode");  // 0 in the file
        QCOMPARE(ValueIn(SavedAgain(Without(theFull, name)), name), expected);
    }

    void TellsTheKindOfAnAttribute_data() { AddAttributes(); }
    void TellsTheKindOfAnAttribute() {
        QFETCH(QString, name);
        QFETCH(QString, kind);
        // What one text becomes tells the kinds from one another.
        struct Trial {
            QString Written, Switch, Number, Date, Text;
        };
        const Trial trials[] = {
            {QStringLiteral(" Yes "),
             QStringLiteral("1"),
             QStringLiteral("0"),
             {},
             QStringLiteral(" Yes ")},
            {QStringLiteral("2.5"),
             QStringLiteral("0"),
             QStringLiteral("2"),
             {},
             QStringLiteral("2.5")},
            {QStringLiteral("1.2.29"), QStringLiteral("0"), QStringLiteral("0"),
             QStringLiteral("01.02.2029"), QStringLiteral("1.2.29")},
            {QStringLiteral("31.12.30"), QStringLiteral("0"), QStringLiteral("0"),
             QStringLiteral("31.12.1930"), QStringLiteral("31.12.30")},
            {QStringLiteral("32.13.2020"), QStringLiteral("0"), QStringLiteral("0"),
             QStringLiteral("01.02.2021"), QStringLiteral("32.13.2020")}};
        for (const Trial &trial : trials) {
            QString file = theFull;
            file.replace(AttributeNamed(name),
                         QStringLiteral("%1=\"%2\"").arg(name, trial.Written));
            const QString &expected = kind == u"switch" ? trial.Switch
                                      : kind == u"date" ? trial.Date
                                      : kind == u"text" ? trial.Text
                                                        : trial.Number;
            QCOMPARE(ValueIn(SavedAgain(file), name), expected);
        }
        // Flags are written as numbers are; that they are flags the record knows.
        const auto *field = std::find_if(theFields.begin(), theFields.end(), [&](const Field &one) {
            return name == QLatin1String(one.Name);
        });
        QVERIFY(field != theFields.end());
        QCOMPARE(kind == u"flags", field->Kind == FieldKind::Flags);
    }

    void TellsWhatBecomesOfATextWithLineEnds() {
        VkDocQueryData record;
        record.IsNotes = true;
        record.NotesMode = NotesLike;
        record.Notes = QStringLiteral("a\r\nb\tc");
        QCOMPARE(ValueIn(SavedAgain(Saved(record)), QStringLiteral("Notes")),
                 QStringLiteral("a b c"));
    }

    void TellsEveryCharacterSet_data() {
        QTest::addColumn<QString>("name");
        const QString section = SectionOf(thePage, QStringLiteral("Character sets"));
        for (const QStringList &row : CodeRowsOf(section)) {
            for (const QString &name : CodesOf(row[0]))
                QTest::addRow("%s", qUtf8Printable(name)) << name;
        }
    }
    void TellsEveryCharacterSet() {
        QFETCH(QString, name);
        for (const QString &form : QStringList{name, name.toUpper()}) {
            QString file = theFull;
            file.replace(QStringLiteral("windows-1251"), form);
            QCOMPARE(ValueIn(SavedAgain(file), QStringLiteral("DocStatuses")),
                     QStringLiteral("13"));
        }
    }

    void TellsEveryBound_data() {
        QTest::addColumn<QString>("of");
        QTest::addColumn<qint64>("most");
        QTest::addRow("file") << QStringLiteral("the file") << theLargestFile / (1024 * 1024);
        QTest::addRow("list") << QStringLiteral("entries of one list")
                              << qint64{theMostListEntries};
        QTest::addRow("value") << QStringLiteral("one value") << theLongestValue;
        QTest::addRow("elements") << QStringLiteral("elements, and attributes as well")
                                  << theMostElementsOfFile;
        QTest::addRow("attributes")
            << QStringLiteral("attributes of one element") << qint64{theMostAttributesOfElement};
        QTest::addRow("depth") << QStringLiteral("elements in one another")
                               << qint64{theDeepestElement};
        QTest::addRow("names") << QStringLiteral("different names") << qint64{theMostNamesOfFile};
        QTest::addRow("name") << QStringLiteral("one name") << qint64{theLongestName};
        QTest::addRow("namespaces")
            << QStringLiteral("namespaces that are declared") << qint64{theMostNamespacesOfFile};
    }
    void TellsEveryBound() {
        QFETCH(QString, of);
        QFETCH(qint64, most);
        const QString row =
            QStringLiteral("\n| %1 | %2 ").arg(of, QLocale(QLocale::English).toString(most));
        QVERIFY(SectionOf(thePage, QStringLiteral("Bounds")).contains(row));
    }

private:
    void AddAttributes() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("switches");
        QTest::addColumn<QString>("missing");
        for (const QStringList &row : theAttributes) {
            const QString name = CodesOf(row[0]).first();
            QTest::addRow("%s", qUtf8Printable(name))
                << name << row[1] << CodesOf(row[2]) << row[3];
        }
    }

    QString Saved(VkDocQueryData &aRecord) const {
        if (!aRecord.WriteToXmlFile(theFolder.filePath(QStringLiteral("saved.qvk"))))
            return QStringLiteral("not saved: ") + aRecord.LastError;
        QFile file(theFolder.filePath(QStringLiteral("saved.qvk")));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll())
                                              : QStringLiteral("(unreadable)");
    }

    /// What a new record writes that has read a file of this text.
    QString SavedAgain(const QString &aText) const {
        QFile file(theFolder.filePath(QStringLiteral("read.qvk")));
        if (!file.open(QIODevice::WriteOnly) || file.write(aText.toLatin1()) < 0)
            return QStringLiteral("(not written)");
        file.close();
        VkDocQueryData record;
        if (!record.ReadFromXmlFile(file.fileName()))
            return QStringLiteral("not read: ") + record.LastError;
        return record.WriteToXmlString(true, 0);  // a save waits for the disk
    }

    QString thePage;
    QString theFull;
    QList<QStringList> theAttributes;
    QTemporaryDir theFolder;
};

VK_TEST_CLASS(TestFilePage);

#include "TestFilePage.moc"
