"""A screen of its own for a test, with a window manager, a mouse and a keyboard."""

import contextlib
import os

from PIL import Image, ImageChops, ImageFilter
from Xlib import X, XK, display
from Xlib.error import BadWindow
from Xlib.ext import xtest
from Xlib.protocol import event

from programs import Running, until

# A manager that looks at the clicks inside of windows holds them up, and keys overtake them.
SETTINGS = """<openbox_config xmlns="http://openbox.org/3.4/rc"><mouse><context name="Close">
<mousebind button="Left" action="Click"><action name="Close"/></mousebind>
</context></mouse></openbox_config>"""


class Screen(contextlib.ExitStack):
    """An X server with openbox. A window is its number; places are pixels of the screen."""

    def __init__(self, home):
        super().__init__()
        read, write = os.pipe()
        self.enter_context(Running(
            "Xvfb", "-displayfd", write, "-screen", "0", "1400x1000x24", "-dpi", "96", "-nolisten",
            "tcp", "-noreset", pass_fds=(write,)))
        os.close(write)
        with os.fdopen(read) as answer:
            self.name = ":" + answer.readline().strip()
        home.put("openbox.xml", SETTINGS)
        self.enter_context(Running("openbox", "--config-file", home / "openbox.xml",
                                   env={"DISPLAY": self.name, "HOME": str(home)}))
        self._x = display.Display(self.name)
        self.callback(self._x.close)
        self._root = self._x.screen().root
        until(lambda: self._values(self._root, "_NET_SUPPORTING_WM_CHECK"))

    def _window(self, number):
        return self._x.create_resource_object("window", number)

    def _values(self, window, name):
        found = window.get_full_property(self._x.intern_atom(name), X.AnyPropertyType)
        return found.value if found else ()

    def _clients(self, title):
        """The windows of this title that are shown and managed."""
        for number in self._values(self._root, "_NET_CLIENT_LIST"):
            with contextlib.suppress(BadWindow):
                name = bytes(self._values(self._window(number), "_NET_WM_NAME")).decode()
                if name.strip() == title:
                    yield number

    def focused(self, title, other=None):
        """The window of this title, but not the other, if it has the keyboard."""
        for number in self._values(self._root, "_NET_ACTIVE_WINDOW"):
            keyboard = getattr(self._x.get_input_focus().focus, "id", None)
            if keyboard == number != other and number in self._clients(title):
                return number
        return None

    def is_gone(self, number):
        return number not in self._values(self._root, "_NET_CLIENT_LIST")

    def popups(self):
        """Menus and lists that are open outside of the windows."""
        found = []
        for window in self._root.query_tree().children:
            with contextlib.suppress(BadWindow):
                shown = window.get_attributes().map_state == X.IsViewable
                found += [window.id] if shown and window.get_wm_class() else []
        return found

    def corner(self, number):
        at = self._root.translate_coords(number, 0, 0)
        return at.x, at.y

    def _fake(self, kind, detail=0, at=(0, 0)):
        xtest.fake_input(self._x, kind, detail, x=at[0], y=at[1])

    def move(self, place):
        self._fake(X.MotionNotify, at=place)
        self._x.sync()

    def button(self, number):
        """Of the mouse where it is: 3 is the right one, 4 and 5 are the wheel's."""
        self._fake(X.ButtonPress, number)
        self._fake(X.ButtonRelease, number)
        self._x.sync()

    def drag(self, *places, meanwhile=lambda: None):
        """Presses the mouse at the first place, goes to the others, does something and lets go.

        Menus and lists take all of the mouse, some until after they have gone: waits for that."""
        until(lambda: self._root.grab_pointer(
            False, 0, X.GrabModeAsync, X.GrabModeAsync, X.NONE, X.NONE, X.CurrentTime) ==
            X.GrabSuccess)
        self._x.ungrab_pointer(X.CurrentTime)
        self._fake(X.MotionNotify, at=places[0])
        self._fake(X.ButtonPress, 1)
        for place in places[1:]:
            self._fake(X.MotionNotify, at=place)
        self._x.sync()
        try:
            meanwhile()
        finally:
            self._fake(X.ButtonRelease, 1)
            self._x.sync()

    def click(self, place):
        self.drag(place)

    def click_close_box(self, number):
        """The rightmost box of the frame."""
        x, y = self.corner(number)
        self.click((x + self._window(number).get_geometry().width - 10, y - 10))

    def _press(self, symbols):
        codes = []
        for symbol in symbols:
            code, level = next(iter(self._x.keysym_to_keycodes(symbol)))
            codes += [self._x.keysym_to_keycode(XK.XK_Shift_L)] * level + [code]
        for code in codes:
            self._fake(X.KeyPress, code)
        for code in reversed(codes):
            self._fake(X.KeyRelease, code)
        self._x.sync()

    def keys(self, *names):
        """Presses keys such as "Return" and "Control_L+s"."""
        for name in names:
            self._press([XK.string_to_keysym(key) for key in name.split("+")])

    def type(self, text):
        for letter in text:
            self._press([ord(letter)])

    def picture(self, place=(0, 0, 1400, 1000)):
        """Left, top, width and height as an image."""
        _, _, width, height = place
        raw = self._root.get_image(*place, X.ZPixmap, 0xFFFFFFFF).data
        return Image.frombytes("RGB", (width, height), raw, "raw", "BGRX")

    def drop(self, number, path, place):
        """Drops a file on a window, which has to take it."""
        atom = self._x.intern_atom
        source = self._root.create_window(0, 0, 1, 1, 0, self._x.screen().root_depth)
        source.set_selection_owner(atom("XdndSelection"), X.CurrentTime)
        target = self._window(number)

        def tell(kind, *data):
            data = [source.id, *data, 0, 0, 0, 0][:5]
            target.send_event(event.ClientMessage(
                window=target, client_type=atom(kind), data=(32, data)))
            self._x.flush()

        def answer(kind):
            """The target's, if it has come; gives it the file meanwhile."""
            while self._x.pending_events():
                heard = self._x.next_event()
                if heard.type == X.ClientMessage and heard.client_type == atom(kind):
                    return heard.data[1]
                if heard.type == X.SelectionRequest:
                    heard.requestor.change_property(
                        heard.property, heard.target, 8, f"file://{path}\r\n".encode())
                    heard.requestor.send_event(event.SelectionNotify(
                        time=heard.time, requestor=heard.requestor, selection=heard.selection,
                        target=heard.target, property=heard.property))
                    self._x.flush()
            return None

        tell("XdndEnter", 5 << 24, atom("text/uri-list"))
        tell("XdndPosition", 0, place[0] << 16 | place[1], X.CurrentTime, atom("XdndActionCopy"))
        assert until(lambda: answer("XdndStatus"))[1] & 1, "the window does not take the file"
        tell("XdndDrop", 0, X.CurrentTime)
        until(lambda: answer("XdndFinished"))
        source.destroy()


def differing(one, other, tolerance):
    """Pixels of either picture whose colour is off from all in the 3 by 3 of the other."""
    off = Image.new("RGB", one.size)
    for a, b in ((one, other), (other, one)):
        low, high = (b.filter(kind(3)) for kind in (ImageFilter.MinFilter, ImageFilter.MaxFilter))
        beyond = ImageChops.add(ImageChops.subtract(low, a), ImageChops.subtract(a, high))
        off = ImageChops.lighter(off, beyond)
    worst = ImageChops.lighter(ImageChops.lighter(*off.split()[:2]), off.split()[2])
    return sum(worst.histogram()[tolerance + 1:])
