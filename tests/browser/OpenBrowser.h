#pragma once

#include <QLineEdit>
#include <QPushButton>

#include "browser/TemplateQuerierForm.h"
#include "browser/TextPane.h"
#include "lists/ListView.h"
#include "support/MemoryRecords.h"

namespace VkTests {

/// Puts an office without forms in place.
MemoryOffice &EmptyOffice();
/// Adds a form with an endless version, so that the browser offers it.
void AddForm(double aID, const QString &aKND, const QString &aShortName,
             const std::vector<LooseValue> &aFullNames = {});
/// A row of the categories or of the times of a form.
std::map<QString, LooseValue> CategoryRow(LooseValue aCategory, LooseValue aStream,
                                          LooseValue aHead, LooseValue aBranch);
std::map<QString, LooseValue> TimeRow(LooseValue aYear, LooseValue aMonth);

/// The browser, filled from the office and on the screen, without a loop of its own.
struct OpenBrowser {
    OpenBrowser();

    /// Keys of the listed rows.
    QStringList Listed() const;
    /// Clicks the row of the form with the mouse.
    void ClickForm(double aID);

    Vk_DocQuery::TemplateQuerierForm Form;
    QLineEdit &Filter;
    Vk_DocQuery::ListView &List;
    Vk_DocQuery::TextPane &Cats;
    Vk_DocQuery::ListView &Times;
    QPushButton &Close;
};

/// The text of a box that shows a failure which went up through these procedures of the browser,
/// outermost first.
QString Chain(const QStringList &aProcs, const QString &aRest);

}  // namespace VkTests
