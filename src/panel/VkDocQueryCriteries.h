#pragma once

#include <QHash>
#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <Vk_DocQuery/VkDocQueryData.h>

#include "lists/ListView.h"
#include "panel/ElementNames.h"

namespace Vk_DocQuery {

class TabControl;

/// The tabbed surface on which a user states a search. It holds no record: DistributeValues copies
/// one into the elements and AssembleValuesTo copies the elements back; in between every criterion
/// lives in the state of its element, and an object list's rows carry the objects as tags.
///
/// How the elements are made and filled stands in VkDocQueryCriteries.cpp, the way of the values in
/// Criteria.cpp, what is shown when in Rules.cpp, the draft in Draft.cpp, each of the three lists
/// in a file of its name, their columns in ListColumns.cpp, their buttons in AddDelete.cpp and
/// Keys.cpp.
class VkDocQueryCriteries : public QWidget {
    Q_OBJECT

public:
    explicit VkDocQueryCriteries(QWidget *aParent = nullptr);

    /// Once, before anything else.
    void Init();
    /// A list of the record that holds no collection gets an empty one; otherwise the record is
    /// only read.
    void DistributeValues(VkDocQueryData &aRecord);
    /// Writes every criterion, whether its switch is on or off; the lists get new collections.
    void AssembleValuesTo(VkDocQueryData &aRecord);

    struct Draft;
    /// What stands on the panel now, with what no record holds: half typed dates and numbers,
    /// groups without a choice, selected rows.
    std::shared_ptr<Draft> TakeDraft();
    /// Puts it back by way of a distribution; false if that failed. Then, too, the panel shows all
    /// that it showed.
    bool PutBack(Draft &aDraft) noexcept;

    /// Warns of a date that was typed and is none and puts the focus on it; true if there is
    /// nothing to warn of.
    bool FinishInput();

    QSize sizeHint() const override;
    /// What the tabs and a piece of their pages need.
    QSize minimumSizeHint() const override;

signals:
    /// All visible state has been derived from the elements anew.
    void Refreshed();

protected:
    // Elements, by name.
    template <class Class>
    Class &The(ElementOf<Class> aName) const;
    template <class Class>
    Class &The(ArrayOf<Class> aName, int aIndex) const;
    QWidget &Element(ElementName aName) const;
    bool IsTicked(ElementOf<CheckBox> aCheckBox) const;
    bool IsChosen(ElementOf<OptionButton> aOption) const;

    // Tabs.
    void SetTabUsing(const QString &aTabKey, bool aUsed);
    void SetCurrentTab(const QString &aTabKey);
    QString GetCurrentTab() const;

    // What is shown when, and the lock that holds it back during bulk changes.
    void LockUpdate();
    void UnlockUpdate();
    void RefreshControls(bool aForce);

    // Choices of the option groups; a value that no option stands for leaves a group without a
    // choice.
    void SetTemplatesMode(DocQueryTemplatesMode aMode);
    void SetPeriodCriterion(DocQueryPeriodCriterion aCriterion);
    void SetAccStreamOpeness(DocQueryAccStreamOpen aOpen);
    void SetContoraJoining(DocQueryContoraJoining aJoining);
    void SetTaxpayersType(DocQueryTaxpayersType aType);
    DocQueryTemplatesMode GetTemplatesMode() const;
    DocQueryPeriodCriterion GetPeriodCriterion() const;
    DocQueryAccStreamOpen GetAccStreamOpeness() const;
    DocQueryContoraJoining GetContoraJoining() const;
    DocQueryTaxpayersType GetTaxpayersType() const;

    // The list of report forms, of classes or of versions.
    void SetTemplatesModeInList(DocQueryTemplatesMode aMode, bool aForce, bool aConvert);
    void ConvertTemplatesMode(DocQueryTemplatesMode aOldMode, DocQueryTemplatesMode aNewMode);
    const RecordCollection &SortTemplates(const RecordCollection &aTemplates) const;
    void FillTemplatesList(const RecordCollection &aTemplates, bool aSort);
    ListRow *AddItemToTemplatesList(const std::shared_ptr<Record> &aObject, ListRow *aBefore);
    void RefreshItemInTemplatesList(ListRow &aItem);
    void UserSetTemplatesMode(DocQueryTemplatesMode aMode);

    // The list of accounting streams.
    void FillAccStreamsList(const RecordCollection &aStreams);
    ListRow *AddItemToAccStreamsList(const std::shared_ptr<Record> &aObject, ListRow *aBefore);
    void RefreshItemInAccStreamsList(ListRow &aItem);

    // The list of taxpayers, or of head organisations.
    void SetTaxpayersTypeInList(DocQueryTaxpayersType aType, bool aForce, bool aConvert);
    void ConvertTaxpayersType(DocQueryTaxpayersType aOldType, DocQueryTaxpayersType aNewType);
    const RecordCollection &SortTaxpayers(const RecordCollection &aTaxpayers) const;
    void FillTaxpayersList(const RecordCollection &aTaxpayers, bool aSort);
    ListRow *AddItemToTaxpayersList(const std::shared_ptr<Record> &aObject, ListRow *aBefore);
    void RefreshItemInTaxpayersList(ListRow &aItem);
    void UserSetTaxpayersType(DocQueryTaxpayersType aType);

    // The commands of all three lists. aObjectsType is one of the picker's types.
    void PerformAddItems(ListView &aList, qint32 aObjectsType);
    void PerformDeleteItems(ListView &aList);

    void changeEvent(QEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;

    qint32 theLockCount = 0;
    bool theRefreshPending = false;
    bool theRefreshDisabled = false;
    QPalette theColours;  // of the desktop, as the rules have seen them last
    DocQueryTemplatesMode theCurTemplatesMode = DocQueryTemplatesMode(0);
    DocQueryTaxpayersType theCurTaxpayersType = DocQueryTaxpayersType(0);

private:
    class UpdateLock;
    struct Rules;
    struct Criteria;
    struct Clicks;

    void DistributeWithoutLists(VkDocQueryData aRecord);
    void PutTheRestBack(const Draft &aDraft);

    QWidget &Named(const QString &aObjectName) const;
    template <class Class>
    Class &NamedAs(const QString &aObjectName) const;

    void MakeElements();
    void FitPages();
    QWidget *MadeElement(const ElementRow &aRow, QWidget *aParent);
    void MakeTabs();
    void SetTabOrder();
    void NameForReaders();
    void DescribeForReaders(const ElementRow &aRow, QWidget &aElement, const QString &aCaption);
    void SetUpLists();
    void SetUpDates();
    void ConnectClicks();
    void GiveKeys();

    ListRow *AddItemOfType(const std::shared_ptr<Record> &aObject, qint32 aObjectsType);

    void theTemplatesAdd_Click();
    void theAccStreamAdd_Click();
    void theTaxpayerAdd_Click();
    void theTemplatesDelete_Click();
    void theAccStreamDelete_Click();
    void theTaxpayerDelete_Click();
    void theOptTemplateClass_Click();
    void theOptTemplate_Click();
    void theOptTaxpayers_Click();
    void theOptMainOrgs_Click();
    void theTemplatesList_ColumnClick(const ListColumn &aColumn);
    void theAccStreamsList_ColumnClick(const ListColumn &aColumn);
    void theTaxpayersList_ColumnClick(const ListColumn &aColumn);

    /// Elements and pages by object name; null: the host has taken it away.
    QHash<QString, QPointer<QWidget>> theNamedWidgets;
    TabControl *theTabs = nullptr;
};

[[noreturn]] void RaiseWrongElement(const QString &aName);

template <class Class>
Class &VkDocQueryCriteries::The(ElementOf<Class> aName) const {
    return NamedAs<Class>(ObjectName(aName.Text()));
}

template <class Class>
Class &VkDocQueryCriteries::The(ArrayOf<Class> aName, int aIndex) const {
    return NamedAs<Class>(ObjectName(aName.Text(), aIndex));
}

template <class Class>
Class &VkDocQueryCriteries::NamedAs(const QString &aObjectName) const {
    auto *element = qobject_cast<Class *>(&Named(aObjectName));
    if (!element) RaiseWrongElement(aObjectName);
    return *element;
}

/// Holds the panel's refresh back. Without Unlock, on the way of a failure, the count is lowered
/// and no refresh is done.
class VkDocQueryCriteries::UpdateLock {
public:
    explicit UpdateLock(VkDocQueryCriteries &aPanel) : thePanel(aPanel) { thePanel.LockUpdate(); }
    ~UpdateLock() {
        if (theHeld) --thePanel.theLockCount;
    }
    Q_DISABLE_COPY_MOVE(UpdateLock)

    void Unlock() {
        theHeld = false;
        thePanel.UnlockUpdate();
    }

private:
    VkDocQueryCriteries &thePanel;
    bool theHeld = true;
};

}  // namespace Vk_DocQuery
