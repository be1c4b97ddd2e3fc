#include "queryfile/XmlNode.h"

#include <cstring>

#include "foundation/FileBounds.h"
#include "queryfile/FileBytes.h"
#include "queryfile/XmlParser.h"
#include "queryfile/XmlText.h"
#include "queryfile/XmlTree.h"

namespace Vk_DocQuery {

namespace {

/// What can be said against a text before it is parsed.
XmlParseError FaultOf(const XmlText &aText) {
    if (!aText.Reason.isEmpty())
        return {aText.Reason, LineAt(aText.Utf8, aText.Fault),
                LineNumberAt(aText.Utf8, aText.Fault)};
    if (aText.IsBlank()) return {QStringLiteral("Файл пуст."), QString(), 0};
    const qsizetype place = PlaceWithMoreAttributes(aText.Utf8, theMostAttributesOfElement);
    if (place < 0) return {};
    return {
        QStringLiteral("Файл слишком сложен: допускается не более %1 атрибутов у одного элемента.")
            .arg(theMostAttributesOfElement),
        QString(), LineNumberAt(aText.Utf8, place)};
}

}  // namespace

XmlNode XmlNode::Named(qint32 aFirst, const char *aName) const {
    for (qint32 number = aFirst; number > 0;) {
        const XmlTree::Element &element = theTree->Elements[static_cast<std::size_t>(number)];
        if (std::strcmp(element.Name, aName) == 0) return XmlNode(theTree, number);
        number = element.Next;
    }
    return XmlNode();
}

XmlNode XmlNode::SelectSingleNode(const char *aName) const {
    if (!theTree) return XmlNode();
    return Named(theTree->Elements[static_cast<std::size_t>(theNumber)].FirstChild, aName);
}

XmlNode XmlNode::NextNode(const char *aName) const {
    if (!theTree) return XmlNode();
    return Named(theTree->Elements[static_cast<std::size_t>(theNumber)].Next, aName);
}

QByteArray XmlNode::Attribute(const char *aName) const {
    if (!IsElement()) return QByteArray();
    const XmlTree::Element &element = theTree->Elements[static_cast<std::size_t>(theNumber)];
    const XmlTree::Attribute *attribute = theTree->Attributes.data() + element.FirstAttribute;
    for (const auto *end = attribute + element.AttributeCount; attribute != end; ++attribute) {
        if (std::strcmp(attribute->Name, aName) == 0)
            return QByteArray::fromRawData(theTree->Values.data() + attribute->Begin,
                                           attribute->Length);
    }
    return QByteArray();
}

XmlDocument::XmlDocument() = default;
XmlDocument::~XmlDocument() = default;

bool XmlDocument::Load(const QString &aFileName) {
    theTree.reset();
    theError = XmlParseError();
    QByteArray bytes;
    theError.Reason = ReadFileBytes(aFileName, bytes);
    return theError.Reason.isEmpty() && LoadBytes(bytes);
}

bool XmlDocument::LoadBytes(const QByteArray &aBytes) {
    theTree.reset();
    const XmlText text = XmlTextOf(aBytes);
    theError = FaultOf(text);
    if (!theError.Reason.isEmpty()) return false;
    auto tree = std::make_unique<XmlTree>();
    if (!ParseXml(text.Utf8, *tree, theError)) return false;
    theTree = std::move(tree);
    return true;
}

}  // namespace Vk_DocQuery
