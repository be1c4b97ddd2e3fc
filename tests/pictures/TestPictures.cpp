#include <algorithm>
#include <cmath>

#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QRegularExpression>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "look/CompiledPictures.h"
#include "look/Pictures.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// The picker's list; its order is part of what it is.
const char *const theKeys =
    "folder zzz tree_expander empty updir updir_points doc docs info worker_old worker "
    "formal_boss period org orgs doc_stream doc_streams year quartal man_purple period_other "
    "doc_tr2 doc_blank doc_archived doc_delivered doc_completed orgs2 sub_orgs sub_orgs_closed "
    "sub_org period_fc period_other_fc quartal_fc2 quartal_fc halfyear_fc perreg_fc_old halfyear "
    "perreg_old perreg perreg_dc perreg_fc otherdocs quartal_dc period_dc period_other_dc "
    "halfyear_dc perreg_dc_old period_letter_dc period_letter_fc period_letter ks_sending "
    "ks_checked_ok ks_checked_warnings ks_checking ks_delivered ks_checked_errors ks_waiting_send "
    "ks_waiting_checking ks_sent_old ks_sent otherdocs_dc otherdocs_fc cons_stream cons_reps "
    "doc_cons docs_group legal_agent sort_desc sort_asc cour_wing cour_sending cour_conf "
    "cour_letter cour_imns cour_rejected cour_error mailbox doc_error mailbox_inactive f_ticket "
    "f_inworking f_coursent f_courconf f_errors profile cour_prot acc_stream_closed "
    "docdisk_archived docdisk_completed docdisk_delivered docdisk_tr docdisk briefcase briefcase2 "
    "epis_completed epis epis_delivered epis_imns epis_tr cour_answer acc_stream acc_stream_pfr "
    "acc_stream_rs acc_stream_ind acc_stream_alc acc_stream_tech acc_stream_reg acc_stream_ofr "
    "acc_stream_hunthub branch unknown docdisk_completed_tr docdisk_delivered_tr "
    "epis_completed_tr epis_delivered_tr epis_imns_tr docdisk_archived_tr doc_archived_tr "
    "doc_completed_tr doc_delivered_tr doc_cons_tr doc_tr pfrmaster_blank_old "
    "pfrmaster_completed_old pfrmaster_delivered_old pfrmaster_old pfrmaster_delivered_tr_old "
    "pfrmaster_completed_tr_old pfrmaster_tr_old pfrmaster_blank pfrmaster_tr pfrmaster_completed "
    "pfrmaster_completed_tr pfrmaster_delivered pfrmaster_delivered_tr pfrmaster pfr_send "
    "pfrmaster_archived pfrmaster_archived_tr fss_send pfrworkers_inf pfrworkers_5 pfrworkers_10 "
    "pfrworkers_20 pfrworkers_50 pfrworkers_200 pfrworkers_500 accfolder_rs accfolder_imns "
    "accfolder_ind accfolder_pfr accfolder_alc accfolder_tech accfolder_reg accfolder_hunthub "
    "fss_error fss_ticket_received fss_delivered fss_sent warrant checkufa perm_eff_rights "
    "otherdocs_u3 otherdocs_u6 otherdocs_u9 period_u3 period_u6 period_u9 perreg_u3 perreg_u6 "
    "perreg_u9 period_other_u3 period_other_u6 period_other_u9 p5_u3 p5_u6 p5_u9 p10_u3 p10_u6 "
    "p10_u9 p20_u3 p20_u6 p20_u9 p50_u3 p50_u6 p50_u9 p200_u3 p200_u6 p200_u9 p500_u3 p500_u6 "
    "p500_u9 p_inf_u3 p_inf_u6 p_inf_u9 quartal_u3 quartal_u6 quartal_u9 quartal_uinf "
    "otherdocs_uinf period_uinf perreg_uinf period_other_uinf p5_uinf p10_uinf p20_uinf p50_uinf "
    "p200_uinf p500_uinf p_inf_uinf acc_stream_rfm ";

QStringList PickerKeys() {
    return QString::fromLatin1(theKeys).split(u' ', Qt::SkipEmptyParts);
}

QStringList KeysOf(const ImageList &aList) {
    QStringList keys;
    for (int i = 0; i < aList.Count(); ++i) keys << aList.KeyAt(i);
    return keys;
}

QImage Rendered(const QIcon &aIcon, double aScale, int aSide = 16) {
    return aIcon.pixmap(QSize(aSide, aSide), aScale)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

int PixelsThatDiffer(const QImage &aOne, const QImage &aOther) {
    int count = 0;
    for (int y = 0; y < aOne.height(); ++y)
        for (int x = 0; x < aOne.width(); ++x)
            if (aOne.pixel(x, y) != aOther.pixel(x, y)) ++count;
    return count;
}

double Luminance(QRgb aColour) {
    const auto linear = [](int aLevel) {
        const double level = aLevel / 255.0;
        return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(aColour)) + 0.7152 * linear(qGreen(aColour)) +
           0.0722 * linear(qBlue(aColour));
}

double Contrast(QRgb aOne, QRgb aOther) {
    const double one = Luminance(aOne) + 0.05;
    const double other = Luminance(aOther) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

unsigned int Number(CompiledPicture::Bytes aBytes, std::size_t aAt, std::size_t aCount) {
    unsigned int value = 0;
    for (std::size_t i = aCount; i > 0; --i) value = value << 8U | aBytes[aAt + i - 1];
    return value;
}

/// Rows with the key of every compiled picture and its number.
void AddPictureRows() {
    QTest::addColumn<int>("number");
    int number = 0;
    for (const CompiledPicture &picture : CompiledPictures())
        QTest::newRow(picture.Key) << number++;
}

const CompiledPicture &Compiled(int aNumber) {
    return CompiledPictures()[static_cast<std::size_t>(aNumber)];
}

}  // namespace

class TestPictures : public QObject {
    Q_OBJECT

private slots:
    void PickerListHasItsKeysInOrder() {
        QCOMPARE(PickerKeys().size(), 211);
        QCOMPARE(KeysOf(*PickerImages()), PickerKeys());
    }

    void PanelListLacksTwoKindsOfStream() {
        QStringList keys = PickerKeys();
        QVERIFY(keys.removeOne(QStringLiteral("acc_stream_ofr")));
        QVERIFY(keys.removeOne(QStringLiteral("acc_stream_rfm")));
        QCOMPARE(keys.size(), 209);
        QCOMPARE(KeysOf(*PanelImages()), keys);
    }

    void SharedListHasTheGreenTickToo() {
        QStringList keys = PickerKeys();
        keys << QStringLiteral("galka_green");
        QCOMPARE(KeysOf(*SharedImages()), keys);
        QVERIFY(!PickerImages()->Contains(QStringLiteral("galka_green")));
    }

    void TabListHasTwoPictures() {
        QCOMPARE(KeysOf(*TabImages()),
                 QStringList({QStringLiteral("active"), QStringLiteral("passive")}));
    }

    void ListsAreMadeOnce() {
        QCOMPARE(PanelImages().get(), PanelImages().get());
        QCOMPARE(PickerImages().get(), PickerImages().get());
        QCOMPARE(SharedImages().get(), SharedImages().get());
        QCOMPARE(PanelImages()->Picture(QStringLiteral("doc")).cacheKey(),
                 PickerImages()->Picture(QStringLiteral("doc")).cacheKey());
    }

    void UnknownKeyFailsWhenItIsResolved() {
        for (const char *key : {"no_such_picture", "", "Doc", "galka_green"}) {
            try {
                PickerImages()->Picture(QString::fromLatin1(key));
                QFAIL(key);
            } catch (const Failure &failure) {
                QCOMPARE(failure.Number(), qint32(InvalidArgument));
                QCOMPARE(failure.Description(),
                         QStringLiteral("В списке рисунков нет рисунка с ключом \"%1\".")
                             .arg(QString::fromLatin1(key)));
            }
        }
    }

    void IconFormOfEveryPicture_data() { AddPictureRows(); }
    void IconFormOfEveryPicture() {
        QFETCH(int, number);
        const CompiledPicture::Bytes icon = Compiled(number).Icon;
        QCOMPARE(icon.size(), std::size_t{1406});
        QCOMPARE(Number(icon, 0, 2), 0U);
        QCOMPARE(Number(icon, 2, 2), 1U);  // an icon
        QCOMPARE(Number(icon, 4, 2), 1U);  // with one image
        QCOMPARE(Number(icon, 6, 1), 16U);
        QCOMPARE(Number(icon, 7, 1), 16U);
        QCOMPARE(Number(icon, 12, 2), 8U);
        QCOMPARE(Number(icon, 14, 4), 1384U);
        QCOMPARE(Number(icon, 18, 4), 22U);
        QCOMPARE(Number(icon, 22, 4), 40U);
        QCOMPARE(Number(icon, 26, 4), 16U);
        QCOMPARE(Number(icon, 30, 4), 32U);
        QCOMPARE(Number(icon, 36, 2), 8U);
    }

    void MaskColourStandsForTransparency_data() { AddPictureRows(); }
    void MaskColourStandsForTransparency() {
        QFETCH(int, number);
        const CompiledPicture::Bytes icon = Compiled(number).Icon;
        for (std::size_t y = 0; y < 16; ++y) {
            for (std::size_t x = 0; x < 16; ++x) {
                const std::size_t colour = 62 + std::size_t{4} * icon[1086 + y * 16 + x];
                const bool hasMaskColour = Number(icon, colour, 3) == 0xC0C0C0U;
                const bool isMasked = ((icon[1342 + y * 4 + x / 8] & (0x80 >> (x % 8))) != 0);
                QCOMPARE(hasMaskColour, isMasked);
            }
        }
    }

    /// A reader of icons that is not ours sees the same picture.
    void IconFormIsReadAlikeElsewhere_data() { AddPictureRows(); }
    void IconFormIsReadAlikeElsewhere() {
        if (!QImageReader::supportedImageFormats().contains("ico"))
            QSKIP("no reader of icons here");
        QFETCH(int, number);
        const CompiledPicture &picture = Compiled(number);
        if (picture.Group == PictureGroup::Window) return;
        const QImage read =
            QImage::fromData(picture.Icon.data(), static_cast<int>(picture.Icon.size()), "ICO")
                .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(Rendered(SharedImages()->Picture(QString::fromLatin1(picture.Key)), 1), read);
    }

    void PlainScreenGetsTheIconForm() {
        for (const QString &key : PickerKeys()) {
            const QImage image = Rendered(PickerImages()->Picture(key), 1);
            QCOMPARE(image.size(), QSize(16, 16));
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x)
                    QVERIFY2(qAlpha(image.pixel(x, y)) % 255 == 0, qPrintable(key));
        }
    }

    void FinerScreensGetSharpForms_data() {
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("side");
        QTest::newRow("125 %") << 1.25 << 20;
        QTest::newRow("150 %") << 1.5 << 24;
        QTest::newRow("200 %") << 2.0 << 32;
    }
    void FinerScreensGetSharpForms() {
        QFETCH(double, scale);
        QFETCH(int, side);
        for (const QString &key : KeysOf(*SharedImages())) {
            const QIcon &icon = SharedImages()->Picture(key);
            QVERIFY2(icon.availableSizes().contains(QSize(side, side)), qPrintable(key));
            QCOMPARE(Rendered(icon, scale).size(), QSize(side, side));
        }
    }

    void NoTwoPicturesLookAlike_data() {
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("least");
        QTest::newRow("100 %") << 1.0 << 6;
        QTest::newRow("200 %") << 2.0 << 24;
    }
    /// A reader has to see the difference, so a stray pixel is not one.
    void NoTwoPicturesLookAlike() {
        QFETCH(double, scale);
        QFETCH(int, least);
        const QStringList keys = KeysOf(*SharedImages());
        QList<QImage> images;
        for (const QString &key : keys) images << Rendered(SharedImages()->Picture(key), scale);
        for (qsizetype i = 0; i < keys.size(); ++i) {
            for (qsizetype k = 0; k < i; ++k) {
                const int count = PixelsThatDiffer(images[i], images[k]);
                QVERIFY2(count >= least, qPrintable(QStringLiteral("%1 and %2 differ in %3 pixels")
                                                        .arg(keys[i], keys[k])
                                                        .arg(count)));
            }
        }
    }

    void EveryPictureStandsOutFromItsGround_data() {
        QTest::addColumn<QRgb>("ground");
        QTest::newRow("white") << qRgb(255, 255, 255);
        QTest::newRow("grey") << qRgb(200, 200, 200);
        QTest::newRow("dark") << qRgb(35, 38, 41);
    }
    void EveryPictureStandsOutFromItsGround() {
        QFETCH(QRgb, ground);
        QStringList weak;
        for (const QString &key : KeysOf(*SharedImages())) {
            if (key == QStringLiteral("empty")) continue;
            const QImage image = Rendered(SharedImages()->Picture(key), 1);
            int count = 0;
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x)
                    if (qAlpha(image.pixel(x, y)) == 255 &&
                        Contrast(image.pixel(x, y), ground) >= 3)
                        ++count;
            if (count < 16) weak << QStringLiteral("%1: %2").arg(key).arg(count);
        }
        QVERIFY2(weak.isEmpty(), qPrintable(weak.join(u'\n')));
    }

    void EmptyPictureShowsNothing() {
        const QImage image = Rendered(PickerImages()->Picture(QStringLiteral("empty")), 1);
        QCOMPARE(image.size(), QSize(16, 16));
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x) QCOMPARE(qAlpha(image.pixel(x, y)), 0);
    }

    void KeysThatTheWindowsNameResolve() {
        for (const char *key : {"doc", "doc_blank", "period", "quartal", "period_other",
                                "otherdocs", "perreg", "period_letter", "year", "galka_green"})
            QVERIFY2(!SharedImages()->Picture(QString::fromLatin1(key)).isNull(), key);
        QVERIFY(PanelImages()->Contains(QStringLiteral("doc_blank")));
    }

    /// What the record libraries hand out, read from their own sources: the panel shows all of it.
    void KeysOfTheRecordLibrariesResolve_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("pattern");
        QTest::newRow("forms") << QStringLiteral("sample/forms.tsv")
                               << QStringLiteral("\t([a-z]\\w*)$");
        QTest::newRow("versions of forms")
            << QStringLiteral("sample/form_versions.tsv") << QStringLiteral("\t([a-z]\\w*)$");
        QTest::newRow("kinds of stream")
            << QStringLiteral("sql/stream_types.sql") << QStringLiteral(", '(\\w+)'\\);$");
        QTest::newRow("streams") << QStringLiteral("AccStreams.cpp")
                                 << QStringLiteral("THEN '(acc_\\w+)'");
        QTest::newRow("persons") << QStringLiteral("Persons.cpp")
                                 << QStringLiteral("\\bQStringLiteral\\(\"([a-z_]+)\"\\)[ ;]");
    }
    void KeysOfTheRecordLibrariesResolve() {
        QFETCH(QString, file);
        QFETCH(QString, pattern);
        QFile source(QStringLiteral(VK_RECORDS_SOURCE "/") + file);
        QVERIFY2(source.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(source.fileName()));
        const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
        auto matches = expression.globalMatch(QString::fromUtf8(source.readAll()));
        QStringList missing;
        int count = 0;
        while (matches.hasNext()) {
            const QString key = matches.next().captured(1);
            if (key == QStringLiteral("icon")) continue;  // the caption of the column
            ++count;
            if (!PanelImages()->Contains(key)) missing << key;
        }
        QVERIFY(count > 0);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u' ')));
    }

    void StatusesHaveFourPictures() {
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(Rendered(StatusPicture(i), 1).size(), QSize(16, 16));
            for (int k = 0; k < i; ++k)
                QVERIFY(PixelsThatDiffer(Rendered(StatusPicture(i), 1),
                                         Rendered(StatusPicture(k), 1)) >= 6);
        }
    }

    void ReadyAndDeliveredLookAsTheyDoInLists() {
        const auto &list = *PickerImages();
        QCOMPARE(Rendered(StatusPicture(1), 1),
                 Rendered(list.Picture(QStringLiteral("doc_completed")), 1));
        QCOMPARE(Rendered(StatusPicture(2), 1),
                 Rendered(list.Picture(QStringLiteral("doc_delivered")), 1));
    }

    void StatusOutOfRangeIsAFailure_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("below") << -1 << QStringLiteral("Рисунка \"status_-1\" нет.");
        QTest::newRow("above") << 4 << QStringLiteral("Рисунка \"status_4\" нет.");
    }
    void StatusOutOfRangeIsAFailure() {
        QFETCH(int, index);
        QFETCH(QString, text);
        try {
            StatusPicture(index);
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(InvalidArgument));
            QCOMPARE(failure.Description(), text);
        }
    }

    void ButtonsHaveTheirStandardPictures() {
        const QImage ok = Rendered(StandardPicture(5), 1);
        const QImage cancel = Rendered(StandardPicture(2), 1);
        const QImage help = Rendered(StandardPicture(HelpPicture), 1);
        QVERIFY(PixelsThatDiffer(ok, cancel) > 50);
        QVERIFY(PixelsThatDiffer(ok, help) > 50);
        QVERIFY(PixelsThatDiffer(cancel, help) > 50);
    }

    /// Told apart without their colours too.
    void TabPicturesDifferInShape() {
        const QImage active = Rendered(TabImages()->Picture(QStringLiteral("active")), 1);
        const QImage passive = Rendered(TabImages()->Picture(QStringLiteral("passive")), 1);
        int count = 0;
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x)
                if (qAlpha(active.pixel(x, y)) != qAlpha(passive.pixel(x, y))) ++count;
        QVERIFY(count > 60);
    }

    void WindowIconsComeInLargeSizesToo() {
        for (const char *name : {"dialog", "picker", "browser"}) {
            const QIcon icon = WindowIcon(QLatin1String(name));
            for (const int side : {16, 20, 24, 32, 48, 64, 128})
                QVERIFY2(icon.availableSizes().contains(QSize(side, side)), name);
        }
    }
};

VK_TEST_CLASS(TestPictures);

#include "TestPictures.moc"
