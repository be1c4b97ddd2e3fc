#include <thread>

#include <QIcon>
#include <QPixmap>
#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/PictureKeys.h>

#include "look/Pictures.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

template <std::size_t Count>
QStringList Listed(const char16_t *const (&aKeys)[Count]) {
    QStringList keys;
    for (const char16_t *key : aKeys) keys << QString::fromUtf16(key);
    return keys;
}

QIcon Coloured(Qt::GlobalColor aColour) {
    QPixmap pixmap(16, 16);
    pixmap.fill(aColour);
    return pixmap;
}

/// The picture of a list as it is drawn on a plain screen.
QImage Drawn(const ImageList &aList, const QString &aKey) {
    return aList.Picture(aKey).pixmap(QSize(16, 16)).toImage();
}

const QString theAppended = QStringLiteral("our_first");

}  // namespace

/// What hosts know of the pictures, and the pictures that are theirs. They stay to the end of the
/// process.
class TestOwnPictures : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        theBefore = {PanelPictureKeys(), PickerPictureKeys(), SharedPictureKeys()};
        AppendPicture(theAppended, Coloured(Qt::red));
    }

    void HeaderNamesEveryKey() {
        const QStringList picker = Listed(thePickerPictureKeys);
        QCOMPARE(picker.size(), 211);
        QCOMPARE(theBefore[1], picker);
        QStringList panel = picker;
        for (const QString &key : Listed(thePictureKeysThatFailInThePanel))
            QVERIFY(panel.removeOne(key));
        QCOMPARE(panel.size(), 209);
        QCOMPARE(theBefore[0], panel);
        QCOMPARE(theBefore[2], picker + Listed(thePictureKeysOfTheBrowser));
    }

    void StandsBehindTheOthersInEveryList() {
        QCOMPARE(PanelPictureKeys(), theBefore[0] + QStringList(theAppended));
        QCOMPARE(PickerPictureKeys(), theBefore[1] + QStringList(theAppended));
        QCOMPARE(SharedPictureKeys(), theBefore[2] + QStringList(theAppended));
        for (const auto &list : {PanelImages(), PickerImages(), SharedImages()}) {
            QCOMPARE(list->KeyAt(list->Count() - 1), theAppended);
            QCOMPARE(Drawn(*list, theAppended).pixelColor(8, 8), QColor(Qt::red));
        }
    }

    void TakesNoOthersPlace_data() {
        QTest::addColumn<QString>("key");
        QTest::newRow("of all lists") << QStringLiteral("doc");
        QTest::newRow("not of the panel") << QStringLiteral("acc_stream_ofr");
        QTest::newRow("of the browser") << QStringLiteral("galka_green");
        QTest::newRow("appended before") << theAppended;
    }
    void TakesNoOthersPlace() {
        QFETCH(QString, key);
        const QImage before = Drawn(*SharedImages(), key);
        const QStringList panel = PanelPictureKeys();
        const Failure failure = RaisedBy([&] { AppendPicture(key, Coloured(Qt::blue)); });
        QCOMPARE(failure.Number(), qint32(KeyAlreadyPresent));
        QCOMPARE(failure.Description(),
                 QStringLiteral("Рисунок с ключом \"%1\" уже есть в списках рисунков.").arg(key));
        QCOMPARE(Drawn(*SharedImages(), key), before);
        QCOMPARE(PanelPictureKeys(), panel);
    }

    void WhatIsNoPictureIsRefused_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QIcon>("icon");
        QTest::addColumn<QString>("text");
        QTest::newRow("no key") << QString() << Coloured(Qt::blue)
                                << QStringLiteral("У рисунка должен быть ключ.");
        const QString text = QStringLiteral("Рисунок с ключом \"a\" пуст или не читается.");
        QTest::newRow("no picture") << QStringLiteral("a") << QIcon() << text;
        QTest::newRow("no file") << QStringLiteral("a")
                                 << QIcon(QStringLiteral("/no-such-file.png")) << text;
    }
    void WhatIsNoPictureIsRefused() {
        QFETCH(QString, key);
        QFETCH(QIcon, icon);
        QFETCH(QString, text);
        const QStringList before = SharedPictureKeys();
        const Failure failure = RaisedBy([&] { AppendPicture(key, icon); });
        QCOMPARE(failure.Number(), qint32(InvalidArgument));
        QCOMPARE(failure.Description(), text);
        QCOMPARE(SharedPictureKeys(), before);
    }

    void CapitalsMakeAnotherKey() {
        AppendPicture(QStringLiteral("Doc"), Coloured(Qt::green));
        QVERIFY(Drawn(*PanelImages(), QStringLiteral("doc")) !=
                Drawn(*PanelImages(), QStringLiteral("Doc")));
    }

    void OtherThreadsAreRefused() {
        const QStringList before = SharedPictureKeys();
        QString text;
        std::thread([&] {
            text = RaisedBy([] { AppendPicture(QStringLiteral("b"), QIcon()); }).Description();
        }).join();
        QCOMPARE(text, QStringLiteral("Вызов из другого потока: с окнами можно работать только в "
                                      "том потоке, где создано приложение."));
        QCOMPARE(SharedPictureKeys(), before);
    }

private:
    std::array<QStringList, 3> theBefore;  // the keys of the panel, the picker and the browser
};

VK_TEST_CLASS(TestOwnPictures);

#include "TestOwnPictures.moc"
