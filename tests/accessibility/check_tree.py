#!/usr/bin/python3
"""check_tree.py HOST: looks at the host over the accessibility bus, as a screen reader does.

Runs on a session bus of its own (dbus-run-session). Walks the trees of the windows, compares names and
roles with what a user has to hear, and operates elements by what the bus offers alone.
"""
import bus
from bus import (
    act, all_in, everything, fault, gone, has, is_checked, one, open_tab, press, pyatspi, read, rows_of, shows, tab,
    the_host, until, walk, window, write,
)

CRITERIA = {
    "page tab": [
        "Налогоплательщик, критерий не задан",
        "Комплект отчетности, критерий не задан",
        "Период отчетности, критерий не задан",
        "Отчетная форма, критерий не задан",
        "Свойства документов, критерий не задан",
    ],
    "push button": ["Загрузить ...", "Сохранить", "Сохранить как ...", "Справка", "OK", "Отмена"],
}

# What shows on each tab when all criteria are on: role and name, as often as they are there.
PAGES = {
    "Налогоплательщик": [
        ("panel", "Список налогоплательщиков"),
        ("check box", "Список налогоплательщиков"),
        ("radio button", "Конкретные налогоплательщики"),
        ("radio button", "Обособленные подразделения, чьей головной организацией является ..."),
        ("table", "Список налогоплательщиков"),
        ("table column header", "ИНН"),
        ("table column header", "КПП"),
        ("table column header", "Наименование/ ФИО"),
        ("push button", "Добавить ..."),
        ("push button", "Удалить"),
    ],
    "Комплект отчетности": [
        ("check box", "Тип комплекта отчетности"),
        ("check box", "Отчетность в ИФНС"),
        ("check box", "РСВ, НДФЛ и отчетность в ПФР"),
        ("check box", "Отчетность в Росстат"),
        ("check box", "Отчетность в ФСС"),
        ("check box", "Отчетность в Росалкогольрегулирование"),
        ("check box", "Отчетность ОФР"),
        ("check box", "Открыт/ закрыт"),
        ("radio button", "Открыт"),
        ("radio button", "Закрыт"),
        ("panel", " Коды контролирующих органов "),
        ("check box", "Код первого контр. органа начинается на..."),
        ("text", "Код первого контр. органа начинается на..."),
        ("radio button", "... И ..."),
        ("radio button", "... ИЛИ ..."),
        ("check box", "Код второго контр. органа начинается на..."),
        ("text", "Код второго контр. органа начинается на..."),
        ("label", "(можно указывать несколько кодов, разделяя их пробелами или запятыми)"),
        ("check box", "Список конкретных комплектов отчетности"),
        ("table", "Список конкретных комплектов отчетности"),
        ("table column header", "Название"),
        ("table column header", "К.орг."),
        ("push button", "Добавить ..."),
        ("push button", "Удалить"),
    ],
    "Период отчетности": [
        ("check box", "Период отчетности"),
        ("radio button", "Один период"),
        ("radio button", "Диапазон"),
        ("radio button", 'Период "Прочее"'),
        ("text", "Год:"),
        ("text", "с:"),
        ("text", "по:"),
        ("check box", "только периоды следующего типа:"),
        ("check box", "месяцы"),
        ("check box", "кварталы 1-3"),
        ("check box", "4-й квартал"),
        ("check box", "полугодие, год"),
        ("check box", '"иное"'),
        ("check box", "запросы и переписка"),
        ("check box", "документы"),
    ],
    "Отчетная форма": [
        ("check box", "Список отчетных форм (бланков)"),
        ("radio button", "Наименование отчетной формы"),
        ("radio button", "Наименование и версия бланка"),
        ("table", "Список отчетных форм (бланков)"),
        ("table column header", "Наименование"),
        ("push button", "Добавить ..."),
        ("push button", "Удалить"),
    ],
    "Свойства документов": [
        ("panel", "Состояние документа"),
        ("check box", "Состояние документа"),
        ("check box", "В работе"),
        ("check box", "Готов к сдаче"),
        ("check box", "Сдан"),
        ("check box", "Уточнён"),
        ("check box", "Примечание"),
        ("radio button", "Пусто"),
        ("radio button", "Не пусто"),
        ("radio button", "Содержит"),
        ("check box", "Дата документа"),
        ("text", "с:"),
        ("text", "по:"),
        ("push button", "Календарь"),
        ("push button", "Календарь"),
        ("check box", "Фамилия подписанта"),
        ("text", "Фамилия подписанта"),
        ("check box", "Номер документа "),
        ("radio button", "Диапазон номеров документов"),
        ("radio button", "Последние созданные документы"),
        ("text", "количество:"),
        (
            "check box",
            "Если в результаты поиска попадает документ отчетности, содержащий индивидуальные сведения о физ "
            "лицах, такие как отчеты в ПФР, РСВ, 2-НДФЛ или 6-НДФЛ за год, то добавлять к списку весь комплект "
            "документов (и пакет сведений, и конечные сформированные документы)",
        ),
    ],
}

# The combos are called by their values; what they are for is told beside it.
COMBOS = ["Период отчетности, Год:", "Период отчетности, Период:"] + [
    "Период отчетности, " + side for side in ("с:", "с:", "по:", "по:")
]

TAXPAYERS = [
    '7713297727; 771301001; ООО "Лесная поляна"',
    '7702524456; 770201001; ООО "Северный ветер"',
]
FORMS = ["Декларация по налогу на прибыль", "Декларация по НДС"]

PICKER_TITLE = "Добавление налогоплательщиков, сдающих отчетность"
PICKER = [
    ("text", "Фильтр:"),
    ("table", "Объекты, которые можно добавить"),
    ("push button", "Пометить всё"),
    ("push button", "Снять все отметки"),
    ("push button", "Пометить выделенные"),
    ("push button", "Снять отметки с выделенного"),
    ("push button", "OK"),
    ("push button", "Отмена"),
]

BROWSER_TITLE = "Поиск бланков отчетных форм"
BROWSER_LIST = "2. Уточните отчетную форму, указав ее в списке:"
BROWSER_TIMES = "Отчетные периоды, в которых доступна указанная отчетная форма:"
BROWSER = [
    ("label", "1. Наберите буквы названия отчетной формы или цифры КНД:"),
    ("text", "Фильтр:"),
    ("table", BROWSER_LIST),
    ("table column header", "КНД"),
    ("text", "Комплекты отчетности, в которых доступна указанная отчетная форма:"),
    ("table", BROWSER_TIMES),
    ("table column header", "Янв"),
    ("push button", "Закрыть"),
]

def check_there(parent, wanted):
    have = [(element.getRoleName(), element.name) for element in walk(parent)]
    for entry in wanted:
        if entry in have:
            have.remove(entry)
        else:
            fault(f'"{parent.name}" has no {entry[0]} "{entry[1]}"')


INPUTS = {"push button", "check box", "radio button", "text", "combo box", "table", "page tab", "list"}


def check_all_are_named(parent):
    """Whatever takes the focus says what it is, and can be told to take it."""
    count = 0
    for element in walk(parent):
        if element.getRoleName() not in INPUTS or not element.getState().contains(pyatspi.STATE_FOCUSABLE):
            continue
        count += 1
        if not element.name.strip():
            fault(f'{element.getRoleName()} without a name in "{parent.name}"')
    if not count:
        fault(f'nothing in "{parent.name}" takes the focus')


def check_dialog_at_first(dialog):
    for role, names in CRITERIA.items():
        check_there(dialog, [(role, name) for name in names])
    check_all_are_named(dialog)


def turn_on_everything(dialog, caption):
    open_tab(dialog, caption)
    done = set()
    while True:
        boxes = [e for e in walk(dialog) if e.getRoleName() == "check box" and not is_checked(e)]
        boxes = [box for box in boxes if box.name not in done]
        if not boxes:
            return
        done.add(boxes[0].name)
        act(boxes[0], "Toggle", "Press")
        until(f'"{boxes[0].name}" to be ticked', lambda: is_checked(boxes[0]))


def check_pages(dialog):
    for caption, wanted in PAGES.items():
        if tab(dialog, caption).name != caption + ", критерий не задан":
            fault(f'the tab "{caption}" says a criterion before there is one')
        turn_on_everything(dialog, caption)
        if caption == "Период отчетности":
            press(dialog, "radio button", "Диапазон")
            turn_on_everything(dialog, caption)
        until(f'the tab "{caption}" to tell its criterion', lambda: tab(dialog, caption).name == caption + ", критерий задан")
        check_there(dialog, wanted)
        check_all_are_named(dialog)
        if caption == "Период отчетности":
            check_combos(dialog)


def label_of(element):
    """What a screen reader says before the value of an element that is named by it."""
    for relation in element.getRelationSet():
        if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
            return relation.getTarget(0).name
    return None


def check_combos(dialog):
    for combo in (e for e in walk(dialog) if e.getRoleName() == "combo box"):
        # What has the focus is the line of a combo that can be typed in.
        lines = [part.name for part in combo if part.getRoleName() == "text"]
        if (lines or [label_of(combo)]) != [combo.description.split(", ")[1]]:
            fault(f'the combo "{combo.description}" is called {lines or label_of(combo)}')
    have = sorted(e.description for e in walk(dialog) if e.getRoleName() == "combo box")
    if have != sorted(COMBOS):
        fault(f"the combos are described as {have}")


def operate(dialog):
    """Option, text, number and date, by the bus alone."""
    open_tab(dialog, "Свойства документов")
    surname = one(dialog, "text", "Фамилия подписанта")
    write(surname, "Петров")
    press(dialog, "radio button", "Содержит")
    until("the option to be chosen", lambda: is_checked(one(dialog, "radio button", "Содержит")))
    write(one(dialog, "text", "Содержит"), "срочно")
    press(dialog, "radio button", "Диапазон номеров документов")
    numbers = until("the number boxes", lambda: [e for e in walk(dialog) if e.description == "Номер документа"])
    if [e.name for e in numbers if e.getRoleName() == "text"] != ["с:", "по:"]:
        fault("the number boxes are called " + str([e.name for e in numbers]))
    write(numbers[0], "17")
    dates = [e for e in walk(dialog) if e.description == "Дата документа" and e.getRoleName() == "text"]
    dates[0].queryEditableText().setTextContents("01.10.2025")
    until("the date", lambda: read(dates[0]) == "01.10.2025")
    act(all_in(dialog, "push button", "Календарь")[0], "Press")
    calendar = until("the calendar", lambda: [b for w in the_host() for b in all_in(w, "push button", "Очистить")])
    act(calendar[0], "Press")
    until("the date to be emptied", lambda: "2025" not in read(dates[0]))

    open_tab(dialog, "Комплект отчетности")
    codes = one(dialog, "text", "Код первого контр. органа начинается на...")
    write(codes, "7701, 7702")
    press(dialog, "check box", "Код первого контр. органа начинается на...")
    until("the box to go with its criterion", lambda: not shows(codes))


def check_rows(window, list_name, wanted):
    tree = one(window, "table", list_name)
    until(f'rows in "{list_name}"', lambda: rows_of(tree))
    said = [row.name for row in rows_of(tree)]
    if said != wanted:
        fault(f'the rows of "{list_name}" are said as {said}')


def check_lists(dialog):
    """A row is said by what stands in its cells."""
    loaded = bus.load_query(dialog, check_all_are_named)
    open_tab(loaded, "Налогоплательщик")
    check_rows(loaded, "Список налогоплательщиков", TAXPAYERS)
    check_picker(loaded)
    open_tab(loaded, "Отчетная форма")
    check_rows(loaded, "Список отчетных форм (бланков)", FORMS)
    return loaded


def check_picker(dialog):
    press(dialog, "push button", "Добавить ...")
    picker = window(PICKER_TITLE)
    check_there(picker, PICKER)
    check_all_are_named(picker)
    tree = one(picker, "table", "Объекты, которые можно добавить")
    rows = until("rows to choose from", lambda: rows_of(tree))
    if any(row.name in TAXPAYERS or row.name.count("; ") < 1 for row in rows):
        fault(f"the offer is said as {[row.name for row in rows]}")
    check_sorting(picker, tree)
    check_marks(picker, tree)
    press(picker, "push button", "Пометить всё")
    until("the marks", lambda: all(is_checked(row) for row in rows_of(tree)))
    chosen = rows_of(tree)[-1].name
    write(one(picker, "text", "Фильтр:"), chosen.split("; ")[0])
    until("the filtered rows", lambda: [row.name for row in rows_of(tree)] == [chosen])
    press(picker, "push button", "OK")
    gone(PICKER_TITLE)
    listed = one(dialog, "table", "Список налогоплательщиков")
    # Of the head organisation the two lists show different names.
    begin = "; ".join(chosen.split("; ")[:3])
    added = until("the chosen taxpayer in the list", lambda: [r for r in rows_of(listed) if r.name.startswith(begin)])
    check_selection(dialog, listed, added[0].name)


def check_sorting(picker, tree):
    """A press on a header sorts up, the next one down, and the third gives the first order back. The offer comes by
    name, so that another column shows the three."""
    offered = [row.name for row in rows_of(tree)]
    header = one(picker, "table column header", "ИНН")
    orders = []
    for _ in range(3):
        before = [row.name for row in rows_of(tree)]
        act(header, "Press")
        orders.append(until("another order", lambda: (now := [r.name for r in rows_of(tree)]) != before and now))
        header = one(picker, "table column header", "ИНН")
    if len(set(map(tuple, orders))) != 3 or orders[2] != offered or any(sorted(o) != sorted(offered) for o in orders):
        fault("pressing a header does not sort up, down and back")


def check_marks(picker, tree):
    """A row is marked and made the current one by what it offers itself."""
    rows = rows_of(tree)
    act(rows[2], "Toggle")
    until("the mark of one row", lambda: [is_checked(row) for row in rows_of(tree)].count(True) == 1)
    if not is_checked(rows_of(tree)[2]):
        fault("another row than the toggled one is marked")
    act(rows[3], "SetFocus")
    until("the focus on a row", lambda: has(rows_of(tree)[3], pyatspi.STATE_FOCUSED))
    act(rows[2], "Toggle")
    until("the mark to go", lambda: not any(is_checked(row) for row in rows_of(tree)))


def check_selection(dialog, listed, added):
    """Rows are selected and let go; what is selected is deleted, and nothing else."""

    def selected():
        return [row.name for row in rows_of(listed) if has(row, pyatspi.STATE_SELECTED)]

    names = [row.name for row in rows_of(listed)]
    if selected() != [added]:
        fault(f"after the add {selected()} is selected")
    table = listed.queryTable()
    table.removeRowSelection(names.index(added))
    until("the selection to go", lambda: not selected())
    table.addRowSelection(1)
    table.addRowSelection(2)
    until("two selected rows", lambda: selected() == names[1:3])
    act(rows_of(listed)[names.index(added)], "Press")
    until("one selected row", lambda: selected() == [added])
    press(dialog, "push button", "Удалить")
    press(window("Удаление из списка"), "push button", "Да")
    until("the row to go", lambda: [row.name for row in rows_of(listed)] == [name for name in names if name != added])


def check_browser(host):
    # A menu that is not open does not show.
    item = until("the menu item", lambda: [e for e in everything(host) if e.name == BROWSER_TITLE + " ..."])[0]
    try:
        act(item, "Press")
    except Exception:  # noqa: BLE001: a menu item answers only when the window it brings up is closed
        pass
    browser = window(BROWSER_TITLE)
    check_there(browser, BROWSER)
    check_all_are_named(browser)
    tree = one(browser, "table", BROWSER_LIST)
    all_forms = len(rows_of(tree))
    write(one(browser, "text", "Фильтр:"), "прибыль")
    until("the filtered forms", lambda: 0 < len(rows_of(tree)) < all_forms)
    for row in rows_of(tree):
        if "прибыль" not in row.name.lower():
            fault(f'the filter leaves the form "{row.name}"')
    check_periods(browser, tree)
    press(browser, "push button", "Закрыть")
    gone(BROWSER_TITLE)


def check_periods(browser, tree):
    """A form is chosen by its row, and a year says the periods whose pictures stand in it."""
    times = one(browser, "table", BROWSER_TIMES)
    if rows_of(times):
        fault("there are periods before a form is chosen")
    act(rows_of(tree)[0], "Press")
    said = until("the periods", lambda: [row.name for row in rows_of(times)])
    captions = [part.name for part in times if part.getRoleName() == "table column header"]
    for row in said:
        year, *periods = row.split("; ")
        if not (year.isdigit() and len(year) == 4 and periods and set(periods) <= set(captions)):
            fault(f'a year of periods is said as "{row}"')


def main():
    host = bus.start_host()
    check_all_are_named(host)
    press(host, "push button", "Поиск документов ...")
    dialog = window("Поиск документов")
    check_dialog_at_first(dialog)
    check_pages(dialog)
    operate(dialog)
    dialog = check_lists(dialog)
    press(dialog, "push button", "Отмена")
    gone(dialog.name)
    check_browser(host)
    return "The tree is as it should be"


bus.run(main)
