"""The main job as somebody does it who hears the screen: everything is found by role and name and used through its
action or its text. Then the shipped program's own set-up: its signals, and its end during a build. Arguments: the folder of
the device; the launcher's process, unless the program is left open at the end."""

import ctypes
import glob
import os
import signal
import subprocess
import sys

import pyatspi
from gi.repository import GLib

PATIENCE = 60  # seconds
PROJECT = "ReadTweak"
BUTTON = pyatspi.ROLE_PUSH_BUTTON
DIALOGS = (pyatspi.ROLE_DIALOG, pyatspi.ROLE_ALERT)


class Missing(Exception):
    pass


def wait_for(find, what):
    """What `find` returns once it is something; asked again whenever the bus has news, and now and then."""
    late = []
    tick = GLib.timeout_add(100, lambda: True)
    limit = GLib.timeout_add_seconds(PATIENCE, lambda: late.append(True))
    try:
        while True:
            try:
                found = find()
            except GLib.Error:  # gone while it was looked at
                found = None
            if found:
                return found
            if late:
                raise Missing(what)
            GLib.MainContext.default().iteration(True)
    finally:
        GLib.source_remove(tick)
        if not late:
            GLib.source_remove(limit)


def everything(node):
    node.clear_cache()
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield child
            yield from everything(child)


def has(node, state):
    return node.getState().contains(state)


def application():
    def find():
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.clear_cache()
        return next((app for app in desktop if app is not None and app.name == "Tweakbench"), None)

    return wait_for(find, "the application is not on the bus")


APPLICATION = None


def showing(roles, name=None):
    roles = roles if isinstance(roles, tuple) else (roles,)
    for node in everything(APPLICATION):
        if node.getRole() in roles and name in (None, node.name) and has(node, pyatspi.STATE_SHOWING):
            if has(node, pyatspi.STATE_ENABLED):
                return node
    return None


def get(roles, name):
    return wait_for(lambda: showing(roles, name), f"not there: {name}")


def use(roles, name):
    node = get(roles, name)
    action = node.queryAction()
    names = [action.getName(index) for index in range(action.nActions)]
    preferred = next((index for index, each in enumerate(names) if each in ("Press", "Toggle")), 0)
    if not names or not action.doAction(preferred):
        raise Missing(f"no action on {name}")


def dialog(title):
    """The modal dialog of that title, when it is there."""
    found = get(DIALOGS, title)
    assert has(found, pyatspi.STATE_MODAL), f"{title} is not modal"
    covered = {node.name for node in everything(APPLICATION)
               if node.getRole() in DIALOGS or node.name in ("Reload", "Back", "File text", "Build log")}
    assert covered == {title}, f"on the bus beneath {title}: {covered}"
    return found


def no_dialog():
    wait_for(lambda: not showing(DIALOGS), "a dialog stays")


def at_rest():
    """Whether a screen is there and none on its way: one that comes or goes takes no input."""
    usable = [node for node in everything(APPLICATION) if has(node, pyatspi.STATE_SHOWING)
              and has(node, pyatspi.STATE_FOCUSABLE)]
    return len(usable) > 2 and all(has(node, pyatspi.STATE_ENABLED) for node in usable)


def check_controls(screen):
    """Role, name, state and action of whatever can be used."""
    wait_for(at_rest, f"{screen}: few controls, or a disabled one")
    for node in everything(APPLICATION):
        if not has(node, pyatspi.STATE_SHOWING) or not has(node, pyatspi.STATE_FOCUSABLE):
            continue
        what = f"{screen}: {node.getRoleName()} {node.name!r}"
        assert node.getRole() not in (pyatspi.ROLE_UNKNOWN, pyatspi.ROLE_INVALID), what
        assert node.name, what + " has no name"
        if node.getRole() in (BUTTON, pyatspi.ROLE_CHECK_BOX):
            assert node.queryAction().nActions > 0, what + " has no action"


def text_of(name):
    text = get(pyatspi.ROLE_TEXT, name).queryText()
    return text.getText(0, text.characterCount)


def key(*arguments):
    subprocess.run(["xdotool", *arguments], check=True)


def hold_return(device):
    """A Return that is held down opens the prompt and leaves it at that."""
    # There is no window manager that would do it.
    key("search", "--sync", "--onlyvisible", "--name", "Tweakbench", "windowfocus", "--sync")
    key("key", "ctrl+n")
    dialog("Project Options")
    key("key", "Tab")
    key("keydown", "Return")
    dialog("Create New Project")
    repeated = []
    GLib.timeout_add(1500, lambda: repeated.append(True))
    wait_for(lambda: repeated, "no time passes")
    assert showing(DIALOGS, "Create New Project"), "the key has confirmed what it opened"
    key("keyup", "Return")
    key("key", "Escape")
    no_dialog()
    assert not os.listdir(f"{device}/var/Tweakyard/Projects")


def create_project():
    check_controls("main")
    use(BUTTON, "New Project")
    dialog("Project Options")
    use((BUTTON, pyatspi.ROLE_LIST_ITEM), "Create New Project")
    dialog("Create New Project")
    field = wait_for(lambda: showing(pyatspi.ROLE_TEXT), "no text field")
    field.queryEditableText().setTextContents(PROJECT)
    use(BUTTON, "Confirm")
    no_dialog()
    check_controls("main after a dialog")


def edit_file():
    wait_for(lambda: PROJECT in [node.name for node in everything(APPLICATION)], "the project is not shown")
    rows = [row.name for row in get(pyatspi.ROLE_LIST, "Files") if row.getRole() == pyatspi.ROLE_LIST_ITEM]
    assert sorted(rows) == ["Makefile", f"{PROJECT}.plist", "Tweak.x", "control"], rows
    use(pyatspi.ROLE_LIST_ITEM, "Tweak.x")
    wait_for(lambda: "%hook" in text_of("File text"), "the file's text is not there")
    check_controls("editor")
    assert not {"Reload", "control"} & {node.name for node in everything(APPLICATION)}, "the main screen is on the bus"
    get(pyatspi.ROLE_TEXT, "File text").queryEditableText().insertText(0, "// by ear\n", len("// by ear\n"))
    use(BUTTON, "Save")
    get(pyatspi.ROLE_LIST, "Files")


def build(device):
    use(BUTTON, "Build")
    get(BUTTON, "Make Package")
    check_controls("build")
    switch = get(pyatspi.ROLE_CHECK_BOX, "Show success alert")
    for expected in (False, True):
        use(pyatspi.ROLE_CHECK_BOX, "Show success alert")
        wait_for(lambda: has(switch, pyatspi.STATE_CHECKED) == expected, "the switch does not turn")
    # The first one updates Theos and builds nothing. When it has left its mark, its dialog has been up.
    use(BUTTON, "Make Package")
    wait_for(lambda: os.path.exists(f"{device}/var/Tweakyard/tmp/SuccessfullyUpdated.log"), "Theos is not updated")
    no_dialog()
    use(BUTTON, "Make Package")
    dialog("Done")
    use(BUTTON, "Cancel")
    no_dialog()
    assert f"Making all for tweak {PROJECT}" in text_of("Build log"), text_of("Build log")
    assert has(get(pyatspi.ROLE_TEXT, "Build log"), pyatspi.STATE_READ_ONLY)


def edit(insert):
    """Has `insert` typed at the caret of the editor that is shown, and saves."""
    editor = get(pyatspi.ROLE_TEXT, "File text")
    place = editor.queryText().caretOffset
    editor.queryEditableText().insertText(place, insert, len(insert))
    use(BUTTON, "Save")


def mend(device):
    """From a line that is broken in a folder's file to its error, back to the line, and to the next package."""
    folder = f"{device}/var/Tweakyard/Projects/{PROJECT}"
    os.mkdir(f"{folder}/deep")
    with open(f"{folder}/deep/Part.m", "w", encoding="utf-8") as source:
        source.write("int whole = 1;\n")
    with open(f"{folder}/Makefile", "r+", encoding="utf-8") as makefile:
        text = makefile.read().replace("*.mm)", "*.mm deep/*.m)")
        makefile.seek(0)
        makefile.write(text)
    use(BUTTON, "Go to File")
    dialog("Go to File")
    use(pyatspi.ROLE_LIST_ITEM, "deep/Part.m")
    wait_for(lambda: "whole" in text_of("File text"), "the file's text is not there")
    edit("int broken = ;\n")
    use(BUTTON, "Make Package")
    error = "deep/Part.m:1:14: error: expected expression"
    get(pyatspi.ROLE_LIST, "Problems")
    use(pyatspi.ROLE_LIST_ITEM, error)
    wait_for(lambda: "broken" in text_of("File text"), "the file's text is not there")
    check_controls("editor at a problem")
    edit("1")
    get(pyatspi.ROLE_LIST_ITEM, error)
    with open(f"{folder}/deep/Part.m", encoding="utf-8") as source:
        assert source.readline() == "int broken = 1;\n"
    use(BUTTON, "Make Package")
    dialog("Done")
    use(BUTTON, "Cancel")
    no_dialog()
    assert not showing(pyatspi.ROLE_LIST, "Problems")


def process_below(ancestor, name):
    """The youngest process of this name among the descendants of another."""
    found = None
    below = {ancestor}
    for number in sorted(int(entry) for entry in os.listdir("/proc") if entry.isdigit()):
        try:
            with open(f"/proc/{number}/status", encoding="utf-8") as status:
                fields = dict(line.rstrip("\n").split(":\t", 1) for line in status if ":\t" in line)
        except OSError:
            continue
        if int(fields["PPid"]) in below:
            below.add(number)
            if fields["Name"] == name:
                found = fields
    return found


def close_window():
    """As a window manager asks for it."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    display = ctypes.c_void_p(library.XOpenDisplay(None))
    atom = lambda name: library.XInternAtom(display, name, False)
    window = int(subprocess.check_output(["xdotool", "search", "--onlyvisible", "--class", "Tweakbench"]).split()[0])
    client_message = 33
    event = (ctypes.c_long * 24)(client_message, 0, 0, 0, window, atom(b"WM_PROTOCOLS"), 32, atom(b"WM_DELETE_WINDOW"))
    library.XSendEvent(display, ctypes.c_ulong(window), False, ctypes.c_long(0), event)
    library.XFlush(display)


def close_during_build(device, launcher):
    """The application ends at once, and asks what it has started to end before."""
    caught = int(process_below(launcher, "Tweakbench")["SigCgt"], 16)
    for number in (signal.SIGPIPE, signal.SIGXFSZ):
        assert caught >> (number - 1) & 1, f"{number} would end the application"
    with open(f"{device}/var/Tweakyard/Projects/{PROJECT}/Makefile", "w", encoding="utf-8") as makefile:
        makefile.write("package:\n\t@trap 'touch /var/tmp/asked; exit' TERM; touch /var/tmp/started; while :; do :; done\n")
    use(BUTTON, "Make Package")
    wait_for(lambda: os.path.exists(f"{device}/var/tmp/started"), "make does not start")
    close_window()
    # The launcher may be gone, but not waited for yet.
    wait_for(lambda: not process_below(launcher, "Tweakbench"), "the application goes on")
    assert os.path.exists(f"{device}/var/tmp/asked"), "the build was not asked to end"


def main():
    global APPLICATION
    device = sys.argv[1]
    APPLICATION = application()
    try:
        hold_return(device)
        create_project()
        edit_file()
        build(device)
        mend(device)
    except BaseException:
        for node in everything(APPLICATION):
            if has(node, pyatspi.STATE_SHOWING):
                print(node.getRoleName(), repr(node.name), node.getState().getStates())
        raise
    with open(f"{device}/var/Tweakyard/Projects/{PROJECT}/Tweak.x", encoding="utf-8") as source:
        assert source.readline() == "// by ear\n"
    packages = glob.glob(f"{device}/var/mobile/Documents/Tweakbench/{PROJECT}/*.deb")
    assert len(packages) == 1, packages
    print("Built by ear:", packages[0])
    if len(sys.argv) > 2:
        close_during_build(device, int(sys.argv[2]))


main()
