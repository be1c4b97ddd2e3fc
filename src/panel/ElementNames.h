#pragma once

#include <initializer_list>
#include <string_view>

#include "panel/Elements.h"

class QLineEdit;
class QPushButton;

namespace Vk_DocQuery {

class CheckBox;
class ComboBox;
class DateBox;
class ListView;
class NumberBox;
class OptionButton;

/// The kinds of elements that are objects of a class.
template <class Class>
inline constexpr std::initializer_list<ElementKind> theKindsOf = {};
template <>
inline constexpr auto theKindsOf<CheckBox> = {ElementKind::CheckBox};
template <>
inline constexpr auto theKindsOf<OptionButton> = {ElementKind::Option};
template <>
inline constexpr auto theKindsOf<QPushButton> = {ElementKind::Button};
template <>
inline constexpr auto theKindsOf<ListView> = {ElementKind::List};
template <>
inline constexpr auto theKindsOf<QLineEdit> = {ElementKind::Text};
template <>
inline constexpr auto theKindsOf<ComboBox> = {ElementKind::FixedCombo, ElementKind::EditableCombo};
template <>
inline constexpr auto theKindsOf<NumberBox> = {ElementKind::NumberBox};
template <>
inline constexpr auto theKindsOf<DateBox> = {ElementKind::DateBox};

/// The name of an element, looked up by the compiler: a name that is not there does not compile.
class ElementName {
public:
    consteval ElementName(const char *aName) : theRow(RowNamed(aName, theNoIndex)) {}

    constexpr const ElementRow &Row() const { return *theRow; }
    constexpr const char *Text() const { return theRow->Name; }

protected:
    constexpr explicit ElementName(const ElementRow *aRow) : theRow(aRow) {}

    static consteval const ElementRow *RowNamed(std::string_view aName, int aIndex) {
        for (const ElementRow &row : theElementRows)
            if (row.Name == aName && row.Index == aIndex) return &row;
        throw "the panel has no element of that name";
    }
    template <class Class>
    static consteval const ElementRow *OfClass(const ElementRow *aRow) {
        for (const ElementKind kind : theKindsOf<Class>)
            if (aRow->Kind == kind) return aRow;
        throw "the element is of another class";
    }

private:
    const ElementRow *theRow;
};

/// The name of an element of that class.
template <class Class>
class ElementOf : public ElementName {
public:
    consteval ElementOf(const char *aName)
        : ElementName(OfClass<Class>(RowNamed(aName, theNoIndex))) {}
};

/// The name that the elements of an array have in common, which count from 0.
template <class Class>
class ArrayOf : public ElementName {
public:
    consteval ArrayOf(const char *aName) : ElementName(OfClass<Class>(RowNamed(aName, 0))) {}

    consteval int Count() const {
        int count = 0;
        for (const ElementRow &row : theElementRows)
            if (std::string_view(row.Name) == Text()) ++count;
        return count;
    }
};

inline constexpr ElementOf<ListView> theObjectLists[] = {"theTemplatesList", "theAccStreamsList",
                                                         "theTaxpayersList"};

/// The key of a tab; one that no tab has does not compile.
class TabName {
public:
    consteval TabName(const char *aKey) : theKey(aKey) {
        for (const TabRow &row : theTabRows)
            if (std::string_view(row.Key) == aKey) return;
        throw "the panel has no tab of that key";
    }

    const char *Text() const { return theKey; }

private:
    const char *theKey;
};

}  // namespace Vk_DocQuery
