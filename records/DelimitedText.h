#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

namespace Vk_Records {

/// A cell of a table as it stands in its file, in UTF-8, without the quotes around it.
struct RawCell {
    QByteArrayView Bytes;
    bool HasQuotes = false;  ///< it holds doubled ones, which stand for one each

    QString Text() const;
};

/// The rows of a table in a text whose cells are parted by commas, semicolons or tabs. A cell that
/// begins with a quote ends at the next single one and may hold anything between, line ends too.
class DelimitedText {
public:
    enum class Fault { None, OpenQuote, TextBehindQuote };

    /// The text must outlive the rows.
    DelimitedText(QByteArrayView aText, char aSeparator);

    /// Goes to the next row with anything in it; false at the end.
    bool Next();
    /// The line on which the row begins, counted from 1.
    int Line() const { return theRowLine; }
    const std::vector<RawCell> &Cells() const { return theCells; }
    Fault WhatIsWrong() const { return theFault; }

private:
    bool IsBlank() const;
    void TakeCell();
    bool PassSeparator();
    void PassLineEnd();
    RawCell Plain();
    RawCell Quoted();
    RawCell EndQuoted(const char *aBegin, bool aHasQuotes);
    bool IsAtCellEnd() const;

    const char *theAt;
    const char *theEnd;
    char theSeparator;
    int theLine = 1;
    int theRowLine = 1;
    std::vector<RawCell> theCells;
    Fault theFault = Fault::None;
};

/// The separator that the first line with anything on it has most of.
char SeparatorOf(QByteArrayView aText);

/// The text as a cell, in quotes if it needs them.
QByteArray CellOf(const QString &aText);

}  // namespace Vk_Records
