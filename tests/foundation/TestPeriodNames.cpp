#include <QApplication>
#include <QFontMetrics>
#include <QTest>

#include "foundation/PeriodNames.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

class TestPeriodNames : public QObject {
    Q_OBJECT

private slots:
    void Names_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("name");
        const QStringList inOrder = {
            QStringLiteral("Январь"),        QStringLiteral("Февраль"),
            QStringLiteral("Март"),          QStringLiteral("Апрель"),
            QStringLiteral("Май"),           QStringLiteral("Июнь"),
            QStringLiteral("Июль"),          QStringLiteral("Август"),
            QStringLiteral("Сентябрь"),      QStringLiteral("Октябрь"),
            QStringLiteral("Ноябрь"),        QStringLiteral("Декабрь"),
            QStringLiteral("1-й квартал"),   QStringLiteral("2-й квартал"),
            QStringLiteral("3-й квартал"),   QStringLiteral("4-й квартал"),
            QStringLiteral("Иной период"),   QStringLiteral("Прочие документы"),
            QStringLiteral("Полугодие"),     QStringLiteral("Год"),
            QStringLiteral("Запрос, письмо")};
        for (int i = 0; i < inOrder.size(); ++i) QTest::addRow("%d", i + 1) << i + 1 << inOrder[i];
        QTest::newRow("24") << 24 << QStringLiteral("Документ");
        QTest::newRow("unknown") << 22 << QStringLiteral("Период с кодом 22");
        QTest::newRow("zero") << 0 << QStringLiteral("Период с кодом 0");
    }
    void Names() {
        QFETCH(int, code);
        QFETCH(QString, name);
        QCOMPARE(theNames.GetPeriodName(code), name);
    }

    void FitTheirBoxes() {
        // The boxes are 177 and, for months, 97 pixels wide; the arrow and the edges take up to 32.
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPointSizeF(8.25);
        const QFontMetrics metrics(font);
        for (const int code : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})
            QVERIFY(metrics.horizontalAdvance(theNames.GetPeriodName(code)) <= 97 - 32);
        for (const int code : {13, 14, 15, 16, 17, 18, 19, 20, 21, 24})
            QVERIFY(metrics.horizontalAdvance(theNames.GetPeriodName(code)) <= 177 - 32);
    }

private:
    PeriodNames theNames;
};

VK_TEST_CLASS(TestPeriodNames);

#include "TestPeriodNames.moc"
