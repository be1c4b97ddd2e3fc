#include "browser/TemplateQuerierForm.h"

#include <cmath>

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "browser/TextPane.h"
#include "controls/AltKeys.h"
#include "controls/FocusInView.h"
#include "controls/InputMethod.h"
#include "controls/Sheet.h"
#include "controls/TextBox.h"
#include "foundation/Clock.h"
#include "foundation/mVkCommonCalc.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/OpenNotes.h"
#include "foundation/Present.h"
#include "lists/ListView.h"
#include "lists/RecordIcons.h"
#include "look/Colours.h"
#include "look/Fonts.h"
#include "look/mVkPics.h"
#include "look/Pictures.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"
#include "windows/ModalRun.h"
#include "windows/mVkGraphLight.h"
#include "windows/Placement.h"
#include "windows/WindowFit.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "TemplateQuerierForm";
constexpr quint16 theBackspace = 8;
constexpr quint16 theBlank = 32;
constexpr int theYearsLookedBack = 1827;  // days: forms that were in use in the last five years
constexpr int theFullNameCell = 3;
constexpr int theGapInPixels = 4;

// The elements, in tab order; places in twips.

constexpr int theClientWidth = 12720;
constexpr int theClientHeight = 10260;

// What keeps its size above the panes, and panes that show all years.
constexpr int theLeastWidth = 12615;
constexpr int theLeastHeight = 7710;

enum class Kind { BoldLabel, Label, FilterBox, List, Pane, BottomFrame, Button };

struct Element {
    QStringView Name;
    Kind What;
    QStringView Caption;  ///< of an element that shows none: what assistive programs say
    int Left, Top, Width, Height;
};

constexpr Element theElements[] = {
    {u"Label1", Kind::BoldLabel, u"1. Наберите буквы названия отчетной формы или цифры КНД:", 120,
     60, 6075, 195},
    {u"theFilterA", Kind::FilterBox, u"Фильтр:", 1140, 435, 11325, 300},
    {u"Label2", Kind::BoldLabel, u"2. Уточните отчетную форму, указав ее в списке:", 120, 900, 6075,
     195},
    {u"theFormList", Kind::List, u"2. Уточните отчетную форму, указав ее в списке:", 60, 1200,
     12615, 3855},
    {u"Label3", Kind::BoldLabel,
     u"Комплекты отчетности, в которых доступна указанная отчетная форма:", 120, 5160, 3855, 435},
    {u"theCatInfo", Kind::Pane,
     u"Комплекты отчетности, в которых доступна указанная отчетная форма:", 60, 5760, 4395, 3735},
    {u"Label4", Kind::BoldLabel, u"Отчетные периоды, в которых доступна указанная отчетная форма:",
     4680, 5340, 7935, 255},
    {u"theTimeList", Kind::List, u"Отчетные периоды, в которых доступна указанная отчетная форма:",
     4560, 5760, 8115, 3735},
    {u"theBottomFrame", Kind::BottomFrame, u"", 0, 9480, 12735, 795},
    {u"theClose", Kind::Button, u"Закрыть", 5520, 180, 1935, 495},
    {u"Label5", Kind::Label, u"Фильтр:", 345, 465, 705, 255},
};

struct FormColumn {
    QStringView Caption;
    int Width;
};

constexpr FormColumn theFormColumns[] = {
    {u"*", 300},
    {u"Краткое наименование", 4500},
    {u"КНД", 900},
    {u"Полное (официальное) наименование", 9000},
};

QWidget *MakeLabel(const Element &aElement, QWidget *aParent) {
    auto *label = new QLabel(aElement.Caption.toString(), aParent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    if (aElement.What == Kind::BoldLabel) {
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
    }
    return label;
}

QWidget *MakeElement(const Element &aElement, QWidget *aParent) {
    switch (aElement.What) {
        case Kind::BoldLabel:
        case Kind::Label:
            return MakeLabel(aElement, aParent);
        case Kind::FilterBox:
            return new TextBox(aParent);
        case Kind::List:
            return new ListView(aParent);
        case Kind::Pane:
            return new TextPane(aParent);
        case Kind::BottomFrame:
            return new QWidget(aParent);
        case Kind::Button:
            return new QPushButton(aElement.Caption.toString(), aParent);
    }
    Q_UNREACHABLE();
}

const Element &RowOf(const QWidget *aWidget) {
    for (const Element &element : theElements)
        if (aWidget->objectName() == element.Name) return element;
    Q_UNREACHABLE();
}

/// A place as the window's author would set it: a negative width or height cannot be set.
void Move(QWidget *aWidget, int aLeft, int aTop, int aWidth, int aHeight) {
    if (aWidth < 0 || aHeight < 0) {
        throw Failure(InvalidArgument, QStringLiteral("TemplateQuerierForm"),
                      QStringLiteral("Отрицательный размер элемента окна."));
    }
    aWidget->setGeometry(Placement{aLeft, aTop, aWidth, aHeight}.InPixels());
}

/// The codes of the characters that a key press types, one per UTF-16 unit. Arrows, Delete and keys
/// held with Alt type none; Ctrl and a letter type the letter's place in the alphabet.
QString TypedCodes(const QKeyEvent &aEvent) {
    const Qt::KeyboardModifiers held =
        aEvent.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const int key = aEvent.key();
    if (held == Qt::ControlModifier) {
        const bool letter = key >= Qt::Key_A && key <= Qt::Key_Z;
        return letter ? QString(QChar(key - Qt::Key_A + 1)) : QString();
    }
    const bool typesThirdLevel = held == (Qt::ControlModifier | Qt::AltModifier);
    if ((held != Qt::NoModifier && !typesThirdLevel) || key == Qt::Key_Delete) return QString();
    return aEvent.text();
}

/// The names of a recordset of GetTemplTypeNames; one that differs in case only is dropped.
KeyedCollection<QString> ReadFullNames(const std::shared_ptr<Recordset> &aNames) {
    KeyedCollection<QString> names;
    Recordset &rows = Present(aNames, "GetTemplTypeNames");
    IgnoringFailures([&] { rows.MoveFirst(); });  // fails where there are no rows
    for (; !rows.EndOfData(); rows.MoveNext()) {
        QString name = VarToStrDef(rows.Value(QStringLiteral("full_name")), QString());
        name.replace(QLatin1String("\r\n"), QLatin1String(" "));
        names.AddIfAbsent(name, name);
    }
    return names;
}

}  // namespace

// ---- The window and its elements

TemplateQuerierForm::TemplateQuerierForm(QWidget *aOwner) : QDialog(aOwner, Qt::Window) {
    setObjectName(QStringLiteral("TemplateQuerierForm"));
    setWindowTitle(QStringLiteral("Поиск бланков отчетных форм"));
    setWindowIcon(WindowIcon(QStringLiteral("browser")));
    setWindowFlags(windowFlags() | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    setFont(WindowFont());
    KeepColoursReadable(*this);
    MakeElements();
    ConnectElements();
    const QSize least = SizeFromTwips(theLeastWidth, theLeastHeight);
    theSheet->SetLeast(least);
    new WindowFit(*this, {least.width(), least.height() + theBottomFrame->height()});
    new FocusInView(*this);
    AcceptInputMethods(*this);
    resize(SizeFromTwips(theClientWidth, theClientHeight));
    theFilterA->setFocus();
}

TemplateQuerierForm::~TemplateQuerierForm() = default;

/// The button stays in sight; all above it is scrolled where the window is too low.
void TemplateQuerierForm::MakeElements() {
    theSheet = new Sheet(this);
    QWidget *before = nullptr;
    for (const Element &element : theElements) {
        QWidget *parent = element.What == Kind::Button        ? theBottomFrame
                          : element.What == Kind::BottomFrame ? this
                                                              : theSheet->Content();
        QWidget *widget = MakeElement(element, parent);
        widget->setObjectName(element.Name.toString());
        widget->setAccessibleName(element.Caption.toString());
        Move(widget, element.Left, element.Top, element.Width, element.Height);
        if (element.What == Kind::BottomFrame) theBottomFrame = widget;
        if (widget->focusPolicy() == Qt::NoFocus) continue;
        widget->installEventFilter(this);
        if (before) setTabOrder(before, widget);
        before = widget;
    }
    theFilterA = findChild<QLineEdit *>(QStringLiteral("theFilterA"));
    theFormList = findChild<ListView *>(QStringLiteral("theFormList"));
    theCatInfo = findChild<TextPane *>(QStringLiteral("theCatInfo"));
    theTimeList = findChild<ListView *>(QStringLiteral("theTimeList"));
    theClose = findChild<QPushButton *>(QStringLiteral("theClose"));
    GiveAltKey(*theClose, u'З');
    theClose->setAutoDefault(false);  // Enter in the filter must not close the window
    for (const FormColumn &column : theFormColumns)
        theFormList->AddColumn(column.Caption.toString(), column.Width);
}

void TemplateQuerierForm::ConnectElements() {
    connect(theSheet, &Sheet::ContentResized, this, &TemplateQuerierForm::Form_Resize);
    connect(theFilterA, &QLineEdit::textChanged, this, &TemplateQuerierForm::theFilterA_Change);
    connect(theFormList, &ListView::Click, this, &TemplateQuerierForm::theFormList_Click);
    connect(theFormList, &ListView::ItemClick, this, &TemplateQuerierForm::theFormList_ItemClick);
    connect(theFormList, &ListView::DblClick, this, &TemplateQuerierForm::theFormList_DblClick);
    connect(theFormList, &ListView::MouseMove, this, &TemplateQuerierForm::theFormList_MouseMove);
    connect(theClose, &QPushButton::clicked, this, &TemplateQuerierForm::theClose_Click);
}

void TemplateQuerierForm::AttachPictures() {
    theFormList->SetSmallIcons(QueryImageList(0));
    theTimeList->SetSmallIcons(QueryImageList(0));
}

void TemplateQuerierForm::resizeEvent(QResizeEvent *aEvent) {
    QDialog::resizeEvent(aEvent);
    theSheet->Place({0, 0, width(), std::max(0, height() - theBottomFrame->height())});
    Form_Resize();
}

/// What cannot be set in a window that is too small keeps the place it had.
void TemplateQuerierForm::Form_Resize() {
    const int gap = theGapInPixels * GetTwipsPerPixel();
    const int frameHeight = RowOf(theBottomFrame).Height;
    const QSize room = theSheet->Content()->size();
    const int width = TwipsFromPixels(room.width());
    const int height = TwipsFromPixels(room.height()) + frameHeight;

    const auto widen = [&](QWidget *aWidget) {
        const Element &element = RowOf(aWidget);
        Move(aWidget, element.Left, element.Top, width - element.Left - gap, element.Height);
    };
    IgnoringFailures([&] { widen(theFilterA); });
    IgnoringFailures([&] { widen(theFormList); });
    IgnoringFailures([&] {
        const Element &pane = RowOf(theCatInfo);
        Move(theCatInfo, pane.Left, pane.Top, pane.Width, height - pane.Top - frameHeight);
    });
    IgnoringFailures([&] {
        const Element &list = RowOf(theTimeList);
        Move(theTimeList, list.Left, list.Top, width - list.Left - gap,
             height - list.Top - frameHeight);
    });
    IgnoringFailures([&] {
        const int bottom = TwipsFromPixels(this->height());
        Move(theBottomFrame, 0, bottom - frameHeight, TwipsFromPixels(this->width()), frameHeight);
    });
    IgnoringFailures([&] {
        const Element &close = RowOf(theClose);
        const double left = (TwipsFromPixels(theBottomFrame->width()) - close.Width) / 2.0;
        Move(theClose, static_cast<int>(std::lround(left)), close.Top, close.Width, close.Height);
    });
}

// ---- The road of an opening

void TemplateQuerierForm::Execute() try {
    Prepare();
    ModalRun(*this).Exec();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::Prepare() {
    MakeTimeColumns();
    AttachPictures();
    theShownClassID = -1;
    LoadAllObjects();
    theFilterA->clear();
    FillList();
    FormChanged();
}

void TemplateQuerierForm::LoadAllObjects() try {
    theClasses.Clear();
    theRowsAreMade = false;
    const OpenNotes notes;
    const auto records =
        GetBlankQueries().GetTemplates(Today().addDays(-theYearsLookedBack), Null(), true);
    std::vector<double> ids;
    std::vector<std::shared_ptr<IntTemplateClass>> forms;
    for (const std::shared_ptr<Record> &record : Present(records, "GetTemplates")) {
        auto form = std::make_shared<IntTemplateClass>();
        form->Class = PresentAs<VkTemplType>(record, "VkTemplType");
        if (form->Class->IsExcludedFromSearch()) continue;
        ids.push_back(form->Class->ID());
        forms.push_back(std::move(form));
    }
    if (!ids.empty()) AnnounceFormNames(ids);
    theClasses.Reserve(static_cast<qsizetype>(forms.size()));
    for (std::size_t i = 0; i < forms.size(); ++i) {
        IntTemplateClass &form = *forms[i];
        form.FullNames = ReadFullNames(GetBlankQueries().GetTemplTypeNames(ids[i]));
        if (!form.FullNames.IsEmpty()) form.ActualFullName = form.FullNames.At(0);
        theClasses.AddIfAbsent(std::move(forms[i]), ObjectKey(ids[i]));
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// The rows and what is searched are made by the first fill, the later ones choose among them.
void TemplateQuerierForm::FillList() try {
    const QString needle = SearchTexts::NeedleOf(theFilterA->text());
    if (!theRowsAreMade) MakeRows();
    theFormList->ShowOnly(theSearchTexts.Matching(needle));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void TemplateQuerierForm::MakeRows() {
    theSearchTexts.Clear();
    theFormList->ClearRows();
    theFormList->ReserveRows(static_cast<int>(theClasses.Count()));
    for (qsizetype i = 0; i < theClasses.Count(); ++i) {
        const std::shared_ptr<IntTemplateClass> &form = theClasses.At(i);
        const QString shortName = form->Class->ShortName();
        const QString knd = form->Class->KND();
        // All names that the form has, the shown one and the others.
        theSearchTexts.Begin();
        theSearchTexts.AddField(shortName);
        theSearchTexts.AddField(knd);
        for (const QString &name : form->FullNames) theSearchTexts.AddField(name);
        ListRow *row = theFormList->AddRow(theClasses.KeyAt(i));
        row->SetTag(form);
        SetRecordIcon(*row, *form->Class, form->Class->GetIconKey());
        row->SetCellText(1, shortName);
        row->SetCellText(2, knd);
        row->SetCellText(theFullNameCell, form->ActualFullName);
    }
    theRowsAreMade = true;
}

void TemplateQuerierForm::FormChanged() try {
    const double id = ChosenClassID();
    // Nothing writes theShownClassID but Prepare, so that only an ID of -1 stops here and every
    // other call draws anew.
    if (id == theShownClassID) return;
    if (theTimeList->RowCount() > 0) theTimeList->ClearRows();  // spares an empty list the repaint
    theCatInfo->SetText(QString());
    if (id == 0) return;
    std::shared_ptr<Recordset> categories;
    std::shared_ptr<Recordset> times;
    GetBlankQueries().GetTemplTypeAvailability(1, id, categories, times);
    DrawTimes(times.get());
    DrawCats(categories.get());
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// 0 if no row is chosen or its record does not tell.
double TemplateQuerierForm::ChosenClassID() const {
    double id = 0;
    IgnoringFailures([&] {
        const ListRow *row = theFormList->SelectedItem();
        if (row) id = static_cast<const IntTemplateClass &>(*row->Tag()).Class->ID();
    });
    return id;
}

// ---- Keys

bool TemplateQuerierForm::eventFilter(QObject *aWatched, QEvent *aEvent) {
    if (aWatched->isWidgetType() &&
        GiveInputTo(*theFilterA, static_cast<QWidget &>(*aWatched), *aEvent))
        return true;
    if (aEvent->type() != QEvent::KeyPress) return QDialog::eventFilter(aWatched, aEvent);
    bool swallowed = false;
    for (const QChar typed : TypedCodes(static_cast<const QKeyEvent &>(*aEvent))) {
        quint16 code = typed.unicode();
        Form_KeyPress(code);
        swallowed = code == 0;
    }
    return swallowed || QDialog::eventFilter(aWatched, aEvent);
}

/// The blank alone goes to the focused element, so that it can be typed in the filter and does
/// nothing in the lists.
void TemplateQuerierForm::Form_KeyPress(quint16 &aKeyAscii) try {
    if (aKeyAscii != theBlank) OnFormKeyPress(aKeyAscii);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::OnFormKeyPress(quint16 &aKeyAscii) try {
    if (aKeyAscii < theBlank && aKeyAscii != theBackspace) return;
    const bool selected = theFilterA->hasSelectedText();
    const int start = selected ? theFilterA->selectionStart() : theFilterA->cursorPosition();
    const int length = selected ? theFilterA->selectionLength() : 0;
    const QString behind = theFilterText.mid(start + length);
    if (aKeyAscii != theBackspace)
        SetFilter(theFilterText.left(start) + QChar(aKeyAscii) + behind, start + 1, 0);
    else if (selected)
        SetFilter(theFilterText.left(start) + behind, start, 0);
    else if (start > 0)
        SetFilter(theFilterText.left(start - 1) + behind, start - 1, 0);
    aKeyAscii = 0;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void TemplateQuerierForm::SetFilter(const QString &aText, int aSelStart, int aSelLength) try {
    theFilterText = aText;
    theFilterA->setText(aText);
    if (!aText.isEmpty()) theFilterA->setSelection(aSelStart, aSelLength);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// Enter presses the button only while it has the focus; Esc comes as a rejection of the window.
void TemplateQuerierForm::keyPressEvent(QKeyEvent *aEvent) {
    const bool enter = aEvent->key() == Qt::Key_Return || aEvent->key() == Qt::Key_Enter;
    if (enter && theClose->hasFocus())
        theClose->click();
    else
        QDialog::keyPressEvent(aEvent);
}

void TemplateQuerierForm::reject() {
    theClose->click();
}

// ---- Events

void TemplateQuerierForm::theFilterA_Change() try {
    theFilterText = theFilterA->text();
    FillList();
    FormChanged();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::theFormList_Click() try { FormChanged(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::theFormList_ItemClick() try { FormChanged(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

/// Shows the full name, which a narrow column may cut.
void TemplateQuerierForm::theFormList_DblClick() try {
    const ListRow *first = theFormList->FirstVisible();
    if (!first) return;
    if (theMouseY < static_cast<float>(theFormList->RowRect(first).top())) return;  // the headers
    if (!theFormList->HitTest(QPointF(theMouseX, theMouseY).toPoint())) return;
    const ListRow *row = theFormList->SelectedItem();
    if (row) ShowInfoBox(row->CellText(theFullNameCell), windowTitle());
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::theFormList_MouseMove(QPoint aPoint) try {
    theMouseX = static_cast<float>(aPoint.x());
    theMouseY = static_cast<float>(aPoint.y());
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void TemplateQuerierForm::theClose_Click() try { hide(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
