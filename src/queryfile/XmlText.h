#pragma once

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

/// The text of an XML file as UTF-8.
struct XmlText {
    QByteArray Utf8;
    QString Reason;       ///< why it cannot be read, or cannot be read on; empty if it is whole
    qsizetype Fault = 0;  ///< where in Utf8 the reason lies

    bool IsBlank() const;
};

/// The text of the bytes, by their byte order mark, their first bytes, or else their declaration.
/// The character sets are UTF-8, UTF-16 and UTF-32 of both orders, and the one-byte sets of a
/// table; others are refused. The text takes at most three times as much room as the bytes. The
/// parser takes it as it is: it may begin with a mark of UTF-8, and always does where the parser
/// would otherwise see in its first bytes the mark of another character set.
XmlText XmlTextOf(const QByteArray &aBytes);

/// Where a start tag has its attribute number aMost + 1; -1 if none has so many. The parser
/// compares every attribute of an element with all the others before it tells of any.
qsizetype PlaceWithMoreAttributes(QByteArrayView aText, qint32 aMost);

}  // namespace Vk_DocQuery
