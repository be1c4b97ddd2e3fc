#!/usr/bin/python3
"""check_wayland.py HOST: goes the road of a search on a Wayland display, by actions over the accessibility bus.

Runs on a session bus of its own (dbus-run-session). The compositor has no keyboard and no pointer, so that no
window gets the focus; every window, drop-down list and calendar has to come up and to go nevertheless, and
the platform must have nothing to complain of.
"""
import os

import bus
from bus import act, all_in, fault, gone, has, is_checked, one, open_tab, press, pyatspi, read, rows_of, the_host, until, walk, window, write

PICKER = "Добавление налогоплательщиков, сдающих отчетность"
QUESTION = "Норвик: Критерии поиска документов"
BROWSER = "Поиск бланков отчетных форм"


def add_taxpayers(dialog):
    open_tab(dialog, "Налогоплательщик")
    listed = one(dialog, "table", "Список налогоплательщиков")
    before = len(until("the taxpayers of the query", lambda: rows_of(listed)))
    press(dialog, "push button", "Добавить ...")
    picker = window(PICKER)
    offer = one(picker, "table", "Объекты, которые можно добавить")
    write(one(picker, "text", "Фильтр:"), "вет")
    until("the filtered offer",
          lambda: rows_of(offer) and all("вет" in row.name.lower() for row in rows_of(offer)))
    press(picker, "push button", "Пометить всё")
    # Rows are asked one by one; those asked before the button has worked are unmarked still.
    until("the marks", lambda: rows_of(offer) and all(is_checked(row) for row in rows_of(offer)))
    count = len(rows_of(offer))
    press(picker, "push button", "OK")
    gone(PICKER)
    until("the new taxpayers", lambda: len(rows_of(listed)) == before + count)


def use_popups(dialog):
    open_tab(dialog, "Период отчетности")
    press(dialog, "check box", "Период отчетности")
    combo = until("the periods", lambda: [e for e in walk(dialog) if e.description.endswith("Период:")])[0]
    act(combo, "ShowMenu", "Press")
    drop_down = next(part for part in combo if part.getRoleName() == "list")
    until("the drop-down list", lambda: bus.shows(drop_down))
    act(combo, "ShowMenu", "Press")
    until("the end of the drop-down list", lambda: not bus.shows(drop_down))

    open_tab(dialog, "Свойства документов")
    press(dialog, "check box", "Дата документа")
    date = until("the dates", lambda: [e for e in walk(dialog) if e.description == "Дата документа" and e.getRoleName() == "text"])[0]
    write(date, "01.10.2025")
    act(all_in(dialog, "push button", "Календарь")[0], "Press")
    clear = until("the calendar", lambda: [b for w in the_host() for b in all_in(w, "push button", "Очистить")])[0]
    act(clear, "Press")
    until("the date to be emptied", lambda: "2025" not in read(date))
    write(date, "01.10.2025")


def save_and_confirm(dialog):
    path = os.path.join(bus.work, "Query.qvk")
    # While its name box has no focus, the file dialog writes into it whatever is selected in its list.
    os.remove(os.path.join(bus.work, "Colleague.qvk"))
    press(dialog, "push button", "Сохранить как ...")
    question = window("Сохранить файл критериев поиска")
    name = [e for e in walk(question) if e.getRoleName() == "text"][-1]
    until("the name that is offered", lambda: read(name).endswith("Colleague.qvk"))
    write(name, path)
    press(question, "push button", "Сохранить")
    dialog = window(f"Поиск документов - [{path}]")
    with open(path, encoding="cp1251") as file:
        text = file.read()
    for wanted in ('SignDate1="01.10.2025"', 'IsPeriods="1"', '<i id="101" />'):
        if wanted not in text:
            fault(f"the saved query lacks {wanted}")
    press(dialog, "push button", "OK")
    press(window(QUESTION), "push button", "Да")
    gone(dialog.name)


def browse(host):
    item = until("the menu item", lambda: [e for e in bus.everything(host) if e.name == BROWSER + " ..."])[0]
    try:
        act(item, "Press")
    except Exception:  # noqa: BLE001: a menu item answers only when the window it brings up is closed
        pass
    browser = window(BROWSER)
    write(one(browser, "text", "Фильтр:"), "прибыль")
    forms = one(browser, "table", "2. Уточните отчетную форму, указав ее в списке:")
    act(until("the filtered forms", lambda: rows_of(forms))[0], "Press")
    times = one(browser, "table", "Отчетные периоды, в которых доступна указанная отчетная форма:")
    until("the periods", lambda: rows_of(times))
    press(browser, "push button", "Закрыть")
    gone(BROWSER)


def main():
    host = bus.start_host()
    press(host, "push button", "Поиск документов ...")
    dialog = bus.load_query(window("Поиск документов"))
    add_taxpayers(dialog)
    use_popups(dialog)
    save_and_confirm(dialog)
    browse(host)
    said = bus.log_of(bus.host_command()).strip()
    if said:
        fault("the platform complains:\n" + said)
    return "The road leads over Wayland, too"


bus.run(main, ("weston",), bus.start_wayland)
