#include "queryfile/XmlNode.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include <libxml/parser.h>
#include <libxml/SAX2.h>

#include "queryfile/FileBytes.h"

namespace Vk_DocQuery {

namespace {

constexpr int theParserOptions = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_COMPACT |
                                 XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
constexpr qsizetype theLongestSource = 160;  // bytes of the faulty line on each side of the fault

bool IsNamed(const xmlNode &aNode, const char *aName) {
    return !aNode.ns && std::strcmp(reinterpret_cast<const char *>(aNode.name), aName) == 0;
}

XmlNode FirstElement(xmlNode *aFirst, const char *aName) {
    for (xmlNode *node = aFirst; node; node = node->next) {
        if (node->type == XML_ELEMENT_NODE && IsNamed(*node, aName)) return XmlNode(node);
    }
    return XmlNode();
}

bool IsBlank(char aByte) {
    return aByte == ' ' || aByte == '\t' || aByte == '\r' || aByte == '\n';
}

bool IsLineEnd(xmlChar aByte) {
    return aByte == '\n' || aByte == '\r';
}

/// The line at which the parser stands, or what of it lies near; the parser's buffer is UTF-8.
QString LineAt(const xmlParserInput &aInput) {
    const xmlChar *start = std::min(aInput.cur, aInput.end);
    while (start > aInput.base && (start == aInput.end || IsLineEnd(*start))) --start;
    const xmlChar *end = start;
    for (qsizetype n = 0; n < theLongestSource && start > aInput.base && !IsLineEnd(start[-1]); ++n)
        --start;
    for (qsizetype n = 0; n < theLongestSource && end < aInput.end && !IsLineEnd(*end); ++n) ++end;
    while (start < end && (*start & 0xC0U) == 0x80U) ++start;  // not in the middle of a character
    while (end > start && end < aInput.end && (*end & 0xC0U) == 0x80U) --end;
    QString line = QString::fromUtf8(reinterpret_cast<const char *>(start), end - start).trimmed();
    for (QChar &character : line) {
        if (character < u' ') character = u' ';  // a message box takes a zero for the end
    }
    return line;
}

/// One run of the parser. Keeps the first error that tells its line; later ones are its
/// consequences. What the reader never looks at (texts, comments, instructions) does not get into
/// the tree, so that its size is bounded by the numbers of elements and attributes.
class ParserRun {
public:
    explicit ParserRun(XmlParseError &aError) : theError(aError), theContext(xmlNewParserCtxt()) {
        if (!theContext) throw std::bad_alloc();
        theContext->_private = this;
        theContext->sax->serror = &ParserRun::OnError;
        theContext->sax->internalSubset = &ParserRun::OnDocumentType;
        theContext->sax->startElementNs = &ParserRun::OnElement;
        theContext->sax->characters = nullptr;
        theContext->sax->cdataBlock = nullptr;
        theContext->sax->comment = nullptr;
        theContext->sax->processingInstruction = nullptr;
    }
    ~ParserRun() { xmlFreeParserCtxt(theContext); }
    ParserRun(const ParserRun &) = delete;
    ParserRun &operator=(const ParserRun &) = delete;

    xmlDoc *Parse(const QByteArray &aBytes, int aOptions) {
        // Errors of character sets come without a parser; without this they go to standard error.
        const xmlStructuredErrorFunc handler = xmlStructuredError;
        void *const handlerContext = xmlStructuredErrorContext;
        xmlSetStructuredErrorFunc(nullptr, [](void *, xmlErrorPtr) {});
        xmlDoc *tree =
            xmlCtxtReadMemory(theContext, aBytes.constData(), static_cast<int>(aBytes.size()),
                              nullptr, nullptr, aOptions);
        xmlSetStructuredErrorFunc(handlerContext, handler);
        if (tree && theIsRefused) {
            xmlFreeDoc(tree);
            tree = nullptr;
        }
        return tree;
    }

private:
    void Keep(const QString &aReason, qint32 aLine) {
        if (theError.Line > 0) return;
        theError.Reason = aReason.simplified();
        theError.Line = aLine;
        theError.SourceText = theContext->input ? LineAt(*theContext->input) : QString();
    }

    static void OnError(void *aContext, xmlErrorPtr aError) {
        if (aError->level < XML_ERR_ERROR) return;
        auto *run = static_cast<ParserRun *>(static_cast<xmlParserCtxt *>(aContext)->_private);
        run->Keep(QString::fromUtf8(aError->message), aError->line);
    }

    /// Ends the run. Only errors that the parser gets over can have come before, and they are not
    /// what the file fails for.
    void Refuse(const QString &aReason) {
        theError = XmlParseError();
        Keep(aReason, theContext->input ? theContext->input->line : 0);
        theIsRefused = true;
        xmlStopParser(theContext);
    }

    static void OnDocumentType(void *aContext, const xmlChar *, const xmlChar *, const xmlChar *) {
        static_cast<ParserRun *>(static_cast<xmlParserCtxt *>(aContext)->_private)
            ->Refuse(QStringLiteral("Объявление типа документа (DOCTYPE) в файле не допускается."));
    }

    static void OnElement(void *aContext, const xmlChar *aName, const xmlChar *aPrefix,
                          const xmlChar *aUri, int aNamespaces, const xmlChar **aDeclared,
                          int aAttributes, int aDefaulted, const xmlChar **aValues) {
        auto *run = static_cast<ParserRun *>(static_cast<xmlParserCtxt *>(aContext)->_private);
        run->theElements += 1;
        run->theAttributes += aAttributes + aNamespaces;
        if (std::max(run->theElements, run->theAttributes) > XmlDocument::theMostElements) {
            run->Refuse(QStringLiteral("Файл слишком сложен: допускается не более %1 элементов и "
                                       "стольких же атрибутов.")
                            .arg(XmlDocument::theMostElements));
            return;
        }
        xmlSAX2StartElementNs(aContext, aName, aPrefix, aUri, aNamespaces, aDeclared, aAttributes,
                              aDefaulted, aValues);
    }

    XmlParseError &theError;
    xmlParserCtxt *theContext;
    qint64 theElements = 0;
    qint64 theAttributes = 0;
    bool theIsRefused = false;
};

}  // namespace

XmlNode XmlNode::SelectSingleNode(const char *aName) const {
    return theNode ? FirstElement(theNode->children, aName) : XmlNode();
}

XmlNode XmlNode::NextNode(const char *aName) const {
    return theNode ? FirstElement(theNode->next, aName) : XmlNode();
}

QByteArray XmlNode::Attribute(const char *aName) const {
    if (!IsElement()) return QByteArray();
    for (const xmlAttr *attribute = theNode->properties; attribute; attribute = attribute->next) {
        if (attribute->ns ||
            std::strcmp(reinterpret_cast<const char *>(attribute->name), aName) != 0)
            continue;
        const xmlNode *text = attribute->children;
        if (!text || !text->content) return QByteArray("");
        if (!text->next) {
            const auto *content = reinterpret_cast<const char *>(text->content);
            return QByteArray::fromRawData(content, static_cast<qsizetype>(std::strlen(content)));
        }
        xmlChar *joined = xmlNodeListGetString(theNode->doc, attribute->children, 1);
        QByteArray value(reinterpret_cast<const char *>(joined));
        xmlFree(joined);
        return value;
    }
    return QByteArray();
}

bool XmlDocument::Load(const QString &aFileName) {
    theTree.reset();
    theError = XmlParseError();
    QByteArray bytes;
    theError.Reason = ReadFileBytes(aFileName, theLargestSize, bytes);
    return theError.Reason.isEmpty() && LoadBytes(bytes);
}

bool XmlDocument::LoadBytes(const QByteArray &aBytes) {
    theTree.reset();
    theError = XmlParseError();
    if (std::all_of(aBytes.cbegin(), aBytes.cend(), IsBlank)) {
        theError.Reason = QStringLiteral("Файл пуст.");
        return false;
    }
    bool decoded = false;
    const QByteArray bytes = DecodedXmlBytes(aBytes, decoded);
    const qint32 line = LineWithMoreAttributes(bytes, theMostAttributes);
    if (line > 0) {
        theError.Line = line;
        theError.Reason = QStringLiteral(
                              "Файл слишком сложен: допускается не более %1 атрибутов у одного "
                              "элемента.")
                              .arg(theMostAttributes);
        return false;
    }
    ParserRun run(theError);
    // The parser takes bytes without a character set of their own for UTF-8, and converts nothing.
    theTree.reset(run.Parse(bytes, theParserOptions | (decoded ? XML_PARSE_IGNORE_ENC : 0)));
    if (theTree) {
        theError = XmlParseError();
    } else if (theError.Reason.isEmpty()) {
        theError.Reason = QStringLiteral("Файл не удалось разобрать.");
    }
    return theTree != nullptr;
}

}  // namespace Vk_DocQuery
