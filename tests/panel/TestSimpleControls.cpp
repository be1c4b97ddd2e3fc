#include <QAbstractItemView>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QSignalSpy>
#include <QStringEncoder>
#include <QTest>
#include <QVBoxLayout>

#include <Vk_DocQuery/Failure.h>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Frame.h"
#include "controls/OptionButton.h"
#include "controls/ScrollBox.h"
#include "foundation/Clock.h"
#include "look/Fonts.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::RaisedBy;

namespace {

QColor At(const QImage &aImage, int aX, int aY) {
    return aImage.pixelColor(aX, aY);
}

/// A face under a name as long as its own. Names stand in a font in one and in two bytes a letter.
QByteArray RenamedFace(const QString &aName) {
    const QString name = QStringLiteral("Liberation Sans");
    QFile file(QStringLiteral("/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf"));
    if (!file.open(QIODevice::ReadOnly)) return QByteArray();
    QStringEncoder wide(QStringEncoder::Utf16BE);
    QByteArray face = file.readAll().replace(name.toLatin1(), aName.toLatin1());
    const QByteArray wideName = wide(name);
    const QByteArray wideOther = wide(aName);
    return face.replace(wideName, wideOther);
}

}  // namespace

class TestSimpleControls : public QObject {
    Q_OBJECT

private slots:
    void CheckBoxRaisesClickAtOnceAndOnlyOnAChange() {
        CheckBox box(QStringLiteral("a"));
        int value = -1;
        connect(&box, &CheckBox::Click, &box, [&] { value = box.Value(); });
        const QSignalSpy clicks(&box, &CheckBox::Click);
        for (const int next : {1, 2, 0, 2, 1, 0}) {
            box.SetValue(next);
            QCOMPARE(value, next);
            QCOMPARE(box.Value(), next);
        }
        QCOMPARE(clicks.count(), 6);
        box.SetValue(0);
        QCOMPARE(clicks.count(), 6);
    }

    void UserNeverMakesACheckBoxGrey() {
        CheckBox box(QStringLiteral("a"));
        box.SetValue(2);
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(box.Value(), 0);
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(box.Value(), 1);
        QTest::keyClick(&box, Qt::Key_Space);
        QCOMPARE(box.Value(), 0);
    }

    void WholeCheckBoxCanBeClicked() {
        CheckBox box(QStringLiteral("a"));
        box.resize(200, 40);
        QTest::mouseClick(&box, Qt::LeftButton, Qt::NoModifier, QPoint(195, 35));
        QCOMPARE(box.Value(), 1);
    }

    void OtherCheckBoxValueIsRefused() {
        CheckBox box(QStringLiteral("a"));
        const Failure failure = RaisedBy([&] { box.SetValue(3); });
        QCOMPARE(failure.Number(), qint32(InvalidArgument));
        QCOMPARE(failure.Description(), QStringLiteral("Недопустимое значение флажка: 3."));
    }

    void LongCaptionWraps() {
        CheckBox box(QStringLiteral("одно длинное название, которому нужна вторая строка"));
        box.setFont(WindowFont());
        box.resize(180, 30);
        const QImage image = box.grab().toImage();
        const auto inked = [&](int from, int to) {
            const QColor ground = At(image, image.width() - 1, 0);
            for (int y = from; y < to; ++y) {
                for (int x = 25; x < image.width(); ++x) {
                    if (At(image, x, y) != ground) return true;
                }
            }
            return false;
        };
        QVERIFY(inked(3, 13));
        QVERIFY(inked(17, 28));
    }

    void OptionsExcludeEachOtherAndCanBeCleared() {
        QWidget group;
        OptionButton first(QStringLiteral("1"), &group);
        OptionButton second(QStringLiteral("2"), &group);
        const QSignalSpy firstClicks(&first, &OptionButton::Click);
        first.SetValue(true);
        second.SetValue(true);
        QVERIFY(!first.Value());
        QCOMPARE(firstClicks.count(), 2);
        second.SetValue(false);
        QVERIFY(!first.Value() && !second.Value());
        first.SetValue(true);
        second.SetValue(false);
        QVERIFY(first.Value());
        QTest::mouseClick(&second, Qt::LeftButton);
        QVERIFY(second.Value() && !first.Value());
    }

    void FixedComboTakesListedTextsOnly() {
        ComboBox combo(ComboBox::Fixed);
        combo.AddItem(QStringLiteral("a"), 1);
        combo.AddItem(QStringLiteral("b"), 2);
        QCOMPARE(combo.currentIndex(), -1);
        combo.SetText(QStringLiteral("b"));
        QCOMPARE(combo.currentIndex(), 1);
        combo.SetText(QStringLiteral("c"));
        QCOMPARE(combo.Text(), QStringLiteral("b"));
    }

    void EditableComboTakesAnyText() {
        ComboBox combo(ComboBox::Editable);
        combo.AddItem(QStringLiteral("2024"), 2024);
        combo.SetText(QStringLiteral("19"));
        QCOMPARE(combo.Text(), QStringLiteral("19"));
        QCOMPARE(combo.count(), 1);
        QTest::keyClicks(&combo, QStringLiteral("x"));
        QTest::keyClick(&combo, Qt::Key_Return);
        QCOMPARE(combo.Text(), QStringLiteral("19x"));
        QCOMPARE(combo.count(), 1);
        combo.SetText(QStringLiteral("2024"));
        QCOMPARE(combo.currentIndex(), 0);
    }

    /// Most windows are closed before anything has dropped down in them.
    void DropDownListIsMadeWhenItIsWanted_data() {
        QTest::addColumn<ComboBox::Kind>("kind");
        QTest::newRow("fixed") << ComboBox::Fixed;
        QTest::newRow("editable") << ComboBox::Editable;
    }
    void DropDownListIsMadeWhenItIsWanted() {
        QFETCH(ComboBox::Kind, kind);
        ComboBox combo(kind);
        for (const int year : {2024, 2025}) combo.AddItem(QString::number(year), year);
        combo.SetText(QStringLiteral("2025"));
        combo.show();
        QVERIFY(!combo.completer());
        QVERIFY(combo.findChildren<QAbstractItemView *>().isEmpty());
        QTest::keyClick(&combo, Qt::Key_Down, Qt::AltModifier);
        QTRY_VERIFY(!combo.findChildren<QAbstractItemView *>().isEmpty());
        QTRY_VERIFY(combo.view()->isVisible());
        QCOMPARE(combo.view()->currentIndex().data().toString(), QStringLiteral("2025"));
        QTest::keyClick(combo.view(), Qt::Key_Up);
        QTest::keyClick(combo.view(), Qt::Key_Return);
        QCOMPARE(combo.Text(), QStringLiteral("2024"));
    }

    void ScrollBoxScrollsWhatDoesNotFit() {
        ScrollBox box;
        auto *label = new QLabel(QStringLiteral("x"), box.Content());
        label->setGeometry(0, 300, 50, 20);
        box.resize(100, 100);
        box.show();
        QCOMPARE(box.Content()->height(), 320);
        QCOMPARE(box.Content()->backgroundRole(), QPalette::Base);
        QCOMPARE(label->backgroundRole(), QPalette::Base);
    }

    void FrameLeavesAGapForItsCaption() {
        Frame frame(QString(13, u' '));
        frame.setFont(WindowFont());
        frame.resize(200, 100);
        const QImage image = frame.grab().toImage();
        const QColor ground = At(image, 100, 50);
        const int edge = frame.fontMetrics().height() / 2;
        QVERIFY(At(image, 2, edge) != ground);
        QCOMPARE(At(image, 20, edge), ground);
        QVERIFY(At(image, 150, edge) != ground);
        QVERIFY(At(image, 0, 60) != ground);
        QCOMPARE(At(image, 100, 0), ground);
    }

    void FrameWithoutABorderShowsNothing() {
        Frame frame(QStringLiteral("Не пусто"));
        frame.SetBorder(false);
        frame.resize(200, 100);
        const QImage image = frame.grab().toImage();
        for (int x = 0; x < 200; ++x) {
            for (int y = 0; y < 100; ++y) QCOMPARE(At(image, x, y), At(image, 100, 50));
        }
    }

    void WindowFontIsArialMetric() {
        const QFont font = WindowFont();
        QCOMPARE(font.pointSizeF(), 8.25);
        QVERIFY(QStringList({QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                             QStringLiteral("Arimo")})
                    .contains(font.family()));
    }

    void OtherFontIsNarrowed() {
        const QFont font = WindowFontOutOf({QStringLiteral("a face that nobody has")});
        const QString text = QStringLiteral("Обособленные подразделения, чьей головной");
        QCOMPARE(font.pointSizeF(), 8.25);
        QVERIFY(QFontMetrics(font).horizontalAdvance(text) <=
                QFontMetrics(WindowFont()).horizontalAdvance(text) * 1.03);
    }

    /// A host may bring a face along, and take it away again.
    void FaceThatComesAndGoes() {
        const QString name = QStringLiteral("Liberation Sanz");
        const QString before = WindowFontOutOf({name}).family();
        QVERIFY(before != name);
        const int id = QFontDatabase::addApplicationFontFromData(RenamedFace(name));
        QCOMPARE(QFontDatabase::applicationFontFamilies(id), QStringList{name});
        QCOMPARE(WindowFontOutOf({name}).family(), name);
        QVERIFY(QFontDatabase::removeApplicationFont(id));
        QCOMPARE(WindowFontOutOf({name}).family(), before);
    }

    void TodayCanBeFixed() {
        SetTodayForTests(QDate(2000, 2, 29));
        QCOMPARE(Today(), QDate(2000, 2, 29));
        SetTodayForTests(QDate());
        QVERIFY(Today() != QDate(2000, 2, 29));
    }
};

VK_TEST_CLASS(TestSimpleControls);

#include "TestSimpleControls.moc"
