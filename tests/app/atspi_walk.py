#!/usr/bin/python3
# Drives the running program through the accessibility bus, as a screen reader does: every
# command of the menu tree must be enabled, and those of the firm's menus open their windows;
# then a bank transfer is typed into the entry window's fields, found by their names, and
# issued with "Wystaw".
#
#   atspi_walk.py FIRM_FILE
#
# Exit status 0 when all held; every fault found is printed.
import sqlite3
import sys
import time

import pyatspi

FIRM = sys.argv[1]
faults = []

# The firm's own menus, where every command opens a window; the others' commands are
# checked for being enabled only.
WINDOW_MENUS = {"Dokumenty", "Raporty", "Słowniki", "Ustawienia"}


def wait_for(what, probe, timeout=15.0):
    end = time.monotonic() + timeout
    while time.monotonic() < end:
        try:
            found = probe()
        except Exception:  # the tree changes under us while windows open and close
            found = None
        if found:
            return found
        time.sleep(0.1)
    raise SystemExit("atspi: timed out waiting for " + what)


def program():
    for app in pyatspi.Registry.getDesktop(0):
        if app is not None and (app.name or "").lower() == "zlecanki":
            return app
    return None


def has_role(node, *roles):
    return node is not None and node.getRoleName() in roles


def enabled(node):
    return node.getState().contains(pyatspi.STATE_ENABLED)


def children(node):
    return [c for c in node if c is not None]


app = wait_for("the program on the accessibility bus", program, 30)
frame = wait_for("the main window", lambda: pyatspi.findDescendant(
    app, lambda n: has_role(n, "frame") and (n.name or "").startswith("Zlecanki - [")))
bar = wait_for("the menu bar", lambda: pyatspi.findDescendant(frame, lambda n: has_role(n, "menu bar")))
# The work area, where every window opens.
area = wait_for("the work area", lambda: pyatspi.findDescendant(frame, lambda n: has_role(n, "layered pane")))


def windows():
    """Names of the windows in the work area."""
    return {n.name for n in children(area)}


def menu_items(menu_node):
    items = []
    for child in children(menu_node):
        if has_role(child, "popup menu", "menu"):  # the popup of a menu title
            items += menu_items(child)
        elif has_role(child, "menu item", "check menu item"):
            items.append(child)
    return items


def command(path):
    """A command by its menu path ("Okna", "Zamknij wszystkie")."""
    top = next(c for c in children(bar) if c.name == path[0])
    return next(i for i in menu_items(top) if i.name == path[1])


def trigger(node):
    node.queryAction().doAction(0)


trigger(command(["Okna", "Zamknij wszystkie"]))
opened_any = 0
for top in children(bar):
    title = top.name
    if not enabled(top):
        faults.append("menu disabled: " + title)
        continue
    items = menu_items(top)
    if not items:  # "Ustawienia" stands in the bar itself
        items = [top]
    for item in items:
        name = item.name
        if not name or name[0].isdigit():  # the list of open windows
            continue
        if not enabled(item):
            faults.append("command disabled: %s / %s" % (title, name))
            continue
        if title not in WINDOW_MENUS:
            continue
        before = windows()
        trigger(item)
        try:
            wait_for(name + " to open its window", lambda: windows() - before, 10)
            opened_any += 1
        except SystemExit as e:
            faults.append(str(e))
        trigger(command(["Okna", "Zamknij wszystkie"]))

if not opened_any:
    faults.append("no command opened a window")

# A bank transfer, typed as a user would, issued with "Wystaw".
before = windows()
trigger(command(["Dokumenty", "Zlecanki Bankowe"]))
entry_name = wait_for("the entry window", lambda: next(iter(windows() - before), None))
entry = next(c for c in children(area) if c.name == entry_name)
values = {
    "Nazwa:": "Hurtownia Gęśla",
    "Bank:": "Bank Odbiorcy",
    "Konto:": "61109010140000071219812874",
    "Tytułem:": "Faktura 7/2026",
    "Wartość:": "123,45",
}
for label, text in values.items():
    field = pyatspi.findDescendant(entry, lambda n: has_role(n, "text", "entry") and n.name == label)
    if field is None:
        faults.append("no field named " + label)
        continue
    field.queryEditableText().setTextContents(text)
wystaw = pyatspi.findDescendant(entry, lambda n: has_role(n, "push button") and n.name == "Wystaw")
if wystaw is None or not enabled(wystaw):
    faults.append("no enabled button Wystaw")
else:
    trigger(wystaw)


def stored():
    with sqlite3.connect("file:%s?mode=ro" % FIRM, uri=True, timeout=5) as db:
        return db.execute("SELECT KLIENT_NAZWA, WARTOSC, BANK_FIRMY, KONTO_FIRMY FROM ZLECANKI "
                          "WHERE ZA_DOKUMENT_NAZWA = 'Faktura 7/2026'").fetchall()


try:
    rows = wait_for("the document in the database", stored, 15)
    if rows != [("Hurtownia Gęśla", 1234500, "Bank Testowy", "61109010140000071219812874")]:
        faults.append("stored: %r" % rows)
except SystemExit as e:
    faults.append(str(e))

for f in faults:
    print("atspi: FAULT: " + f)
sys.exit(1 if faults else 0)
