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
#include "queryfile/FileTable.h"
#include "queryfile/StringAccumulator.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryData";
constexpr qint32 theCodePage = 1251;
constexpr qint32 theIndentStep = 4;

constexpr char16_t theDeclaration[] = u"<?xml version=\"1.0\" encoding=\"windows-1251\"?>";

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

QString ShieldString(const QString &aText) try {
    // In one go: replacing one sign after the other moves a long text again and again.
    const auto isShielded = [](QChar aSign) { return !ShieldOf(aSign).empty(); };
    if (std::none_of(aText.cbegin(), aText.cend(), isShielded)) return aText;
    QString shielded;
    shielded.reserve(aText.size() + aText.size() / 4);
    for (const QChar sign : aText) {
        const std::u16string_view shield = ShieldOf(sign);
        if (shield.empty())
            shielded += sign;
        else
            shielded += QStringView(shield);
    }
    return shielded;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// Puts the text of a record together.
class Writer {
public:
    /// aDepth is that of the root.
    Writer(VkDocQueryData &aRecord, qint32 aDepth)
        : theRecord(aRecord), theRootLevel(aDepth), theIndentLevel(aDepth) {}

    void AddDeclaration() { theText.AddLine(theDeclaration); }

    /// A line of its own, aDeeper steps below the root.
    void AddTag(qint32 aDeeper, QStringView aTag) {
        BeginLine(aDeeper);
        theText.AddLine(aTag);
    }

    void AddElement(const FileTable::FileElement &aElement) {
        const QString name = QString::fromLatin1(aElement.Name);
        AddTag(1, QString(u'<' + name + u' '));
        for (const FileTable::Line &line : aElement.Lines) {
            BeginLine(2);
            AddAttributes(line);
            theText.AddLine(aElement.LineEnd);
        }
        const Field *list = aElement.Lists.front().Target;
        AddTag(1, list ? u">" : u"/>");
        if (!list) return;
        theIndentLevel = CheckedAdd(theRootLevel, 2);
        WriteCollectedIDsToXmlString(QString::fromLatin1(list->Name), list->Collection(theRecord));
        AddTag(1, QString(QStringLiteral("</") + name + u'>'));
    }

    QString Text() && { return std::move(theText).CurrentString(); }

private:
    void BeginLine(qint32 aDeeper) {
        theIndentLevel = CheckedAdd(theRootLevel, aDeeper);
        theText.Add(Indent());
    }

    void AddAttributes(const FileTable::Line &aLine) {
        for (const FileTable::Attribute &attribute : aLine) {
            if (!attribute.Target) break;
            if (&attribute != &aLine.front()) theText.Add(u" ");
            theText.Add(QString::fromLatin1(attribute.Target->Name));
            theText.Add(u"=\"");
            AddValue(*attribute.Target);
            theText.Add(u"\"");
        }
    }

    void AddValue(const Field &aField) {
        switch (aField.Kind) {
            case FieldKind::Boolean:
                return theText.Add(aField.Boolean(theRecord) ? u"1" : u"0");
            case FieldKind::Text:
                return theText.Add(ShieldString(aField.Text(theRecord)));
            case FieldKind::Date:
                return theText.Add(DateText(aField.Date(theRecord)));
            case FieldKind::Collection:
                return;
            case FieldKind::Long:
            case FieldKind::Enumeration:
            case FieldKind::Flags:
                return theText.Add(QString::number(aField.Long(theRecord)));
        }
    }

    QString Indent() const try {
        const qint32 count = CheckedMultiply(theIndentLevel, theIndentStep);
        if (count < 0) {
            throw Failure(InvalidArgument, QString(),
                          QStringLiteral("Отрицательная глубина отступа: %1.").arg(theIndentLevel));
        }
        return QString(count, u' ');
    } catch (...) {
        RaiseErrorUp(theModule, __func__);
    }

    void WriteCollectedIDsToXmlString(const QString &aName,
                                      const std::shared_ptr<RecordCollection> &aCollection) try {
        theText.AddLine(QString(Indent() + u'<' + aName + u'>'));
        theIndentLevel = CheckedAdd(theIndentLevel, 1);
        if (aCollection && !aCollection->IsEmpty()) {
            ItemLine line(Indent());
            for (const std::shared_ptr<Record> &item : *aCollection) {
                if (!item) {
                    throw Failure(ObjectNotSet, QString(),
                                  QStringLiteral("Элемент списка \"%1\" отсутствует.").arg(aName));
                }
                line.Add(theText, item->ID());
            }
        }
        theIndentLevel = CheckedSubtract(theIndentLevel, 1);
        theText.AddLine(QString(Indent() + QStringLiteral("</") + aName + u'>'));
    } catch (...) {
        RaiseErrorUp(theModule, __func__);
    }

    StringAccumulator theText;
    VkDocQueryData &theRecord;
    const qint32 theRootLevel;
    qint32 theIndentLevel;
};

}  // namespace

void VkDocQueryData::WriteToFile(const QString &aFileName) try {
    if (WriteToXmlFile(aFileName)) return;
    throw Failure(SaveFailed, QString(),
                  QStringLiteral("Ошибка сохранения критериев поиска \"") + aFileName +
                      QStringLiteral("\":\r\n") + LastError);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool VkDocQueryData::WriteToFileSafe(const QString &aFileName, QString &rErrorMessage) try {
    const bool written = WriteToXmlFile(aFileName);
    if (!written) rErrorMessage = LastError;
    return written;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
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
    RaiseErrorUp(theModule, __func__);
}

QString VkDocQueryData::WriteToXmlString(bool aWithDeclaration, qint32 aDepth) try {
    Writer writer(*this, aDepth);
    if (aWithDeclaration) writer.AddDeclaration();
    writer.AddTag(0, u"<VkDocQuery ver=\"1\">");
    for (const FileTable::FileElement &element : FileTable::theElements) writer.AddElement(element);
    writer.AddTag(0, u"</VkDocQuery>");
    return std::move(writer).Text();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
