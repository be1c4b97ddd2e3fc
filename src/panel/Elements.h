#pragma once

#include <span>

#include <QString>

namespace Vk_DocQuery {

enum class ElementKind {
    Frame,
    HiddenFrame,
    PlainFrame,
    CheckBox,
    Option,
    Button,
    List,
    Text,
    Label,
    ScrollBox,
    FixedCombo,
    EditableCombo,
    NumberBox,
    DateBox,
    Image,
};

constexpr int theNoIndex = -1;
constexpr int theNoTabOrder = -1;

/// An element of the panel. Measures are twips from the parent's left top corner.
struct ElementRow {
    const char *Name;
    ElementKind Kind;
    const char *Inside;  ///< the direct parent
    int Index;           ///< of an element array
    int Left, Top, Width, Height;
    int TabOrder;
    const char16_t *Caption;
    const char *ExplainedBy = "";  ///< whose caption tells what an element without a caption is for
};

/// In the order in which the elements are made: a parent stands before what is in it.
std::span<const ElementRow> ElementRows();

/// "theDocStatuses(3)" for an element of an array.
QString ElementName(const char *aName, int aIndex = theNoIndex);

struct TabRow {
    const char *Key;
    const char16_t *Caption;
    const char *Page;
};

std::span<const TabRow> TabRows();

/// A column of an object list; the width is in twips.
struct ColumnRow {
    const char *List;
    const char16_t *Caption;
    int Width;
    const char *Key = "";
};

std::span<const ColumnRow> ColumnRows();

/// By which column an object list is sorted at first, ascending.
struct FirstSortRow {
    const char *List;
    qint16 Column;
};

std::span<const FirstSortRow> FirstSortRows();

// The panel as it is designed, and the place of its pages; twips.
constexpr int thePanelWidth = 12315;
constexpr int thePanelHeight = 8835;
constexpr int thePageLeft = 30;
constexpr int thePageTop = 360;

}  // namespace Vk_DocQuery
