#pragma once

#include <QPlainTextEdit>

namespace Vk_DocQuery {

/// A box of plain text that is written as a whole and through a selection, with lines that end with
/// CR LF. The user reads and copies, but does not write.
///
/// What is written shows when the event loop comes round, so that any number of writes costs one
/// layout.
class TextPane : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit TextPane(QWidget *aParent = nullptr);

    /// The text as it was written.
    const QString &Text() const { return theText; }
    /// Puts another text in place and the selection, empty, before it.
    void SetText(const QString &aText);
    int SelStart() const { return theSelStart; }
    int SelLength() const { return theSelLength; }
    /// Counted in characters of the text; what lies outside of it is cut off.
    void SetSelection(int aStart, int aLength);
    /// Puts the text in the place of the selection and the selection, empty, behind it.
    void ReplaceSelection(const QString &aText);

    /// Shows at once what was written.
    void Flush();

protected:
    bool event(QEvent *aEvent) override;

private:
    void Changed();

    QString theText;
    int theSelStart = 0;
    int theSelLength = 0;
    QString theShownText;
    bool theFlushPosted = false;
};

}  // namespace Vk_DocQuery
