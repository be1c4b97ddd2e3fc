#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_Records/Database.h>

#include "Application.h"
#include "support/Contrast.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace VkTests;
using Vk_Records::NewDatabase;

namespace {

QString Trouble(const QString &aReason) {
    return QStringLiteral("Не удалось открыть базу данных.\n\n") + aReason;
}

}  // namespace

class TestApplication : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { PrepareApplication(); }

    void ProgramHasAnIcon() {
        const QIcon icon = QApplication::windowIcon();
        for (const int side : {16, 32, 64}) {
            const QImage image = icon.pixmap(side, side).toImage();
            QCOMPARE(image.size(), QSize(side, side));
            QVERIFY(qAlpha(image.pixel(side / 2, side / 4)) == 255);
        }
    }

    void QtSpeaksRussian() {
        QCOMPARE(QLocale().name(), QStringLiteral("ru_RU"));
        const QString words = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (!QFileInfo::exists(words + QStringLiteral("/qtbase_ru.qm")))
            QSKIP("Qt's translations are not installed");
        const QDialogButtonBox box(QDialogButtonBox::Cancel);
        QCOMPARE(box.button(QDialogButtonBox::Cancel)->text().remove(u'&'),
                 QStringLiteral("Отмена"));
    }

    void ColoursCanBeRead_data() {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("text");
        QTest::addColumn<double>("disabled");
        QTest::newRow("dark") << QColor(0x2D2D30) << QColor(0xE6E6E6) << 3.0;
        QTest::newRow("black-on-white") << QColor(Qt::white) << QColor(Qt::black) << 4.5;
        QTest::newRow("white-on-black") << QColor(Qt::black) << QColor(Qt::white) << 4.5;
        QTest::newRow("yellow-on-black") << QColor(Qt::black) << QColor(Qt::yellow) << 4.5;
    }
    void ColoursCanBeRead() {
        QFETCH(QColor, ground);
        QFETCH(QColor, text);
        QFETCH(double, disabled);
        const QPalette before = QApplication::palette();
        const bool taken = TakeColours(QString::fromLatin1(QTest::currentDataTag()));
        const QPalette colours = QApplication::palette();
        QApplication::setPalette(before);
        QVERIFY(taken);
        QCOMPARE(colours.color(QPalette::Window), ground);
        QCOMPARE(colours.color(QPalette::WindowText), text);
        constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> thePairs[] = {
            {QPalette::WindowText, QPalette::Window},
            {QPalette::Text, QPalette::Base},
            {QPalette::ButtonText, QPalette::Button},
            {QPalette::Text, QPalette::AlternateBase},
            {QPalette::ToolTipText, QPalette::ToolTipBase},
            {QPalette::HighlightedText, QPalette::Highlight},
            {QPalette::Link, QPalette::Base},
            {QPalette::PlaceholderText, QPalette::Base},
        };
        for (const auto &[over, under] : thePairs)
            QVERIFY2(Contrast(colours.color(over), colours.color(under)) >= 4.5,
                     qPrintable(QString::number(over)));
        for (const auto &[over, under] : {thePairs[0], thePairs[1], thePairs[2]}) {
            const QColor faint = colours.color(QPalette::Disabled, over);
            QVERIFY(Contrast(faint, colours.color(under)) >= disabled);
            QVERIFY(Contrast(faint, colours.color(over)) >= 1.5);
        }
    }

    void UnknownColoursAreNotTaken() {
        const QPalette before = QApplication::palette();
        for (const char *name : {"", "Dark", "light", "white-on-yellow"})
            QVERIFY2(!TakeColours(QString::fromLatin1(name)), name);
        QCOMPARE(QApplication::palette(), before);
    }

    void UserMayTryAgainAndGiveUp() {
        const QString text = Trouble(
            QStringLiteral("Адрес базы данных \"office\" не распознан. Укажите адрес вида "
                           "\"sqlite:/папка/office.db\" или \"postgresql://имя@сервер/база\"."));
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Норвик"), text,
                         QStringLiteral("Повторить"));
        driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Норвик"), text,
                         QStringLiteral("Выход"), QStringLiteral("Повторить"));
        QVERIFY(!OpenRecords(QStringLiteral("office"), NewDatabase::Refused));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EscapeGivesUp() {
        ModalDriver driver;
        driver.Expect([](QWidget &aBox) { QTest::keyClick(&aBox, Qt::Key_Escape); });
        QVERIFY(!OpenRecords(QStringLiteral("office"), NewDatabase::Refused));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void TroubleMayBeOverAtTheSecondTry() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("data/office.db"));
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            QDir(folder.path()).mkdir(QStringLiteral("data"));
            QTest::keyClick(&aBox, Qt::Key_Return);  // the first button
        });
        QVERIFY(OpenRecords(QStringLiteral("sqlite:") + path, NewDatabase::WithSampleOffice));
        Vk_Records::CloseDatabase();
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(QFile::exists(path));
    }

    void NoOfficeIsInventedForANameOfTheUsers() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("ofice.db"));
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Critical, QStringLiteral("Норвик"),
            Trouble(QStringLiteral("База данных \"%1\" не открыта: такого файла нет. Исправьте "
                                   "адрес; новую базу создает программа vk_make_office.")
                        .arg(path)),
            QStringLiteral("Выход"), QStringLiteral("Повторить"));
        QVERIFY(!OpenRecords(QStringLiteral("sqlite:") + path, NewDatabase::Refused));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QFile::exists(path));
    }
};

VK_TEST_CLASS(TestApplication);
#include "TestApplication.moc"
