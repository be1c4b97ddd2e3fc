#pragma once

#include <memory>
#include <optional>

#include <libxml/tree.h>
#include <QByteArray>
#include <QString>

#include "foundation/FileBounds.h"

namespace Vk_DocQuery {

/// A document or an element of a parsed file, or neither. Good as long as its XmlDocument lives.
/// Names are compared exactly and stand for names without a namespace.
class XmlNode {
public:
    XmlNode() = default;
    explicit XmlNode(xmlNode *aNode) : theNode(aNode) {}

    bool IsDocument() const { return theNode && theNode->type == XML_DOCUMENT_NODE; }
    bool IsElement() const { return theNode && theNode->type == XML_ELEMENT_NODE; }
    explicit operator bool() const { return theNode != nullptr; }

    /// The first child element of that name, or none; of a document the root element.
    XmlNode SelectSingleNode(const char *aName) const;
    /// The next element of that name beside this one, or none.
    XmlNode NextNode(const char *aName) const;
    /// The value of an attribute as UTF-8; a null array where there is none. The bytes are those of
    /// the document where that can be.
    QByteArray Attribute(const char *aName) const;

private:
    xmlNode *theNode = nullptr;
};

/// Why a file could not be loaded.
struct XmlParseError {
    QString Reason;
    QString SourceText;
    qint32 Line = 0;
};

/// A file read into memory as a tree. Nothing is fetched from anywhere, and a file that declares a
/// document type is refused, so that no entity can be declared.
class XmlDocument {
public:
    /// Largest file that is read.
    static constexpr qint64 theLargestSize = theLargestFile;
    /// Most elements and most attributes that are taken up: more than the lists that fill a file of
    /// that size when they are saved, and far fewer than "<i/>" again and again would give.
    static constexpr qint64 theMostElements = theMostElementsOfFile;
    /// Most attributes of one element. The fullest tag of a saved file has 26.
    static constexpr qint32 theMostAttributes = theMostAttributesOfElement;

    /// False leaves the cause in ParseError.
    bool Load(const QString &aFileName);
    bool LoadBytes(const QByteArray &aBytes);
    /// Why the last load failed; empty after one that did not.
    const XmlParseError &ParseError() const { return theError; }
    /// The document; none unless the last load went well.
    XmlNode Node() const { return XmlNode(reinterpret_cast<xmlNode *>(theTree.get())); }

private:
    struct TreeFree {
        void operator()(xmlDoc *aTree) const { xmlFreeDoc(aTree); }
    };
    std::unique_ptr<xmlDoc, TreeFree> theTree;
    XmlParseError theError;
};

}  // namespace Vk_DocQuery
