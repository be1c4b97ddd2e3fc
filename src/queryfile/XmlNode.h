#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

struct XmlTree;

/// A document or an element of a parsed file, or neither. Good as long as its XmlDocument lives.
/// Names are compared exactly and stand for names without a namespace.
class XmlNode {
public:
    XmlNode() = default;

    bool IsDocument() const { return theTree && theNumber == 0; }
    bool IsElement() const { return theTree && theNumber > 0; }
    explicit operator bool() const { return theTree != nullptr; }

    /// The first child element of that name, or none; of a document the root element.
    XmlNode SelectSingleNode(const char *aName) const;
    /// The next element of that name beside this one, or none.
    XmlNode NextNode(const char *aName) const;
    /// The value of an attribute as UTF-8; a null array where there is none. The bytes are those of
    /// the document.
    QByteArray Attribute(const char *aName) const;

private:
    friend class XmlDocument;
    XmlNode(const XmlTree *aTree, qint32 aNumber) : theTree(aTree), theNumber(aNumber) {}
    XmlNode Named(qint32 aFirst, const char *aName) const;

    const XmlTree *theTree = nullptr;
    qint32 theNumber = 0;
};

/// Why a file could not be loaded.
struct XmlParseError {
    QString Reason;
    QString SourceText;
    qint32 Line = 0;
};

/// A file read into memory as a tree. Nothing is fetched from anywhere, and a file that declares a
/// document type is refused, so that no entity can be declared; so is one beyond the bounds of
/// FileBounds.h. Memory that is gone is raised as std::bad_alloc.
class XmlDocument {
public:
    XmlDocument();
    ~XmlDocument();
    XmlDocument(const XmlDocument &) = delete;
    XmlDocument &operator=(const XmlDocument &) = delete;

    /// False leaves the cause in ParseError.
    bool Load(const QString &aFileName);
    bool LoadBytes(const QByteArray &aBytes);
    /// Why the last load failed; empty after one that did not.
    const XmlParseError &ParseError() const { return theError; }
    /// The document; none unless the last load went well.
    XmlNode Node() const { return theTree ? XmlNode(theTree.get(), 0) : XmlNode(); }

private:
    std::unique_ptr<XmlTree> theTree;
    XmlParseError theError;
};

}  // namespace Vk_DocQuery
