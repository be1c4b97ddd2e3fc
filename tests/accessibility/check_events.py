#!/usr/bin/python3
"""check_events.py HOST: listens to what the host tells over the accessibility bus, as a screen reader does.

Runs on a session bus of its own (dbus-run-session). What a user does has to be told of when it happens; that
it can be read from the tree afterwards is too late for those who hear alone.
"""
import bus
from bus import act, all_in, gone, one, open_tab, press, rows_of, until, walk, window, write

FOCUSED = "object:state-changed:focused"
CHECKED = "object:state-changed:checked"
SELECTED = "object:state-changed:selected"
NAME = "object:property-change:accessible-name"
DESCRIPTION = "object:property-change:accessible-description"
ACTIVATED = "window:activate"

TAXPAYERS = "Список налогоплательщиков"
PICKER = "Добавление налогоплательщиков, сдающих отчетность"
COLUMN = "Наименование/ФИО"


def expect(what, type_, role, name=None, description=None, detail=None):
    """Somebody has told of this since the last act; then the ear is empty again."""

    def matches(heard, by, called, described, number):
        return (
            heard == type_
            and by == role
            and name in (None, called)
            and description in (None, described)
            and detail in (None, number)
        )

    ear.expect(what, matches)
    ear.forget()


def criteria(dialog):
    """A tab tells when it gets or loses a criterion, though nobody is on it."""
    for ticked, said in ((1, "критерий задан"), (0, "критерий не задан")):
        act(all_in(dialog, "check box", TAXPAYERS)[0], "Toggle")
        ear.expect("the tick", lambda heard, by, name, _, on: (heard, by, name, on) == (CHECKED, "check box", TAXPAYERS, ticked))
        expect("the criterion", NAME, "page tab", f"Налогоплательщик, {said}")


def rows(dialog):
    """The row that becomes the current one, and the selection."""
    open_tab(dialog, "Налогоплательщик")
    table = one(dialog, "table", TAXPAYERS)
    first, second = until("two rows", lambda: rows_of(table)[:2])
    act(first, "SetFocus")
    expect("the focus on the first row", FOCUSED, "table cell", first.name, detail=1)
    act(second, "SetFocus")
    expect("the focus on the second row", FOCUSED, "table cell", second.name, detail=1)
    table.queryTable().addRowSelection(0)
    expect("the selection", SELECTED, "table cell", first.name, detail=1)
    table.queryTable().removeRowSelection(0)
    expect("the end of the selection", SELECTED, "table cell", first.name, detail=0)


def sorting(picker):
    """The column, by its header and by the list, and the way; then that the offer is as it was."""
    for way in ("по возрастанию", "по убыванию", None):
        act(one(picker, "table column header", COLUMN), "Press")
        described = f"Сортировка: {COLUMN}, {way}" if way else ""
        ear.expect(
            f"the list sorted {way}",
            lambda heard, by, _, text, __, described=described: (heard, by, text) == (DESCRIPTION, "table", described),
        )
        expect(f"the header sorted {way}", DESCRIPTION, "table column header", COLUMN, way or "")
    act(one(picker, "table column header", COLUMN), "Press")
    expect("the sorted list", DESCRIPTION, "table column header", COLUMN, "по возрастанию")
    act(one(picker, "table column header", "ИНН"), "Press")
    ear.expect("the header that has lost its arrow", lambda heard, _, name, text, __: (heard, name, text) == (DESCRIPTION, COLUMN, ""))
    expect("the other header", DESCRIPTION, "table column header", "ИНН", "по возрастанию")


def marks(picker):
    table = one(picker, "table", "Объекты, которые можно добавить")
    row = until("rows to choose from", lambda: rows_of(table))[2]
    for marked in (1, 0):
        act(row, "Toggle")
        expect(f"the mark {marked}", CHECKED, "table cell", row.name, detail=marked)
    for button, marked in (("Пометить всё", 1), ("Снять все отметки", 0)):
        names = [row.name for row in rows_of(table)]
        press(picker, "push button", button)
        for name in names:
            ear.expect(
                f'"{button}" on "{name}"',
                lambda heard, _, told, __, on, name=name, marked=marked: (heard, told, on) == (CHECKED, name, marked),
            )
        ear.forget()


def refused_date(dialog):
    """The box comes up by its name, says its text, and the focus is told to be back in the date."""
    open_tab(dialog, "Свойства документов")
    press(dialog, "check box", "Дата документа")
    date = until("the dates", lambda: [e for e in walk(dialog) if e.description == "Дата документа" and e.getRoleName() == "text"])[0]
    act(date, "SetFocus")
    expect("the focus in the date", FOCUSED, "text", "с:", detail=1)
    write(date, "31.02.2025")
    act(one(dialog, "check box", "Примечание"), "SetFocus")
    expect("the box", ACTIVATED, "alert", "Дата")
    box = window("Дата")
    one(box, "label", '"31.02.2025" не является датой.')
    press(box, "push button", "OK")
    expect("the focus back in the date", FOCUSED, "text", "с:", detail=1)
    gone("Дата")
    write(date, "28.02.2025")


def main():
    global ear
    ear = bus.Ear(FOCUSED, CHECKED, SELECTED, NAME, DESCRIPTION, ACTIVATED)
    host = bus.start_host()
    press(host, "push button", "Поиск документов ...")
    expect("the dialog", ACTIVATED, "dialog", "Поиск документов")
    dialog = window("Поиск документов")
    criteria(dialog)
    dialog = bus.load_query(dialog)
    expect("the window that is back", ACTIVATED, "dialog", dialog.name)
    rows(dialog)
    press(dialog, "push button", "Добавить ...")
    expect("the picker", ACTIVATED, "dialog", PICKER)
    picker = window(PICKER)
    sorting(picker)
    marks(picker)
    press(picker, "push button", "Отмена")
    gone(PICKER)
    expect("the window that is back", ACTIVATED, "dialog", dialog.name)
    refused_date(dialog)
    return "Everything was told"


bus.run(main, ("Xvfb", "openbox"), bus.start_desktop)
