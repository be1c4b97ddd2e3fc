#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "look/ImageList.h"
#include "look/mVkPics.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

const QString theIde = QStringLiteral(VK_IDE_EXECUTABLE);

/// The answer for a process whose executable has that path.
bool IsIde(const QString &aPath) {
    SetExecutablePathSource([aPath] { return aPath; });
    return WeAreUnderIde();
}

}  // namespace

class TestPictureStore : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { SetExecutablePathSource(nullptr); }

    void ThisProcessIsNoDevelopmentEnvironment() { QVERIFY(!WeAreUnderIde()); }

    void ExecutableTellsTheDevelopmentEnvironment_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isIde");
        const auto row = [](const char *aName, const QString &aPath, bool aIsIde) {
            QTest::newRow(aName) << aPath << aIsIde;
        };
        row("bare name", theIde, true);
        row("bare name in another case", theIde.toUpper(), true);
        row("with a folder", QStringLiteral("/opt/ide/bin/") + theIde, true);
        row("with a folder of the other kind", QStringLiteral("C:\\ide\\") + theIde, true);
        row("in another case behind a folder", QStringLiteral("/opt/IDE/") + theIde.toUpper(),
            true);
        row("cut at a zero character", theIde + QChar(u'\0') + QStringLiteral("rest"), true);
        row("longer name", theIde + u'2', false);
        row("end of a longer name", u'x' + theIde, false);
        row("a folder of that name", QStringLiteral("/opt/") + theIde + QStringLiteral("/host"),
            false);
        row("separator is the last character", QStringLiteral("/opt/") + theIde + u'/', false);
        row("separator alone", QStringLiteral("/"), false);
        row("another program", QStringLiteral("/usr/bin/host"), false);
        row("unknown", QString(), false);
        row("zero character first", QString(QChar(u'\0')) + theIde, false);
        row("path of 3900 characters", u'/' + QString(3898 - theIde.size(), u'a') + u'/' + theIde,
            true);
        row("longer path is cut", u'/' + QString(3899 - theIde.size(), u'a') + u'/' + theIde,
            false);
    }
    void ExecutableTellsTheDevelopmentEnvironment() {
        QFETCH(QString, path);
        QFETCH(bool, isIde);
        QCOMPARE(IsIde(path), isIde);
    }

    void AnswerIsFoundOnce_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("the environment") << theIde;
        QTest::newRow("another") << QStringLiteral("/usr/bin/host");
        QTest::newRow("path cannot be told") << QString();
    }
    void AnswerIsFoundOnce() {
        QFETCH(QString, path);
        int count = 0;
        SetExecutablePathSource([&] {
            ++count;
            return path;
        });
        const bool first = WeAreUnderIde();
        path = theIde;
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(WeAreUnderIde(), first);
            QueryIcon(QStringLiteral("doc"));
        }
        QCOMPARE(count, 1);
    }

    void ListsGoWithoutPicturesUnderTheEnvironment() {
        QVERIFY(IsIde(theIde));
        QVERIFY(!QueryImageList(0));
        QCOMPARE(QueryIcon(QStringLiteral("doc")), QString());
    }

    void SharedListIsKept() {
        const auto list = QueryImageList(0);
        QVERIFY(list);
        QVERIFY(list->Contains(QStringLiteral("galka_green")));
        QCOMPARE(QueryImageList(0).get(), list.get());
        QCOMPARE(QueryImageList(1).get(), list.get());
    }

    void IconIsTheKey() {
        QCOMPARE(QueryIcon(QStringLiteral("doc_blank")), QStringLiteral("doc_blank"));
        QCOMPARE(QueryIcon(QString()), QString());
    }

    void UnknownKeyIsNotChecked() {
        const QString key = QueryIcon(QStringLiteral("no_such_picture"));
        QCOMPARE(key, QStringLiteral("no_such_picture"));
        QVERIFY_THROWS_EXCEPTION(Failure, QueryImageList(0)->Picture(key));
    }

    void FailuresNameTheirRoad() {
        SetExecutablePathSource(
            []() -> QString { throw Failure(70, QString(), QStringLiteral("D")); });
        try {
            QueryImageList(0);
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 70);
            QCOMPARE(failure.Description(),
                     QStringLiteral("[Vk_DocQuery::mVkPics.QueryImageList]\r\n"
                                    "[Vk_DocQuery::mVkPics.WeAreUnderIde]\r\nD"));
        }
    }
};

VK_TEST_CLASS(TestPictureStore);

#include "TestPictureStore.moc"
