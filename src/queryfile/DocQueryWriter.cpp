#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

#include "foundation/CheckedArithmetic.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkLib.h"
#include "foundation/RussDate.h"
#include "query/Fields.h"
#include "queryfile/StringAccumulator.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryData";
constexpr qint32 theCodePage = 1251;
constexpr qint32 theIndentStep = 4;

/// One line of the file: a text, or the attributes of some fields, or a list with its two tags.
struct Line {
    qint32 Depth;
    bool Blank;                             // ends in a blank, which belongs to the format
    const char16_t *Text;                   // null for a line of fields
    std::array<const Field *, 5> Fields{};  // attributes carry the names of their fields
};

constexpr const Field *F(const Field *aField) {
    return aField;
}

constexpr char16_t theDeclaration[] = u"<?xml version=\"1.0\" encoding=\"windows-1251\"?>";

#define A(Name) F(FieldNamed(#Name))
// clang-format off
constexpr Line theLines[] = {
    {0, false, u"<VkDocQuery ver=\"1\">"},
    {1, true,  u"<DocCriteria"},
    {2, true,  nullptr, {A(IsDocStatus), A(DocStatuses)}},
    {2, true,  nullptr, {A(IsNotes), A(NotesMode), A(Notes)}},
    {2, true,  nullptr, {A(IsSignDate), A(SignDate1), A(SignDate2)}},
    {2, true,  nullptr, {A(IsSignerFio), A(SignerSurname)}},
    {2, true,  nullptr, {A(IsOrvex), A(IsOrvexStages), A(OrvexStages), A(IsOrvexTerms), A(OrvexTerms)}},
    {2, true,  nullptr, {A(IsFss), A(IsFssStages), A(FssStages), A(IsFssTerms), A(FssTerms)}},
    {2, true,  nullptr, {A(IsDocNum), A(DocNumMode), A(DocNum1), A(DocNum2), A(LastDocNumsCount)}},
    {2, true,  nullptr, {A(WholePfrCluster)}},
    {1, false, u"/>"},
    {1, true,  u"<TemplateCriteria"},
    {2, true,  nullptr, {A(IsTemplate), A(TemplatesMode)}},
    {1, false, u">"},
    {2, false, nullptr, {A(Templates)}},
    {1, false, u"</TemplateCriteria>"},
    {1, true,  u"<PeriodCriteria"},
    {2, true,  nullptr, {A(IsPeriods), A(PeriodCriterion)}},
    {2, true,  nullptr, {A(OnePeriodYear), A(OnePeriodMonthID)}},
    {2, true,  nullptr, {A(RangePeriodYear1), A(RangePeriodMonth1), A(RangePeriodYear2), A(RangePeriodMonth2)}},
    {2, true,  nullptr, {A(IsPeriodTypes), A(PeriodTypes)}},
    {1, false, u"/>"},
    {1, true,  u"<AccStreamCriteria"},
    {2, true,  nullptr, {A(IsAccStreamType), A(AccStreamTypes)}},
    {2, true,  nullptr, {A(IsAccStreamOpeness), A(AccStreamOpen)}},
    {2, true,  nullptr, {A(IsContoraPrefix1), A(ContoraPrefix1), A(IsContoraPrefix2), A(ContoraPrefix2), A(ContoraJoining)}},
    {2, true,  nullptr, {A(IsAccStreamsList)}},
    {1, false, u">"},
    {2, false, nullptr, {A(AccStreamsList)}},
    {1, false, u"</AccStreamCriteria>"},
    {1, true,  u"<TaxpayersCriteria"},
    {2, true,  nullptr, {A(IsTaxpayers), A(TaxpayersType), A(IncludeMainOrgDocs)}},
    {1, false, u">"},
    {2, false, nullptr, {A(TaxpayersList)}},
    {1, false, u"</TaxpayersCriteria>"},
    {1, true,  u"<OtherOptions"},
    {2, false, nullptr, {A(LastTab)}},  // the one line of attributes without the blank
    {1, false, u"/>"},
    {0, false, u"</VkDocQuery>"},
};
// clang-format on
#undef A

/// The years that a date of four digits can have, and be read again as the same.
bool IsYearOfFile(int aYear) {
    return aYear >= 100 && aYear <= 9999;
}

QString DateText(const LooseValue &aField) {
    const LooseValue field = DateOfField(aField);
    if (IsEmpty(field) || IsNull(field)) return QString();
    const QDate date = ToDate(field);
    if (!IsYearOfFile(date.year())) {
        throw Failure(InvalidArgument, QString(),
                      QStringLiteral("Дату %1 записать нельзя: год может быть от 100 до 9999.")
                          .arg(ToText(date)));
    }
    return ToText(date);
}

/// What a sign of XML becomes in a value; empty for all others.
std::u16string_view ShieldOf(QChar aSign) {
    switch (aSign.unicode()) {
        case u'&':
            return u"&amp;";
        case u'"':
            return u"&quot;";
        case u'<':
            return u"&lt;";
        case u'>':
            return u"&gt;";
        default:
            return {};
    }
}

/// The lines of a list. A line with a whole number is put together in the text itself: the head is
/// copied in one piece of a fixed size, which takes the least time, and the rest is written over
/// it.
class ItemLine {
public:
    explicit ItemLine(const QString &aIndent) : theHead(aIndent + QStringLiteral("<i id=\"")) {
        theFits = theHead.size() + qsizetype{theMostDigits} + theTail.size() <= theLineSize;
        if (theFits) std::copy_n(theHead.utf16(), theHead.size(), theLine.begin());
    }

    void Add(StringAccumulator &rText, double aID) {
        std::array<char, theMostDigits> digits;
        const std::size_t count = theFits ? WholeNumber(aID, digits) : 0;
        if (count == 0) {
            rText.Add(theHead);
            rText.Add(GeneralNumberText(aID));
            rText.Add(theTail);
            return;
        }
        char16_t *line = rText.Room(theLineSize);
        std::memcpy(line, theLine.data(), sizeof theLine);
        char16_t *number = line + theHead.size();
        for (std::size_t i = 0; i < count; ++i) number[i] = static_cast<char16_t>(digits[i]);
        std::memcpy(number + count, theTail.utf16(),
                    static_cast<std::size_t>(theTail.size()) * sizeof(char16_t));
        rText.AddRoom(static_cast<qint32>(theHead.size() + theTail.size()) +
                      static_cast<qint32>(count));
    }

private:
    static constexpr std::size_t theMostDigits = 16;
    static constexpr qint32 theLineSize = 64;
    static constexpr QStringView theTail = u"\" />\r\n";

    /// As ToText gives it, without a text of its own; 0 where it is no whole number.
    static std::size_t WholeNumber(double aID, std::array<char, theMostDigits> &rDigits) {
        constexpr double firstWithExponent = 1e15;
        if (!(aID > -firstWithExponent && aID < firstWithExponent)) return 0;
        const auto whole = static_cast<qint64>(aID);
        if (static_cast<double>(whole) != aID) return 0;
        char *const begin = rDigits.data();
        const auto small = static_cast<quint32>(whole);  // takes half the time where it is enough
        const auto result = small == whole ? std::to_chars(begin, begin + rDigits.size(), small)
                                           : std::to_chars(begin, begin + rDigits.size(), whole);
        return static_cast<std::size_t>(result.ptr - begin);
    }

    QString theHead;
    std::array<char16_t, theLineSize> theLine{};  // begins with the head
    bool theFits = false;
};

}  // namespace

void VkDocQueryData::WriteToFile(const QString &aFileName) try {
    if (WriteToXmlFile(aFileName)) return;
    throw Failure(SaveFailed, QString(),
                  QStringLiteral("Ошибка сохранения критериев поиска \"") + aFileName +
                      QStringLiteral("\":\r\n") + LastError);
} catch (...) {
    RaiseErrorUp(theModule, "WriteToFile");
}

bool VkDocQueryData::WriteToFileSafe(const QString &aFileName, QString &rErrorMessage) try {
    const bool written = WriteToXmlFile(aFileName);
    if (!written) rErrorMessage = LastError;
    return written;
} catch (...) {
    RaiseErrorUp(theModule, "WriteToFileSafe");
}

bool VkDocQueryData::WriteToXmlFile(const QString &aFileName) try {
    LastError.clear();
    const QString text = WriteToXmlString(true, 0);
    FilesLib();  // a library that is not there at all is a failure, not a reason why the file is
                 // not
    try {
        FilesLib().SaveTextToFile(text, aFileName, theCodePage);
    } catch (...) {
        LastError = CurrentFailure().Description();
        return false;
    }
    return true;
} catch (...) {
    RaiseErrorUp(theModule, "WriteToXmlFile");
}

QString VkDocQueryData::WriteToXmlString(bool aWithDeclaration, qint32 aDepth) try {
    StringAccumulator accumulator;
    IndentLevel = aDepth;
    if (aWithDeclaration) accumulator.AddLine(theDeclaration);

    const auto addAttribute = [&](const Field &aField) {
        accumulator.Add(QString::fromLatin1(aField.Name));
        accumulator.Add(u"=\"");
        switch (aField.Kind) {
            case FieldKind::Boolean:
                accumulator.Add(aField.Boolean(*this) ? u"1" : u"0");
                break;
            case FieldKind::Text:
                accumulator.Add(ShieldString(aField.Text(*this)));
                break;
            case FieldKind::Date:
                accumulator.Add(DateText(aField.Date(*this)));
                break;
            case FieldKind::Collection:
                break;
            case FieldKind::Long:
            case FieldKind::Enumeration:
            case FieldKind::Flags:
                accumulator.Add(QString::number(aField.Long(*this)));
                break;
        }
        accumulator.Add(u"\"");
    };

    for (const Line &line : theLines) {
        IndentLevel = CheckedAdd(aDepth, line.Depth);
        const Field *first = line.Fields.front();
        if (first && first->Kind == FieldKind::Collection) {
            WriteCollectedIDsToXmlString(accumulator, QString::fromLatin1(first->Name),
                                         first->Collection(*this));
            continue;
        }
        accumulator.Add(Indent());
        if (line.Text) accumulator.Add(line.Text);
        for (const Field *field : line.Fields) {
            if (!field) break;
            if (field != first) accumulator.Add(u" ");
            addAttribute(*field);
        }
        accumulator.AddLine(line.Blank ? u" " : u"");
    }
    return std::move(accumulator).CurrentString();
} catch (...) {
    RaiseErrorUp(theModule, "WriteToXmlString");
}

QString VkDocQueryData::Indent() const try {
    const qint32 count = CheckedMultiply(IndentLevel, theIndentStep);
    if (count < 0) {
        throw Failure(InvalidArgument, QString(),
                      QStringLiteral("Отрицательная глубина отступа: %1.").arg(IndentLevel));
    }
    return QString(count, u' ');
} catch (...) {
    RaiseErrorUp(theModule, "Indent");
}

void VkDocQueryData::WriteCollectedIDsToXmlString(
    StringAccumulator &aAccumulator, const QString &aName,
    const std::shared_ptr<RecordCollection> &aCollection) try {
    if (!aName.isEmpty()) {
        aAccumulator.AddLine(QString(Indent() + u'<' + aName + u'>'));
        IndentLevel = CheckedAdd(IndentLevel, 1);
    }
    if (aCollection && !aCollection->IsEmpty()) {
        ItemLine line(Indent());
        for (const std::shared_ptr<Record> &item : *aCollection) {
            if (!item) {
                throw Failure(ObjectNotSet, QString(),
                              QStringLiteral("Элемент списка \"%1\" отсутствует.").arg(aName));
            }
            line.Add(aAccumulator, item->ID());
        }
    }
    if (!aName.isEmpty()) {
        IndentLevel = CheckedSubtract(IndentLevel, 1);
        aAccumulator.AddLine(QString(Indent() + QStringLiteral("</") + aName + u'>'));
    }
} catch (...) {
    RaiseErrorUp(theModule, "WriteCollectedIDsToXmlString");
}

QString VkDocQueryData::ShieldString(QString aText) const try {
    // In one go: replacing one sign after the other moves a long text again and again.
    const auto isShielded = [](QChar aSign) { return !ShieldOf(aSign).empty(); };
    if (std::none_of(aText.cbegin(), aText.cend(), isShielded)) return aText;
    QString shielded;
    shielded.reserve(aText.size() + aText.size() / 4);
    for (const QChar sign : std::as_const(aText)) {
        const std::u16string_view shield = ShieldOf(sign);
        if (shield.empty())
            shielded += sign;
        else
            shielded += QStringView(shield);
    }
    return shielded;
} catch (...) {
    RaiseErrorUp(theModule, "ShieldString");
}

}  // namespace Vk_DocQuery
