#include "LargeOffice.h"

#include <array>

#include <QDate>

#include <Vk_Records/Database.h>

#include "Insert.h"
#include "SampleOffice.h"
#include "Schema.h"

namespace Vk_Records {

namespace {

constexpr int theBranchEvery = 4;         // every fourth person is a branch,
constexpr int thePrivatePersonEvery = 5;  // and every fifth a private person
constexpr std::array theWords = {u"Север", u"Восход", u"Родник", u"Маяк",   u"Заря",
                                 u"Кедр",  u"Полюс",  u"Вымпел", u"Гранит", u"Якорь"};

/// One and the same row of numbers on every machine.
class Numbers {
public:
    quint32 Below(quint32 aBound) {
        theState = theState * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<quint32>(theState >> 33U) % aBound;
    }

private:
    quint64 theState = 20240229;
};

/// The digits with the check digits of a taxpayer number behind them: one behind nine, two behind
/// ten.
QString WithCheckDigits(QString aDigits) {
    static const std::array weights = {3, 7, 2, 4, 10, 3, 5, 9, 4, 6, 8};
    const auto full = aDigits.size() == 9 ? 10 : 12;
    while (aDigits.size() < full) {
        int sum = 0;
        const auto skipped = static_cast<qsizetype>(weights.size()) - aDigits.size();
        for (qsizetype i = 0; i < aDigits.size(); ++i)
            sum += weights[static_cast<std::size_t>(skipped + i)] * aDigits[i].digitValue();
        aDigits += QString::number(sum % 11 % 10);
    }
    return aDigits;
}

QString Word(Numbers &rNumbers) {
    return QString::fromUtf16(theWords[rNumbers.Below(static_cast<quint32>(theWords.size()))]);
}

/// A registration reason code: the tax office, two digits of the reason, three of a number.
QString Kpp(Numbers &rNumbers, const QString &aReason, quint32 aNumber) {
    return QString::number(7700 + rNumbers.Below(60)) + aReason +
           QString::number(aNumber).rightJustified(3, u'0');
}

QVariantList BranchRow(qint64 aID, Numbers &rNumbers, const QVariantList &aParent) {
    const QString place = QStringLiteral(", филиал N %1").arg(rNumbers.Below(900) + 100);
    const QString kpp = Kpp(rNumbers, QStringLiteral("43"), rNumbers.Below(999) + 1);
    return {aID,
            2,
            aParent[2],
            kpp,
            aParent[4].toString() + place,
            aParent[5].toString() + place,
            0,
            aParent[0],
            1};
}

QVariantList PrivatePersonRow(qint64 aID, Numbers &rNumbers) {
    const QString inn = WithCheckDigits(QString::number(7700000000 + aID % 10000000));
    const QString name = Word(rNumbers) + QStringLiteral("ов Иван Петрович %1").arg(aID);
    return {aID,
            3,
            inn,
            QString(QLatin1String("")),
            QStringLiteral("ИП ") + name,
            name,
            0,
            QVariant(QMetaType(QMetaType::LongLong)),
            QVariant(QMetaType(QMetaType::Int))};
}

QVariantList OrganizationRow(qint64 aID, Numbers &rNumbers) {
    const QString inn = WithCheckDigits(QString::number(770000000 + aID % 1000000));
    const QString name = QStringLiteral("%1-%2 N %3").arg(Word(rNumbers), Word(rNumbers)).arg(aID);
    const QString kpp = Kpp(rNumbers, QStringLiteral("01"), 1);
    return {aID,
            1,
            inn,
            kpp,
            QStringLiteral("ООО \"%1\"").arg(name),
            name + QStringLiteral(", ООО"),
            rNumbers.Below(10) == 0 ? 0 : 1,
            QVariant(QMetaType(QMetaType::LongLong)),
            QVariant(QMetaType(QMetaType::Int))};
}

void FillPersons(Connection &aConnection, Numbers &rNumbers, qsizetype aCount) {
    Insert person(aConnection, theInsertPersonSql);
    QVariantList organization;
    for (qint64 id = 1; id <= aCount; ++id) {
        if (id % thePrivatePersonEvery == 0) {
            person.Row(PrivatePersonRow(id, rNumbers));
        } else if (id % theBranchEvery == 0) {
            person.Row(BranchRow(id, rNumbers, organization));
        } else {
            organization = OrganizationRow(id, rNumbers);
            person.Row(organization);
        }
    }
}

void FillStreams(Connection &aConnection, Numbers &rNumbers, const OfficeSize &aSize) {
    Insert stream(aConnection, theInsertStreamSql);
    for (qint64 id = 1; id <= aSize.Streams; ++id) {
        const qint64 person = (id - 1) % aSize.Persons + 1;
        const int type = static_cast<int>(id % 9) + 1;
        const quint32 office = 7700 + rNumbers.Below(60);
        stream.Row({id, person, type,
                    QStringLiteral("Комплект %1 налогоплательщика %2").arg(id).arg(person),
                    Kpp(rNumbers, QStringLiteral("01"), 1), QString::number(office),
                    id % 20 == 0 ? 1 : 0});
    }
}

void FillForms(Connection &aConnection, Numbers &rNumbers, qsizetype aCount) {
    constexpr int versions = 3;
    const QDate first(2015, 1, 1);
    Insert form(aConnection, theInsertFormSql);
    Insert name(aConnection, theInsertNameSql);
    Insert version(aConnection, theInsertVersionSql);
    for (qint64 id = 1; id <= aCount; ++id) {
        const QString word = Word(rNumbers);
        form.Row({id, QString::number(1100000 + id),
                  QStringLiteral("Форма %1-%2").arg(word).arg(id), 0, QStringLiteral("doc_blank")});
        name.Row(
            {id, 1, QStringLiteral("Отчет о показателях \"%1\" по форме N %2").arg(word).arg(id)});
        for (int i = 0; i < versions; ++i) {
            const QDate begin = first.addYears(4 * i);
            const bool isLast = i == versions - 1;
            version.Row({(id - 1) * versions + i + 1, id, begin,
                         isLast ? QVariant(QMetaType(QMetaType::QDate))
                                : QVariant(begin.addYears(4).addDays(-1)),
                         QStringLiteral("Форма %1-%2, редакция %3").arg(word).arg(id).arg(i + 1),
                         isLast ? QStringLiteral("doc_blank") : QStringLiteral("doc_archived")});
        }
    }
}

}  // namespace

void MakeLargeOffice(const QString &aAddress, const OfficeSize &aSize) {
    if (aSize.Streams > 0 && aSize.Persons == 0) {
        throw Vk_DocQuery::Failure(
            Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
            QStringLiteral(
                "Комплектам отчетности нужны налогоплательщики: их число не может быть 0."));
    }
    MakeNewOffice(AddressOf(aAddress), [&](Connection &office) {
        Numbers numbers;
        FillPersons(office, numbers, aSize.Persons);
        FillStreams(office, numbers, aSize);
        FillForms(office, numbers, aSize.Forms);
    });
}

void MakeSampleOffice(const QString &aAddress) {
    MakeNewOffice(AddressOf(aAddress),
                  [](Connection &office) { FillSampleOffice(office, QDate::currentDate()); });
}

}  // namespace Vk_Records
