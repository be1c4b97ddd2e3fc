#pragma once

#include <memory>
#include <string>
#include <vector>

#include <libxml/tree.h>
#include <QtGlobal>

namespace Vk_DocQuery {

/// The elements and attributes of a file, each where its number says. Number 0 is the document, so
/// that 0 also stands for an element that is not there. Names with a namespace are empty: nobody
/// asks for them.
struct XmlTree {
    struct Element {
        const char *Name = "";
        quint32 FirstAttribute = 0;
        qint32 AttributeCount = 0;
        qint32 FirstChild = 0;
        qint32 Next = 0;
    };
    struct Attribute {
        const char *Name = "";
        quint32 Begin = 0;  // in Values
        qint32 Length = 0;
    };
    struct LetNamesGo {
        void operator()(xmlDict *aNames) const { xmlDictFree(aNames); }
    };

    std::vector<Element> Elements = std::vector<Element>(1);
    std::vector<Attribute> Attributes;
    std::string Values;                          // of all attributes, in UTF-8
    std::unique_ptr<xmlDict, LetNamesGo> Names;  // what the names above point into
};

}  // namespace Vk_DocQuery
