#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include "docs/Page.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

/// The pages of the project by their paths from its root, without what is built in it.
QStringList Pages() {
    const QDir root(QStringLiteral(VK_PROJECT));
    QStringList pages = root.entryList({QStringLiteral("*.md")}, QDir::Files);
    for (const QString &folder : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (folder == u"build" || folder == u"out") continue;
        QDirIterator files(root.filePath(folder), {QStringLiteral("*.md")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) pages << root.relativeFilePath(files.next());
    }
    return pages;
}

/// As a heading is named in links.
QString AnchorOf(const QString &aHeading) {
    static const QRegularExpression others(QStringLiteral("[^\\w -]"),
                                           QRegularExpression::UseUnicodePropertiesOption);
    return aHeading.toLower().remove(others).replace(u' ', u'-');
}

bool HasAnchor(const QString &aText, const QString &aAnchor) {
    static const QRegularExpression heading(QStringLiteral("^#+ (.+)$"),
                                            QRegularExpression::MultilineOption);
    for (auto found = heading.globalMatch(aText); found.hasNext();) {
        if (AnchorOf(found.next().captured(1)) == aAnchor) return true;
    }
    return false;
}

}  // namespace

/// Links between the pages of the project.
class TestLinks : public QObject {
    Q_OBJECT

private slots:
    void LeadSomewhere_data() {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("link");
        static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
        for (const QString &page : Pages()) {
            const QString text = TextOfProject(page);
            for (auto found = link.globalMatch(text); found.hasNext();) {
                const QString target = found.next().captured(1);
                QTest::addRow("%s: %s", qUtf8Printable(page), qUtf8Printable(target))
                    << page << target;
            }
        }
    }
    void LeadSomewhere() {
        QFETCH(QString, page);
        QFETCH(QString, link);
        if (link.contains(u"://")) QSKIP("leads out of the project");
        const QString path = link.section(u'#', 0, 0);
        const QString anchor = link.section(u'#', 1);
        const QString target =
            path.isEmpty() ? page : QDir::cleanPath(QFileInfo(page).path() + u'/' + path);
        QVERIFY2(QFileInfo::exists(QStringLiteral(VK_PROJECT "/") + target),
                 qUtf8Printable(target));
        if (!anchor.isEmpty()) QVERIFY(HasAnchor(TextOfProject(target), anchor));
    }

    void EveryPageIsFoundFromTheReadme_data() {
        QTest::addColumn<QString>("readme");
        QTest::addRow("English") << QStringLiteral("README.md");
        QTest::addRow("Russian") << QStringLiteral("README.ru.md");
    }
    void EveryPageIsFoundFromTheReadme() {
        QFETCH(QString, readme);
        const QString text = TextOfProject(readme);
        for (const QString &page : Pages()) {
            if (page.startsWith(u"docs/")) QVERIFY2(text.contains(page), qUtf8Printable(page));
        }
        QVERIFY(text.count(u'\n') <= 100);  // two screens
    }

    /// That of the English one is compiled.
    void TheRussianReadmeHasTheSameCode() {
        static const QRegularExpression block(QStringLiteral("```\\w+\n.*?\n```"),
                                              QRegularExpression::DotMatchesEverythingOption);
        const auto blocks = [&](const QString &aPage) {
            QStringList all;
            const QString text = TextOfProject(aPage);
            for (auto found = block.globalMatch(text); found.hasNext();)
                all << found.next().captured();
            return all;
        };
        QCOMPARE(blocks(QStringLiteral("README.md")).size(), 2);
        QCOMPARE(blocks(QStringLiteral("README.ru.md")), blocks(QStringLiteral("README.md")));
    }
};

VK_TEST_CLASS(TestLinks);

#include "TestLinks.moc"
