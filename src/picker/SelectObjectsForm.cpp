#include "picker/SelectObjectsForm.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>

#include <Vk_DocQuery/Records.h>

#include "controls/AltKeys.h"
#include "controls/FilterBox.h"
#include "controls/FocusInView.h"
#include "controls/InputMethod.h"
#include "controls/PictureButton.h"
#include "controls/Sheet.h"
#include "foundation/Present.h"
#include "lists/ListView.h"
#include "look/Colours.h"
#include "look/Fonts.h"
#include "look/Pictures.h"
#include "picker/ObjectTypes.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"
#include "windows/ModalRun.h"
#include "windows/WindowFit.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "SelectObjectsForm";
const QString theMessageTitle = QStringLiteral("Выбор из списка");

// Twips.
constexpr int theDesignWidth = 12915;
constexpr int theDesignHeight = 8715;
// The buttons keep clear of one another, and the list shows a few rows.
constexpr int theLeastWidth = 12090;
constexpr int theLeastHeight = 3300;

}  // namespace

SelectObjectsForm::SelectObjectsForm(QWidget *aParent) : QDialog(aParent) {
    setObjectName(QStringLiteral("SelectObjectsForm"));
    setWindowTitle(QStringLiteral("Добавление объектов"));
    setWindowIcon(WindowIcon(QStringLiteral("picker")));
    setFont(WindowFont());
    KeepColoursReadable(*this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    MakeElements();
}

SelectObjectsForm::~SelectObjectsForm() = default;

// ---- Elements

void SelectObjectsForm::MakeElements() {
    theSheet = new Sheet(this);
    connect(theSheet, &Sheet::ContentResized, this, &SelectObjectsForm::PlaceElements);
    QWidget *content = theSheet->Content();
    theFilter = new VkFilterBox(content);
    theFilter->setObjectName(QStringLiteral("theFilter"));
    connect(theFilter, &VkFilterBox::Change, this, &SelectObjectsForm::theFilter_Change);
    thePlaces.push_back({theFilter, {60, 60, 12855, 345, Placement::Width}});

    theIL = PickerImages();
    theList = new ListView(content);
    theList->setObjectName(QStringLiteral("theList"));
    theList->setAccessibleName(QStringLiteral("Объекты, которые можно добавить"));
    theList->SetCheckBoxes(true);
    theList->SetMultiSelect(true);
    connect(theList, &ListView::ColumnClick, this, &SelectObjectsForm::theList_ColumnClick);
    thePlaces.push_back({theList, {0, 480, 12915, 7395, Placement::Width | Placement::Height}});

    struct ButtonRow {
        QString Name;
        QString Caption;
        char16_t AltKey;
        int Picture;  // 0: none
        int Left;
        int Width;
        int Followed;
        void (SelectObjectsForm::*Handler)();
    };
    const ButtonRow rows[] = {
        {QStringLiteral("theCheckAll"), QStringLiteral("Пометить всё"), u'П', 0, 120, 1635,
         Placement::Top, &SelectObjectsForm::theCheckAll_Click},
        {QStringLiteral("theUncheckAll"), QStringLiteral("Снять все отметки"), u'С', 0, 1800, 1875,
         Placement::Top, &SelectObjectsForm::theUncheckAll_Click},
        {QStringLiteral("theCheckSelected"), QStringLiteral("Пометить выделенные"), u'В', 0, 3780,
         2115, Placement::Top, &SelectObjectsForm::theCheckSelected_Click},
        {QStringLiteral("theUncheckSelected"), QStringLiteral("Снять отметки с выделенного"), u'Т',
         0, 5940, 2715, Placement::Top, &SelectObjectsForm::theUncheckSelected_Click},
        {QStringLiteral("theOK"), QStringLiteral("OK"), u'К', OkPicture, 9600, 1395,
         Placement::Left | Placement::Top, &SelectObjectsForm::theOK_Click},
        {QStringLiteral("theCancel"), QStringLiteral("Отмена"), u'О', CancelPicture, 11100, 1635,
         Placement::Left | Placement::Top, &SelectObjectsForm::theCancel_Click},
    };
    for (const ButtonRow &row : rows) {
        QPushButton *button = row.Picture != 0 ? new DButton(row.Caption, row.Picture, content)
                                               : new QPushButton(row.Caption, content);
        button->setObjectName(row.Name);
        button->setAutoDefault(true);  // Enter presses the one that has the focus
        GiveAltKey(*button, row.AltKey);
        // A click leaves the focus in the list, so that the blank goes on marking rows.
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QPushButton::clicked, this, row.Handler);
        thePlaces.push_back({button, {row.Left, 8100, row.Width, 495, row.Followed}});
        if (row.Picture == OkPicture) button->setDefault(true);
    }

    const QSize least = SizeFromTwips(theLeastWidth, theLeastHeight);
    theSheet->SetLeast(least);
    new WindowFit(*this, least);
    new FocusInView(*this);
    resize(SizeFromTwips(theDesignWidth, theDesignHeight));
    theSheet->Place(rect());
    PlaceElements();
    theList->setFocus();
    for (QWidget *element : findChildren<QWidget *>()) element->installEventFilter(this);
    installEventFilter(this);
    AcceptInputMethods(*this);
}

void SelectObjectsForm::PlaceElements() {
    const QSize growth =
        theSheet->Content()->size() - SizeFromTwips(theDesignWidth, theDesignHeight);
    for (const auto &[element, place] : thePlaces) element->setGeometry(place.InPixels(growth));
}

void SelectObjectsForm::resizeEvent(QResizeEvent *aEvent) {
    QDialog::resizeEvent(aEvent);
    theSheet->Place(rect());
}

// ---- The run of the window

std::shared_ptr<RecordCollection> SelectObjectsForm::Execute(
    qint32 aObjectsType, const std::shared_ptr<const RecordCollection> &aListedObjects) try {
    const auto unload = qScopeGuard([this] { Unload(); });
    return Run(aObjectsType, aListedObjects);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
    return nullptr;
}

std::shared_ptr<RecordCollection> SelectObjectsForm::Run(
    qint32 aObjectsType, const std::shared_ptr<const RecordCollection> &aListedObjects) {
    theOKPressed = false;
    theList->SetSmallIcons(theIL);
    SetObjectsType(aObjectsType);
    KeepListedObjects(aListedObjects);
    LoadAllObjects();
    theFilter->SetText(QString());
    FillList(true);
    if (theList->RowCount() == 0) {
        ShowEmptyOffer();
        return nullptr;
    }
    const bool chosen = ModalRun(*this).Exec() == Accepted;
    return chosen && theOKPressed ? GetCheckedObjects() : nullptr;
}

void SelectObjectsForm::SetObjectsType(qint32 aObjectsType) try {
    theObjectsType = aObjectsType;
    theList->ClearColumns();
    const ObjectsTypeFacts *facts = FactsOfObjectsType(aObjectsType);
    if (!facts) return;
    for (const ObjectsTypeFacts::Column &column : facts->Columns)
        theList->AddColumn(column.Caption, column.Width);
    setWindowTitle(facts->Title);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// An object that cannot tell its identity, or whose identity is there already, is left out.
void SelectObjectsForm::KeepListedObjects(
    const std::shared_ptr<const RecordCollection> &aListedObjects) {
    theListedObjects = std::make_shared<RecordCollection>();
    if (!aListedObjects) return;
    for (const std::shared_ptr<Record> &object : *aListedObjects) {
        IgnoringFailures([&] {
            theListedObjects->AddIfAbsent(object, ObjectKey(Present(object, "Record").ID()));
        });
    }
}

void SelectObjectsForm::LoadAllObjects() try {
    theAllObjects = std::make_shared<RecordCollection>();
    const ObjectsTypeFacts *facts = FactsOfObjectsType(theObjectsType);
    if (!facts) return;
    const std::shared_ptr<RecordCollection> source = facts->Load();
    theAllObjects->Reserve(Present(source, "RecordCollection").Count());
    for (const std::shared_ptr<Record> &object : *source) {
        const QString key = ObjectKey(Present(object, "Record").ID());
        if (!theListedObjects->Contains(key)) theAllObjects->AddIfAbsent(object, key);
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void SelectObjectsForm::ShowEmptyOffer() {
    const ObjectsTypeFacts *facts = FactsOfObjectsType(theObjectsType);
    QString message = QStringLiteral("Доступные для ");
    if (!theListedObjects->IsEmpty()) message += QStringLiteral("дальнейшего ");
    message += QStringLiteral("выбора ") + (facts ? facts->Word : QStringLiteral("объекты")) +
               QStringLiteral(" отсутствуют.");
    ShowInfoBox(message, theMessageTitle);
}

void SelectObjectsForm::Unload() {
    theList->ClearRows();
    theSearchTexts.Clear();
    theRowsAreMade = false;
}

// ---- Rows

/// A refill shows a part of the rows that were made first and asks no record again. Only a row that
/// stays shown keeps its mark.
void SelectObjectsForm::FillList(bool aFirstFill) try {
    const QString filter = SearchTexts::NeedleOf(theFilter->Text());
    if (!theRowsAreMade) {
        AddRows();
        if (filter.isEmpty()) return;
    } else if (aFirstFill) {
        CheckObjects(false, false);
    }
    theList->ShowOnly(theSearchTexts.Matching(filter));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void SelectObjectsForm::AddRows() {
    const ObjectsTypeFacts *facts = FactsOfObjectsType(theObjectsType);
    const auto count = static_cast<int>(theAllObjects->Count());
    theList->ReserveRows(count);
    theSearchTexts.Reserve(count);
    for (int i = 0; i < count; ++i) {
        const std::shared_ptr<Record> &object = theAllObjects->At(i);
        ListRow *row = theList->AddRow(theAllObjects->KeyAt(i));
        row->SetTag(object);
        const SearchedCells searched = facts->Show(*object, *row);
        theSearchTexts.Begin();
        for (int cell = searched.First; cell <= searched.Last; ++cell)
            theSearchTexts.AddField(row->CellText(cell));
    }
    theSearchTexts.Squeeze();
    theRowsAreMade = true;
}

std::shared_ptr<RecordCollection> SelectObjectsForm::GetCheckedObjects() const try {
    auto objects = std::make_shared<RecordCollection>();
    for (int i = 0; i < theList->RowCount(); ++i) {
        const ListRow *row = theList->Row(i);
        if (row->IsChecked()) objects->Add(std::static_pointer_cast<Record>(row->Tag()));
    }
    return objects;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool SelectObjectsForm::Validate() const try {
    if (!GetCheckedObjects()->IsEmpty()) return true;
    ShowWarningBox(QStringLiteral("Необходимо выделить хотя бы один элемент."), theMessageTitle);
    return false;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void SelectObjectsForm::CheckObjects(bool aCheck, bool aSelectedOnly) try {
    std::vector<ListRow *> rows;
    if (aSelectedOnly) {
        rows = theList->SelectedRows();
        if (rows.empty() && theList->SelectedItem()) rows.push_back(theList->SelectedItem());
    } else {
        rows.reserve(static_cast<std::size_t>(theList->RowCount()));
        for (int i = 0; i < theList->RowCount(); ++i) rows.push_back(theList->Row(i));
    }
    theList->CheckRows(rows, aCheck);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void SelectObjectsForm::RefreshFilter() try {
    const QString text = theFilter->Text();
    if (text == theLastFilter) return;
    theLastFilter = text;
    FillList(false);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

// ---- Keys

bool SelectObjectsForm::eventFilter(QObject *aWatched, QEvent *aEvent) {
    if (aEvent->type() == QEvent::KeyPress && Form_KeyPress(static_cast<QKeyEvent &>(*aEvent)))
        return true;
    if (aWatched->isWidgetType() &&
        GiveInputTo(*theFilter->Edit(), static_cast<QWidget &>(*aWatched), *aEvent))
        return true;
    return QDialog::eventFilter(aWatched, aEvent);
}

/// Sees every key of the window before the element that has the focus, and gives it to the filter.
/// The blank stays with the element: in the list it turns marks. True keeps the key from it.
bool SelectObjectsForm::Form_KeyPress(QKeyEvent &aEvent) try {
    if (aEvent.key() == Qt::Key_Space) return false;
    if (MoveFromFilterToList(aEvent)) return true;
    const bool taken = theFilter->HandleKeyPress(aEvent);
    RefreshFilter();
    return taken;
} catch (...) {
    ReportErrorToUser(theModule, __func__);
    return true;
}

bool SelectObjectsForm::MoveFromFilterToList(QKeyEvent &aEvent) {
    const int key = aEvent.key();
    if (key != Qt::Key_Down && key != Qt::Key_PageDown && key != Qt::Key_Up &&
        key != Qt::Key_PageUp)
        return false;
    if (focusWidget() != theFilter->Edit()) return false;
    theList->setFocus(Qt::OtherFocusReason);
    QCoreApplication::sendEvent(theList, &aEvent);
    return true;
}

// ---- Events of the elements

/// The text has changed without a key of the window: a blank typed in the box, the mouse, the input
/// method.
void SelectObjectsForm::theFilter_Change() try { RefreshFilter(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

/// Three clicks on one header sort up, sort down, and give back the order of the offer without
/// marks.
void SelectObjectsForm::theList_ColumnClick(const ListColumn &aColumn) try {
    const auto key = static_cast<qint16>(aColumn.Index - 1);
    const bool again = theList->IsSorted() && theList->SortKey() == key;
    if (again && theList->SortOrder() == 0) {
        theList->SetSortOrder(1);
    } else if (again) {
        theList->SetSorted(false);
        theList->SetSortKey(0);
        FillList(true);
    } else {
        theList->SetSortKey(key);
        theList->SetSortOrder(0);
        theList->SetSorted(true);
    }
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theOK_Click() try {
    if (!Validate()) return;
    theOKPressed = true;
    accept();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theCancel_Click() try { reject(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theCheckAll_Click() try { CheckObjects(true, false); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theUncheckAll_Click() try { CheckObjects(false, false); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theCheckSelected_Click() try { CheckObjects(true, true); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void SelectObjectsForm::theUncheckSelected_Click() try { CheckObjects(false, true); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
