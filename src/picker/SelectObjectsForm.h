#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <QDialog>

#include <Vk_DocQuery/KeyedCollection.h>

#include "lists/SearchTexts.h"
#include "windows/Placement.h"

class QKeyEvent;
class QPushButton;

namespace Vk_DocQuery {

class ImageList;
class ListView;
class Sheet;
class VkFilterBox;
struct ListColumn;

/// The modal window in which the user marks objects of one type to be added to a list. One window
/// serves one call of Execute.
class SelectObjectsForm : public QDialog {
    Q_OBJECT

public:
    explicit SelectObjectsForm(QWidget *aParent = nullptr);
    ~SelectObjectsForm() override;

    /// Offers all objects of the type (ObjectsType) but those listed already, which may be null.
    /// Gives the marked ones in the order in which they stood; null on cancel, if nothing is on
    /// offer, and after a failure, which is shown to the user.
    std::shared_ptr<RecordCollection> Execute(
        qint32 aObjectsType, const std::shared_ptr<const RecordCollection> &aListedObjects);

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;

private:
    void MakeElements();
    void PlaceElements();

    std::shared_ptr<RecordCollection> Run(
        qint32 aObjectsType, const std::shared_ptr<const RecordCollection> &aListedObjects);
    void SetObjectsType(qint32 aObjectsType);
    void KeepListedObjects(const std::shared_ptr<const RecordCollection> &aListedObjects);
    void LoadAllObjects();
    void ShowEmptyOffer();
    void FillList(bool aFirstFill);
    void AddRows();
    void Unload();

    std::shared_ptr<RecordCollection> GetCheckedObjects() const;
    bool Validate() const;
    void CheckObjects(bool aCheck, bool aSelectedOnly);
    void RefreshFilter();

    bool Form_KeyPress(QKeyEvent &aEvent);
    bool MoveFromFilterToList(QKeyEvent &aEvent);
    void theFilter_Change();
    void theList_ColumnClick(const ListColumn &aColumn);
    void theOK_Click();
    void theCancel_Click();
    void theCheckAll_Click();
    void theUncheckAll_Click();
    void theCheckSelected_Click();
    void theUncheckSelected_Click();

    Sheet *theSheet = nullptr;
    VkFilterBox *theFilter = nullptr;
    ListView *theList = nullptr;
    std::shared_ptr<const ImageList> theIL;
    QPushButton *theOK = nullptr;
    std::vector<std::pair<QWidget *, Placement>> thePlaces;

    bool theOKPressed = false;
    qint32 theObjectsType = 0;
    std::shared_ptr<RecordCollection> theListedObjects;
    std::shared_ptr<RecordCollection> theAllObjects;
    QString theLastFilter;
    SearchTexts theSearchTexts;  ///< one for each of theAllObjects
    bool theRowsAreMade = false;
};

}  // namespace Vk_DocQuery
