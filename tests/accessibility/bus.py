"""What the programs of this folder share: a display, the accessibility bus and the host on it, and the words
to look at its windows and to operate them as a screen reader does.

A program calls run(main, ...): it ends with 77 where the system lacks what it needs, with 1 and what was
found otherwise if main() gave up or noted faults.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

try:
    import pyatspi
    from gi.repository import GLib
except ImportError:
    pyatspi = None

BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PATIENCE = 20  # seconds; nothing takes as long

# A query that a colleague saved; its lists name records of the sample office.
QUERY = """<?xml version="1.0" encoding="windows-1251"?>
<VkDocQuery ver="1">
    <TemplateCriteria IsTemplate="1" TemplatesMode="1">
        <Templates><i id="1001"/><i id="1002"/></Templates>
    </TemplateCriteria>
    <TaxpayersCriteria IsTaxpayers="1" TaxpayersType="1">
        <TaxpayersList><i id="101"/><i id="102"/></TaxpayersList>
    </TaxpayersCriteria>
    <OtherOptions LastTab="taxpayer"/>
</VkDocQuery>
"""

faults = []
processes = []
log_files = []
work = None  # a folder for this run alone


def fault(text):
    faults.append(text)


def skip(text):
    print("Skipped: " + text)
    sys.exit(77)


def give_up(text):
    for command, name in log_files:
        with open(name, encoding="utf-8", errors="replace") as log:
            print(f"---- {command}\n{log.read()}", file=sys.stderr)
    for said in faults:
        print("Before that: " + said, file=sys.stderr)
    print("FAILED: " + text, file=sys.stderr)
    sys.exit(1)


# ---- Processes


def start(command, **options):
    log = tempfile.NamedTemporaryFile("w+", dir=work, delete=False)
    log_files.append((command[0], log.name))
    process = subprocess.Popen(command, stdout=log, stderr=log, **options)
    processes.append(process)
    return process


def end_all():
    """The last one first, so that none loses what it stands on."""
    while processes:
        process = processes.pop()
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def start_x():
    """Xvfb picks a free number and tells it."""
    reading, writing = os.pipe()
    start(
        ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[writing],
    )
    os.close(writing)
    with os.fdopen(reading) as pipe:
        number = pipe.readline().strip()
    if not number:
        give_up("the display did not start")
    os.environ.update(DISPLAY=":" + number, QT_QPA_PLATFORM="xcb")


def start_desktop():
    """With a window manager, which gives the keyboard back to a window when another one closes."""
    start_x()
    start(["openbox"])


def start_wayland():
    """The socket lies in the folder of this run, so that no name can be taken. The headless compositor has
    neither keyboard nor pointer, where Qt 6.4's own input method falls."""
    os.environ.pop("DISPLAY", None)
    start(["weston", "--backend=headless-backend.so", "--socket=desk", "--width=1366", "--height=768", "--idle-time=0"])
    until("the compositor", lambda: os.path.exists(os.path.join(work, "desk")))
    os.environ.update(WAYLAND_DISPLAY="desk", QT_QPA_PLATFORM="wayland", QT_IM_MODULE="compose")


def host_command():
    return os.path.abspath(sys.argv[1])


def start_host():
    """With the sample office, which it makes in the user's own folder."""
    start([host_command()])
    return window("Норвик")


def run(main, programs=("Xvfb",), display=start_x):
    global work
    if len(sys.argv) != 2:
        sys.exit(f"usage: {os.path.basename(sys.argv[0])} HOST")
    for needed in (*programs, "dbus-daemon"):
        if not shutil.which(needed):
            skip(needed + " is not installed")
    if not os.path.exists(BUS_LAUNCHER):
        skip("at-spi2-core is not installed")
    if pyatspi is None:
        skip("python3-pyatspi is not installed")
    with tempfile.TemporaryDirectory() as work:
        os.environ.update(
            HOME=work, XDG_DATA_HOME=os.path.join(work, "data"), XDG_RUNTIME_DIR=work,
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_SCALE_FACTOR="1", LC_ALL="C.UTF-8",
        )
        os.chmod(work, 0o700)
        try:
            display()
            start([BUS_LAUNCHER, "--launch-immediately"])
            until("the accessibility bus", lambda: pyatspi.Registry.getDesktop(0) is not None)
            said = main()
            if faults:
                give_up(faults.pop())
        finally:
            end_all()
    print(said)


def log_of(command):
    with open(next(name for started, name in log_files if started == command), encoding="utf-8") as log:
        return log.read()


# ---- Looking


def until(what, look):
    """The first result of look() that is true; the bus tells of a vanished element by an error."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        try:
            found = look()
            if found:
                return found
        except Exception:  # noqa: BLE001: the tree changes while it is read
            pass
        time.sleep(0.02)
    return give_up("in vain waited for " + what)


def has(element, state):
    return element.getState().contains(state)


def shows(element):
    return has(element, pyatspi.STATE_SHOWING)


def is_checked(element):
    return has(element, pyatspi.STATE_CHECKED)


def walk(element):
    """What shows in an element. The texts of a list that is not dropped down are left out."""
    for child in element:
        if child is None or not shows(child):
            continue
        yield child
        if child.getRoleName() != "combo box":
            yield from walk(child)
        else:
            yield from (part for part in child if part.getRoleName() == "text")


def everything(element):
    for child in element:
        if child is not None:
            yield child
            yield from everything(child)


def all_in(element, role, name):
    return [found for found in walk(element) if found.getRoleName() == role and found.name == name]


def one(parent, role, name):
    return until(f'{role} "{name}" in "{parent.name}"', lambda: all_in(parent, role, name))[0]


def the_host():
    return next(app for app in pyatspi.Registry.getDesktop(0) if app.name == "Norvik")


def window(title):
    return until(f'the window "{title}"', lambda: next(w for w in the_host() if w.name == title and shows(w)))


def gone(title):
    until(f'the end of the window "{title}"', lambda: all(w.name != title for w in the_host() if shows(w)))


def rows_of(table):
    """The first cell of each row, which says the whole row."""
    parts = list(table)
    columns = sum(1 for part in parts if part.getRoleName() == "table column header")
    return [part for part in parts if part.getRoleName() == "table cell"][::columns]


def tab(dialog, caption):
    """The tab of that caption, whatever it states."""
    return next(t for t in walk(dialog) if t.getRoleName() == "page tab" and t.name.startswith(caption + ", "))


# ---- Operating


def act(element, *actions):
    """Does the first of these actions that the element offers."""
    offered = element.queryAction()
    names = [offered.getName(i) for i in range(offered.nActions)]
    for action in actions:
        if action in names:
            offered.doAction(names.index(action))
            return
    give_up(f'"{element.name}" offers {names}, none of {actions}')


def press(parent, role, name):
    act(one(parent, role, name), "Press", "Toggle")


def read(element):
    return element.queryText().getText(0, -1)


def write(element, text):
    """A window that has just come up may write into its boxes itself."""

    def is_written():
        if read(element) != text:
            element.queryEditableText().setTextContents(text)
        return read(element) == text

    until(f'"{text}" in "{element.name}"', is_written)


def open_tab(dialog, caption):
    act(tab(dialog, caption), "Press")
    pages = lambda: [element for element in walk(dialog) if element.getRoleName() == "filler"]  # noqa: E731
    until(f'the page "{caption}"', lambda: any(e.name == caption and shows(e) for e in pages()))


def load_query(dialog, look_at_question=lambda question: None):
    """Loads the colleague's query into the dialog and gives the window under its new title."""
    path = os.path.join(work, "Colleague.qvk")
    with open(path, "w", encoding="cp1251") as file:
        file.write(QUERY)
    press(dialog, "push button", "Загрузить ...")
    question = window("Открыть файл критериев поиска")
    look_at_question(question)
    names = [e for e in walk(question) if e.getRoleName() == "text" and e.queryComponent()]
    write(names[-1], path)
    press(question, "push button", "Открыть")
    gone("Открыть файл критериев поиска")
    return window(f"Поиск документов - [{path}]")


# ---- Listening


class Ear:
    """Hears the events of the named types from its making on."""

    def __init__(self, *types):
        self.heard = []
        pyatspi.Registry.registerEventListener(self.hear, *types)

    def hear(self, event):
        """What an element says is asked at once: it may be gone later."""
        try:
            source = event.source
            self.heard.append((str(event.type), source.getRoleName(), source.name, source.description, event.detail1))
        except Exception:  # noqa: BLE001: gone already
            pass

    def listen(self):
        while GLib.MainContext.default().iteration(False):
            pass
        return self.heard

    def forget(self):
        self.listen()
        self.heard.clear()

    def expect(self, what, matches):
        """Waits for an event whose parts, (type, role, name, description, detail), match."""
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            if any(matches(*heard) for heard in self.listen()):
                return
            time.sleep(0.02)
        lines = "\n".join(str(heard) for heard in self.heard)
        give_up(f"nobody told of {what}; heard was\n{lines}")
