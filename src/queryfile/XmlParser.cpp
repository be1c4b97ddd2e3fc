#include "queryfile/XmlParser.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <initializer_list>
#include <new>

#include <libxml/parser.h>

#include "foundation/FileBounds.h"

namespace Vk_DocQuery {

namespace {

// The text is UTF-8 whatever it declares. The parser knows no entities but those of XML itself, and
// puts what they stand for into the values. Its own bounds are off, since one of them depends on
// where the last tags of a large file stand; those of FileBounds.h are judged here.
constexpr int theParserOptions = XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_IGNORE_ENC |
                                 XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;
constexpr qsizetype theLongestSource = 160;  // bytes of the faulty line on each side of the fault
constexpr qsizetype theLongestReason = 300;  // characters; the parser's may hold names of the file
constexpr int theValueSize = 5;  // pointers of an attribute: name, prefix, namespace, value, end
constexpr char theListEntry[] = "i";

bool IsLineEnd(char aByte) {
    return aByte == '\n' || aByte == '\r';
}

const char *Text(const xmlChar *aText) {
    return reinterpret_cast<const char *>(aText);
}

bool IsTooLong(const xmlChar *aName) {
    return aName && strnlen(Text(aName), theLongestName + 1) > theLongestName;
}

QString Cut(const QString &aReason) {
    return aReason.size() <= theLongestReason
               ? aReason
               : aReason.left(theLongestReason) + QStringLiteral("...");
}

bool IsInsideCharacter(char aByte) {
    return (static_cast<quint8>(aByte) & 0xC0U) == 0x80U;
}

/// While it lives, the errors that come without a parser, as those of memory may, go to its owner;
/// without it they would go to standard error.
class StrayErrors {
public:
    explicit StrayErrors(xmlStructuredErrorFunc aHandler, void *aOwner) {
        xmlSetStructuredErrorFunc(aOwner, aHandler);
    }
    ~StrayErrors() { xmlSetStructuredErrorFunc(theContext, theHandler); }
    StrayErrors(const StrayErrors &) = delete;
    StrayErrors &operator=(const StrayErrors &) = delete;

private:
    xmlStructuredErrorFunc theHandler = xmlStructuredError;  // the host's
    void *theContext = xmlStructuredErrorContext;
};

/// One run of the parser. Keeps the first error that tells its line and ends with it: what the
/// parser would find behind it are consequences, and they may take it long. The calls of the parser
/// fill the tree; what the reader never looks at does not get into it, so that its size is bounded
/// by the numbers of elements and attributes.
class ParserRun {
public:
    ParserRun(XmlTree &rTree, XmlParseError &rError)
        : theTree(rTree),
          theError(rError),
          theStrayErrors(&ParserRun::OnStrayError, this),
          theContext(xmlNewParserCtxt()) {
        if (!theContext) throw std::bad_alloc();
        theContext->_private = this;
        xmlSAXHandler &calls = *theContext->sax;
        calls.serror = &ParserRun::OnError;
        calls.internalSubset = &ParserRun::OnDocumentType;
        calls.startElementNs = &ParserRun::OnElement;
        calls.endElementNs = &ParserRun::OnElementEnd;
        calls.characters = calls.ignorableWhitespace = calls.cdataBlock = nullptr;
        calls.comment = nullptr;
        calls.processingInstruction = &ParserRun::OnInstruction;
        calls.reference = nullptr;
        calls.getEntity = nullptr;
    }
    ~ParserRun() { xmlFreeParserCtxt(theContext); }
    ParserRun(const ParserRun &) = delete;
    ParserRun &operator=(const ParserRun &) = delete;

    bool Parse(const QByteArray &aUtf8) {
        theOpen.push_back({});
        xmlDoc *document =
            xmlCtxtReadMemory(theContext, aUtf8.constData(), static_cast<int>(aUtf8.size()),
                              nullptr, nullptr, theParserOptions);
        const bool isWhole = document != nullptr;
        xmlFreeDoc(document);
        if (isWhole && !theIsRefused && !theThrown) RefuseRest();
        if (theMemoryIsGone && !theThrown) throw std::bad_alloc();
        if (theThrown) std::rethrow_exception(theThrown);
        if (!isWhole || theIsRefused) return false;
        theTree.Names.reset(theContext->dict);
        xmlDictReference(theContext->dict);
        return true;
    }

private:
    /// An element whose end has not come.
    struct Open {
        qint32 Number = 0;
        qint32 LastChild = 0;
        qint32 Entries = 0;  ///< children that are entries of a list
    };

    static ParserRun &Of(void *aContext) {
        return *static_cast<ParserRun *>(static_cast<xmlParserCtxt *>(aContext)->_private);
    }

    /// Nothing may be thrown through the parser: it is kept, and the parser ends.
    template <class Body>
    void Guarded(Body aBody) {
        try {
            aBody();
        } catch (...) {
            theThrown = std::current_exception();
            End();
        }
    }

    /// As the parser itself ends when it has no memory: good anywhere, while xmlStopParser takes
    /// away the text that is being read.
    void End() {
        theContext->instate = XML_PARSER_EOF;
        theContext->disableSAX = 1;
    }

    void Keep(const QString &aReason, qint32 aLine) {
        if (theError.Line > 0) return;
        theError.Reason = Cut(aReason.simplified());
        theError.Line = aLine;
        theError.SourceText = QString();
        const xmlParserInput *input = theContext->input;
        if (!input) return;
        const char *base = Text(input->base);
        theError.SourceText =
            LineAt(QByteArrayView(base, input->end - input->base), input->cur - input->base);
    }

    static void OnError(void *aContext, xmlErrorPtr aError) {
        if (aError->level < XML_ERR_ERROR) return;
        ParserRun &run = Of(aContext);
        if (aError->code == XML_ERR_NO_MEMORY || !aError->message) run.theMemoryIsGone = true;
        if (run.theMemoryIsGone) return run.End();
        run.Guarded([&] {
            run.Keep(QString::fromUtf8(aError->message), aError->line);
            if (aError->level == XML_ERR_FATAL && run.theError.Line > 0) run.End();
        });
    }

    static void OnStrayError(void *aRun, xmlErrorPtr aError) {
        if (aError->code == XML_ERR_NO_MEMORY)
            static_cast<ParserRun *>(aRun)->theMemoryIsGone = true;
    }

    /// Ends the run. Only errors that the parser gets over can have come before, and they are not
    /// what the file fails for.
    void Refuse(const QString &aReason) {
        theError = XmlParseError();
        Keep(aReason, theContext->input ? theContext->input->line : 0);
        theIsRefused = true;
        xmlStopParser(theContext);
    }

    /// The parser takes a zero byte behind the root for the end of the file.
    void RefuseRest() {
        const xmlParserInput *input = theContext->input;
        if (!input || input->cur >= input->end) return;
        Refuse(QStringLiteral("Extra content at the end of the document"));
    }

    static void OnDocumentType(void *aContext, const xmlChar *, const xmlChar *, const xmlChar *) {
        ParserRun &run = Of(aContext);
        run.Guarded([&] {
            run.Refuse(
                QStringLiteral("Объявление типа документа (DOCTYPE) в файле не допускается."));
        });
    }

    static void OnElement(void *aContext, const xmlChar *aName, const xmlChar *aPrefix,
                          const xmlChar *aUri, int aNamespaces, const xmlChar **aDeclared,
                          int aAttributes, int, const xmlChar **aValues) {
        ParserRun &run = Of(aContext);
        run.Guarded([&] {
            const char *name = aPrefix || aUri ? "" : Text(aName);
            run.CheckNames({aName, aPrefix});
            for (int i = 0; i < aNamespaces; ++i)
                run.CheckNames({aDeclared[2 * i], aDeclared[2 * i + 1]});
            for (int i = 0; i < aAttributes; ++i)
                run.CheckNames({aValues[i * theValueSize], aValues[i * theValueSize + 1]});
            run.CheckNumbers(name, aNamespaces, aAttributes);
            run.CheckValues(aAttributes, aValues);
            if (run.theIsRefused) return;
            run.AddElement(name);
            run.AddAttributes(aAttributes, aValues);
        });
    }

    static void OnInstruction(void *aContext, const xmlChar *aTarget, const xmlChar *) {
        ParserRun &run = Of(aContext);
        run.Guarded([&] { run.CheckNames({aTarget}); });
    }

    static void OnElementEnd(void *aContext, const xmlChar *, const xmlChar *, const xmlChar *) {
        ParserRun &run = Of(aContext);
        if (run.theOpen.size() > 1) run.theOpen.pop_back();
    }

    void CheckNames(std::initializer_list<const xmlChar *> aNames) {
        if (theIsRefused) return;
        if (std::any_of(aNames.begin(), aNames.end(), &IsTooLong)) {
            Refuse(QStringLiteral("Файл слишком сложен: допускаются имена не длиннее %1 байт.")
                       .arg(theLongestName));
        } else if (xmlDictSize(theContext->dict) > theMostNamesOfFile) {
            Refuse(QStringLiteral("Файл слишком сложен: допускается не более %1 разных имен.")
                       .arg(theMostNamesOfFile));
        }
    }

    void CheckNumbers(const char *aName, int aNamespaces, int aAttributes) {
        if (theIsRefused) return;
        theNamespaces += aNamespaces;
        theAttributes += aAttributes + aNamespaces;
        const auto elements = static_cast<qint64>(theTree.Elements.size());
        if (std::max(elements, theAttributes) > theMostElementsOfFile) {
            Refuse(QStringLiteral("Файл слишком сложен: допускается не более %1 элементов и "
                                  "стольких же атрибутов.")
                       .arg(theMostElementsOfFile));
        } else if (theNamespaces > theMostNamespacesOfFile) {
            Refuse(QStringLiteral("Файл слишком сложен: допускается не более %1 пространств имен.")
                       .arg(theMostNamespacesOfFile));
        } else if (static_cast<qint32>(theOpen.size()) > theDeepestElement) {
            Refuse(QStringLiteral("Файл слишком сложен: допускается не более %1 вложенных друг в "
                                  "друга элементов.")
                       .arg(theDeepestElement));
        } else if (std::strcmp(aName, theListEntry) == 0 &&
                   ++theOpen.back().Entries > theMostListEntries) {
            const auto list = static_cast<std::size_t>(theOpen.back().Number);
            Refuse(ListTooLong(QString::fromUtf8(theTree.Elements[list].Name)));
        }
    }

    void CheckValues(int aCount, const xmlChar **aValues) {
        for (; aCount > 0 && !theIsRefused; --aCount, aValues += theValueSize) {
            if (aValues[4] - aValues[3] > theLongestValue)
                Refuse(TextTooLong(QString::fromUtf8(Text(aValues[0]))));
        }
    }

    void AddElement(const char *aName) {
        const auto number = static_cast<qint32>(theTree.Elements.size());
        XmlTree::Element element;
        element.Name = aName;
        element.FirstAttribute = static_cast<quint32>(theTree.Attributes.size());
        theTree.Elements.push_back(element);
        Open &parent = theOpen.back();
        const auto before = static_cast<std::size_t>(parent.LastChild);
        const auto around = static_cast<std::size_t>(parent.Number);
        (before > 0 ? theTree.Elements[before].Next : theTree.Elements[around].FirstChild) = number;
        parent.LastChild = number;
        theOpen.push_back({number, 0, 0});
    }

    void AddAttributes(int aCount, const xmlChar **aValues) {
        for (; aCount > 0; --aCount, aValues += theValueSize) {
            if (aValues[1]) continue;  // with a prefix it is another one
            const char *begin = Text(aValues[3]);
            const char *end = Text(aValues[4]);
            theTree.Attributes.push_back({Text(aValues[0]),
                                          static_cast<quint32>(theTree.Values.size()),
                                          static_cast<qint32>(end - begin)});
            theTree.Values.append(begin, end);
            theTree.Elements.back().AttributeCount += 1;
        }
    }

    XmlTree &theTree;
    XmlParseError &theError;
    StrayErrors theStrayErrors;
    xmlParserCtxt *theContext;
    std::vector<Open> theOpen;
    std::exception_ptr theThrown;
    qint64 theAttributes = 0;
    qint64 theNamespaces = 0;
    bool theIsRefused = false;
    bool theMemoryIsGone = false;
};

}  // namespace

bool ParseXml(const QByteArray &aUtf8, XmlTree &rTree, XmlParseError &rError) {
    if (ParserRun(rTree, rError).Parse(aUtf8)) {
        rError = XmlParseError();
        return true;
    }
    if (rError.Reason.isEmpty()) rError.Reason = QStringLiteral("Файл не удалось разобрать.");
    return false;
}

QString LineAt(QByteArrayView aUtf8, qsizetype aPlace) {
    const char *const base = aUtf8.cbegin();
    const char *start = base + std::min(aPlace, aUtf8.size());
    while (start > base && (start == aUtf8.cend() || IsLineEnd(*start))) --start;
    const char *end = start;
    for (qsizetype n = 0; n < theLongestSource && start > base && !IsLineEnd(start[-1]); ++n)
        --start;
    for (qsizetype n = 0; n < theLongestSource && end < aUtf8.cend() && !IsLineEnd(*end); ++n)
        ++end;
    while (start < end && IsInsideCharacter(*start)) ++start;
    while (end > start && end < aUtf8.cend() && IsInsideCharacter(*end)) --end;
    QString line = QString::fromUtf8(start, end - start).trimmed();
    for (QChar &character : line) {
        if (character < u' ') character = u' ';  // a message box takes a zero for the end
    }
    return line;
}

qint32 LineNumberAt(QByteArrayView aUtf8, qsizetype aPlace) {
    return 1 + static_cast<qint32>(std::count(aUtf8.cbegin(), aUtf8.cbegin() + aPlace, '\n'));
}

}  // namespace Vk_DocQuery
