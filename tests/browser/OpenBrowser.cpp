#include "OpenBrowser.h"

#include <QTest>

namespace VkTests {

using namespace Vk_DocQuery;

MemoryOffice &EmptyOffice() {
    MemoryOffice::Install();
    MemoryOffice &office = MemoryOffice::The();
    office.Classes.clear();
    office.Versions.clear();
    return office;
}

void AddForm(double aID, const QString &aKND, const QString &aShortName,
             const std::vector<LooseValue> &aFullNames) {
    MemoryOffice &office = MemoryOffice::The();
    office.Classes.push_back(
        {aID, aKND, aShortName, false, QStringLiteral("doc_blank"), aFullNames});
    office.Versions.push_back(
        {1000 + aID, aID, Empty(), Empty(), QString(), QStringLiteral("doc")});
}

std::map<QString, LooseValue> CategoryRow(LooseValue aCategory, LooseValue aStream,
                                          LooseValue aHead, LooseValue aBranch) {
    return {{QStringLiteral("TPCategory_ID"), std::move(aCategory)},
            {QStringLiteral("AccStreamType"), std::move(aStream)},
            {QStringLiteral("AllowedForMainOrg"), std::move(aHead)},
            {QStringLiteral("AllowedForBranch"), std::move(aBranch)}};
}

std::map<QString, LooseValue> TimeRow(LooseValue aYear, LooseValue aMonth) {
    return {{QStringLiteral("the_year"), std::move(aYear)},
            {QStringLiteral("month_id"), std::move(aMonth)}};
}

namespace {

template <class Widget>
Widget &Element(const TemplateQuerierForm &aForm, const char *aName) {
    auto *widget = aForm.findChild<Widget *>(QString::fromLatin1(aName));
    if (!widget) qFatal("the window has no %s", aName);
    return *widget;
}

}  // namespace

OpenBrowser::OpenBrowser()
    : Filter(Element<QLineEdit>(Form, "theFilterA")),
      List(Element<ListView>(Form, "theFormList")),
      Cats(Element<TextPane>(Form, "theCatInfo")),
      Times(Element<ListView>(Form, "theTimeList")),
      Close(Element<QPushButton>(Form, "theClose")) {
    Form.Prepare();
    Form.show();
    Form.activateWindow();
    if (!QTest::qWaitForWindowActive(&Form)) qFatal("the window does not come up");
}

QStringList OpenBrowser::Listed() const {
    QStringList keys;
    for (int i = 0; i < List.RowCount(); ++i) keys << List.Row(i)->Key();
    return keys;
}

void OpenBrowser::ClickForm(double aID) {
    const ListRow *row = List.RowByKey(ObjectKey(aID));
    if (!row) qFatal("the form is not listed");
    const QRect place = List.RowRect(row);
    QTest::mouseClick(List.viewport(), Qt::LeftButton, {}, QPoint(60, place.center().y()));
}

QString Chain(const QStringList &aProcs, const QString &aRest) {
    QString chain;
    for (const QString &proc : aProcs)
        chain += QStringLiteral("[Vk_DocQuery::TemplateQuerierForm.%1]\r\n").arg(proc);
    return chain + aRest;
}

}  // namespace VkTests
