#pragma once

#include <memory>

#include <QDialog>

#include <Vk_DocQuery/Providers.h>

#include "browser/IntCategoryCluster.h"
#include "browser/IntTemplateClass.h"
#include "browser/TimeTable.h"
#include "lists/SearchTexts.h"

class QLineEdit;
class QPushButton;

namespace Vk_DocQuery {

class ListRow;
class ListView;
class Sheet;
class TextPane;

/// The window "Поиск бланков отчетных форм": a filter over the report forms, their list, and two
/// panes that tell for whom and in which periods the form of the current row exists.
///
/// Typed letters go to the filter wherever the focus is. Every call of FormChanged reads the
/// availability anew.
class TemplateQuerierForm : public QDialog {
    Q_OBJECT

public:
    explicit TemplateQuerierForm(QWidget *aOwner = nullptr);
    ~TemplateQuerierForm() override;

    /// Loads the forms and runs the window. Failures are shown to the user; if one comes before the
    /// window is up, it does not come up.
    void Execute();
    /// Everything that Execute does before it shows the window.
    void Prepare();

    void LoadAllObjects();
    void FillList();
    void FormChanged();
    void SetFilter(const QString &aText, int aSelStart, int aSelLength);
    /// aKeyAscii is the code of a typed character; 0 on return swallows the key.
    void OnFormKeyPress(quint16 &aKeyAscii);

    void DrawTimes(Recordset *aTimes);
    void BuildTimeTable(Recordset &aTimes, TimeTable &rTable);
    void DrawCats(Recordset *aCategories);
    void BuildCategoryMatrix(Recordset *aCategories, CategoryClusters &rClusters);

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override;
    void keyPressEvent(QKeyEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;
    void reject() override;

private:
    void MakeElements();
    void ConnectElements();
    void MakeTimeColumns();
    void AttachPictures();
    void MakeRows();
    double ChosenClassID() const;
    void AddTimeItem(ListRow &aRow, qint32 aMonthID, qint32 aValue);

    void Form_KeyPress(quint16 &aKeyAscii);
    void Form_Resize();
    void theFilterA_Change();
    void theFormList_Click();
    void theFormList_ItemClick();
    void theFormList_DblClick();
    void theFormList_MouseMove(QPoint aPoint);
    void theClose_Click();

    float theMouseX = 0;  // pixels of the list's rows
    float theMouseY = 0;
    QString theFilterText;
    double theShownClassID = -1;
    KeyedCollection<std::shared_ptr<IntTemplateClass>> theClasses;

    SearchTexts theSearchTexts;  // one per class and row
    bool theRowsAreMade = false;

    Sheet *theSheet = nullptr;
    QLineEdit *theFilterA = nullptr;
    ListView *theFormList = nullptr;
    TextPane *theCatInfo = nullptr;
    ListView *theTimeList = nullptr;
    QWidget *theBottomFrame = nullptr;
    QPushButton *theClose = nullptr;
};

}  // namespace Vk_DocQuery
