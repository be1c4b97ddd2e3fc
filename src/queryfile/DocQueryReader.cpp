#include <utility>

#include "foundation/mErrorHandling.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/OpenNotes.h"
#include "query/Fields.h"
#include "queryfile/mVkXmlToolsErr.h"
#include "queryfile/StoredIdentities.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryData";

/// The field must hold the number, or be on.
struct Condition {
    const Field *What = nullptr;
    qint32 Wanted = 1;
};

/// One attribute or list of an element. All defaults are false, zero, empty or null, not the values
/// of a new record.
struct Row {
    const Field *Target;
    std::array<Condition, 2> When{};      // none is always
    const char16_t *ListClass = nullptr;  // class of the items of a list
};

struct Element {
    const char *Name;
    const Row *Begin;
    const Row *End;
};

constexpr Row R(const Field *aTarget, Condition aFirst = {}, Condition aSecond = {},
                const char16_t *aListClass = nullptr) {
    return Row{aTarget, {aFirst, aSecond}, aListClass};
}

#define A(Name) FieldNamed(#Name)
#define ON(Name)             \
    Condition {              \
        FieldNamed(#Name), 1 \
    }
#define MODE(Name, Number)        \
    Condition {                   \
        FieldNamed(#Name), Number \
    }

// What a read puts back before it looks at the file. NotesMode is not among them and keeps what it
// held.
constexpr const Field *theResetFields[] = {
    A(IsDocStatus),   A(DocStatuses), A(IsNotes),      A(Notes),         A(IsSignDate),
    A(SignDate1),     A(SignDate2),   A(IsSignerFio),  A(SignerSurname), A(IsOrvex),
    A(IsOrvexStages), A(OrvexStages), A(IsOrvexTerms), A(OrvexTerms),    A(IsFss),
    A(IsFssStages),   A(FssStages),   A(IsFssTerms),   A(FssTerms),      A(WholePfrCluster),
    A(IsDocNum),      A(DocNumMode),  A(DocNum1),      A(DocNum2),       A(LastDocNumsCount),
};

// clang-format off
constexpr Row theDocRows[] = {
    R(A(IsDocStatus)),
    R(A(DocStatuses),        ON(IsDocStatus)),
    R(A(IsNotes)),
    R(A(NotesMode),          ON(IsNotes)),
    R(A(Notes),              ON(IsNotes)),
    R(A(IsSignDate)),
    R(A(SignDate1),          ON(IsSignDate)),
    R(A(SignDate2),          ON(IsSignDate)),
    R(A(IsSignerFio)),
    R(A(SignerSurname),      ON(IsSignerFio)),
    R(A(IsOrvex)),
    R(A(IsOrvexStages),      ON(IsOrvex)),
    R(A(OrvexStages),        ON(IsOrvex), ON(IsOrvexStages)),
    R(A(IsOrvexTerms),       ON(IsOrvex)),
    R(A(OrvexTerms),         ON(IsOrvex), ON(IsOrvexTerms)),
    R(A(IsFss)),
    R(A(IsFssStages),        ON(IsFss)),
    R(A(FssStages),          ON(IsFss), ON(IsFssStages)),
    R(A(IsFssTerms),         ON(IsFss)),
    R(A(FssTerms),           ON(IsFss), ON(IsFssTerms)),
    R(A(IsDocNum)),
    R(A(DocNumMode),         ON(IsDocNum)),
    R(A(DocNum1),            ON(IsDocNum)),
    R(A(DocNum2),            ON(IsDocNum)),
    R(A(LastDocNumsCount),   ON(IsDocNum)),
    R(A(WholePfrCluster)),
};

constexpr Row theTemplateRows[] = {
    R(A(IsTemplate)),
    R(A(TemplatesMode),      ON(IsTemplate)),
    R(A(Templates),          ON(IsTemplate), MODE(TemplatesMode, TemplateClass), u"Vk_Records.VkTemplType"),
    R(A(Templates),          ON(IsTemplate), MODE(TemplatesMode, TemplateVersion), u"Vk_Records.VkTemplate"),
};

constexpr Row thePeriodRows[] = {
    R(A(IsPeriods)),
    R(A(PeriodCriterion),    ON(IsPeriods)),
    R(A(OnePeriodYear),      ON(IsPeriods)),
    R(A(OnePeriodMonthID),   ON(IsPeriods)),
    R(A(RangePeriodYear1),   ON(IsPeriods)),
    R(A(RangePeriodMonth1),  ON(IsPeriods)),
    R(A(RangePeriodYear2),   ON(IsPeriods)),
    R(A(RangePeriodMonth2),  ON(IsPeriods)),
    R(A(IsPeriodTypes),      ON(IsPeriods)),
    R(A(PeriodTypes),        ON(IsPeriods), ON(IsPeriodTypes)),
};

constexpr Row theStreamRows[] = {
    R(A(IsAccStreamType)),
    R(A(AccStreamTypes),     ON(IsAccStreamType)),
    R(A(IsAccStreamOpeness)),
    R(A(AccStreamOpen),      ON(IsAccStreamOpeness)),
    R(A(IsContoraPrefix1)),
    R(A(ContoraPrefix1),     ON(IsContoraPrefix1)),
    R(A(IsContoraPrefix2)),
    R(A(ContoraPrefix2),     ON(IsContoraPrefix2)),
    R(A(ContoraJoining)),
    R(A(IsAccStreamsList)),
    R(A(AccStreamsList),     ON(IsAccStreamsList), {}, u"Vk_Records.VkAccStream"),
};

constexpr Row theTaxpayerRows[] = {
    R(A(IsTaxpayers)),
    R(A(TaxpayersType),      ON(IsTaxpayers)),
    R(A(IncludeMainOrgDocs), ON(IsTaxpayers)),
    R(A(TaxpayersList),      ON(IsTaxpayers), {}, u"Vk_Records.VkPerson"),
};

constexpr Row theOtherRows[] = {
    R(A(LastTab)),
};

constexpr Element theElements[] = {
    {"DocCriteria",       std::begin(theDocRows),      std::end(theDocRows)},
    {"TemplateCriteria",  std::begin(theTemplateRows), std::end(theTemplateRows)},
    {"PeriodCriteria",    std::begin(thePeriodRows),   std::end(thePeriodRows)},
    {"AccStreamCriteria", std::begin(theStreamRows),   std::end(theStreamRows)},
    {"TaxpayersCriteria", std::begin(theTaxpayerRows), std::end(theTaxpayerRows)},
    {"OtherOptions",      std::begin(theOtherRows),    std::end(theOtherRows)},
};
// clang-format on

#undef A
#undef ON
#undef MODE

bool Holds(const Condition &aCondition, VkDocQueryData &aRecord) {
    if (!aCondition.What) return true;
    if (aCondition.What->Kind == FieldKind::Boolean) return aCondition.What->Boolean(aRecord);
    return aCondition.What->Long(aRecord) == aCondition.Wanted;
}

void ReadAttribute(const XmlNode &aNode, const Field &aField, VkDocQueryData &aRecord) {
    const char *name = aField.Name;
    switch (aField.Kind) {
        case FieldKind::Boolean:
            aField.Boolean(aRecord) = XmlGetBooleanAttributeDef(aNode, name, false);
            break;
        case FieldKind::Text:
            aField.Text(aRecord) = XmlGetStringAttributeDef(aNode, name, QString());
            break;
        case FieldKind::Date:
            aField.Date(aRecord) = XmlGetRussDateAttributeDef(aNode, name, Null());
            break;
        case FieldKind::Collection:
            break;
        case FieldKind::Long:
        case FieldKind::Enumeration:
        case FieldKind::Flags:
            aField.SetLong(aRecord, XmlGetLongAttributeDef(aNode, name, 0));
            break;
    }
}

/// The root that a node stands for: a document's element of that name, or the element itself.
XmlNode RootOf(const XmlNode &aNode) {
    return aNode.IsDocument() ? aNode.SelectSingleNode("VkDocQuery") : aNode;
}

}  // namespace

bool VkDocQueryData::ReadFromXmlFile(const QString &aFileName) try {
    QString name = aFileName;  // may be the very field that is cleared here
    LastError.clear();
    FileName.clear();
    XmlDocument document;
    if (!document.Load(name)) {
        LastError = XmlExplainParseError(document);
        return false;
    }
    if (!ReadFromXml(document.Node())) return false;
    FileName = std::move(name);
    return true;
} catch (...) {
    RaiseErrorUp(theModule, "ReadFromXmlFile");
}

bool VkDocQueryData::ReadFromXml(const XmlNode &aNode) try {
    LastError.clear();
    if (!aNode) throw Failure(ObjectNotSet, QString(), QStringLiteral("Узел XML не задан."));
    const XmlNode root = RootOf(aNode);
    if (!root) {
        LastError = QStringLiteral(
            "Неверный формат файла критериев поиска. Отсутствует корневой узел VkDocQuery.");
        return false;
    }
    const OpenNotes notes;
    for (const Field *field : theResetFields) field->Reset(*this, 0);  // none of them is a year
    for (const Element &element : theElements) {
        const XmlNode node = root.SelectSingleNode(element.Name);
        if (!node) continue;
        for (const Row *row = element.Begin; row != element.End; ++row) {
            if (!Holds(row->When[0], *this) || !Holds(row->When[1], *this)) continue;
            if (row->ListClass) {
                row->Target->Collection(*this) = ReadCollectedIDsFromXml(
                    node, row->Target->Name, QString::fromUtf16(row->ListClass));
            } else {
                ReadAttribute(node, *row->Target, *this);
            }
        }
    }
    return true;
} catch (...) {
    RaiseErrorUp(theModule, "ReadFromXml");
}

std::shared_ptr<RecordCollection> VkDocQueryData::ReadCollectedIDsFromXml(
    const XmlNode &aNode, const char *aName, const QString &aClassName) try {
    auto result = std::make_shared<RecordCollection>();
    const std::vector<double> ids = StoredIdentities(aNode, aName);
    if (!ids.empty()) AnnounceRecords(aClassName, ids);
    for (const double id : ids) {
        auto item = CreateObjectAs<Record>(aClassName);
        item->SetID(id);
        result->Add(std::move(item));
    }
    return result;
} catch (...) {
    RaiseErrorUp(theModule, "ReadCollectedIDsFromXml");
}

std::vector<double> StoredIdentities(const XmlNode &aNode, const char *aName) {
    std::vector<double> identities;
    for (XmlNode item = aNode.SelectSingleNode(aName).SelectSingleNode("i"); item;
         item = item.NextNode("i")) {
        const qint32 id = XmlGetLongAttributeDef(item, "id", 0);
        if (id != 0) identities.push_back(id);
    }
    return identities;
}

}  // namespace Vk_DocQuery
