#include <algorithm>
#include <utility>

#include "foundation/mErrorHandling.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/OpenNotes.h"
#include "queryfile/FileTable.h"
#include "queryfile/mVkXmlToolsErr.h"
#include "queryfile/StoredIdentities.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryData";

bool Holds(const FileTable::ReadConditions &aConditions, VkDocQueryData &aRecord) {
    return std::ranges::all_of(aConditions, [&](const FileTable::ReadCondition &condition) {
        if (!condition.What) return true;
        if (condition.What->Kind == FieldKind::Boolean) return condition.What->Boolean(aRecord);
        return condition.What->Long(aRecord) == condition.Wanted;
    });
}

void PutBack(const Field &aField, qint32 aValue, VkDocQueryData &aRecord) {
    switch (aField.Kind) {
        case FieldKind::Boolean:
            aField.Boolean(aRecord) = aValue != 0;
            break;
        case FieldKind::Text:
            aField.Text(aRecord).clear();
            break;
        case FieldKind::Date:
            aField.Date(aRecord) = Empty();
            break;
        case FieldKind::Collection:
            break;  // is no attribute
        case FieldKind::Long:
        case FieldKind::Enumeration:
        case FieldKind::Flags:
            aField.SetLong(aRecord, aValue);
            break;
    }
}

/// A pass of its own, since an element that is missing is put back as well.
void PutBackElements(VkDocQueryData &aRecord) {
    for (const FileTable::FileElement &element : FileTable::theElements) {
        if (!element.PutsBack) continue;
        for (const FileTable::Line &line : element.Lines)
            for (const FileTable::Attribute &attribute : line)
                if (attribute.Target && attribute.Before)
                    PutBack(*attribute.Target, *attribute.Before, aRecord);
    }
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

std::shared_ptr<RecordCollection> ReadCollectedIDsFromXml(const XmlNode &aNode, const char *aName,
                                                          const QString &aClassName) try {
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
    RaiseErrorUp(theModule, __func__);
}

void ReadElement(const XmlNode &aNode, const FileTable::FileElement &aElement,
                 VkDocQueryData &rRecord) {
    for (const FileTable::Line &line : aElement.Lines)
        for (const FileTable::Attribute &attribute : line)
            if (attribute.Target && Holds(attribute.When, rRecord))
                ReadAttribute(aNode, *attribute.Target, rRecord);
    for (const FileTable::IdentityList &list : aElement.Lists)
        if (list.Target && Holds(list.When, rRecord))
            list.Target->Collection(rRecord) = ReadCollectedIDsFromXml(
                aNode, list.Target->Name, QString::fromUtf16(list.ItemClass));
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
    RaiseErrorUp(theModule, __func__);
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
    PutBackElements(*this);
    for (const FileTable::FileElement &element : FileTable::theElements)
        if (const XmlNode node = root.SelectSingleNode(element.Name))
            ReadElement(node, element, *this);
    return true;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
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
