#pragma once

#include <QPlainTextEdit>

namespace Vk_DocQuery {

/// A box of plain text that is read and written through its text and its selection. Its lines end
/// with CR LF wherever a text goes in or comes out; within a selection a line end counts as one
/// character. The user reads and copies, but does not write.
class TextPane : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit TextPane(QWidget *aParent = nullptr);

    QString Text() const;
    void SetText(const QString &aText);
    int SelStart() const;
    int SelLength() const;
    /// Puts the selection anew; the view follows its end.
    void SetSelection(int aStart, int aLength);
    /// Puts the text in the place of the selection and an empty selection behind it.
    void ReplaceSelection(const QString &aText);
};

}  // namespace Vk_DocQuery
