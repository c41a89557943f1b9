"""What a user does and sees in a session: keys, clicks, windows, controls, pictures and the tray."""
import re
import subprocess
import time

import gi
import pyatspi
from gi.repository import Gio, GLib


class Failed(Exception):
    """Says what was seen instead."""


def until(condition, seconds=10, otherwise='it never came true'):
    """Waits until the condition holds and returns its value. Otherwise may be a function, too."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failed(otherwise() if callable(otherwise) else otherwise)
        time.sleep(0.05)


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


def key(*keys):
    output('xdotool', 'key', '--delay', '60', *keys)


def write(text):
    output('xdotool', 'type', '--delay', '40', text)


def click(place, button=1):
    output('xdotool', 'mousemove', str(place[0]), str(place[1]), 'click', str(button))


# Windows

def active_window():
    """The number of the active window; 0 if none is active."""
    return int((re.findall('0x[0-9a-f]+', output('xprop', '-root', '_NET_ACTIVE_WINDOW')) or ['0'])[0], 16)


def title(window):
    return output('xdotool', 'getwindowname', str(window)).strip() if window else 'no window'


def await_window(name, seconds=10):
    """Waits until a window with this title is the active one."""
    until(lambda: re.fullmatch(name, title(active_window())), seconds,
          lambda: f'the active window is "{title(active_window())}", not "{name}"')
    return active_window()


def windows(name):
    return output('xdotool', 'search', '--onlyvisible', '--name', name).split()


def frame(window):
    """Left, top, right and bottom of the window with its frame, without an invisible border."""
    about = output('xwininfo', '-frame', '-id', str(window))
    x, y, w, h = (int(re.search(what + r': +(-?\d+)', about)[1]) for what in
                  ('Absolute upper-left X', 'Absolute upper-left Y', 'Width', 'Height'))
    shadow = re.findall(r'\d+', output('xprop', '-id', str(window), '_GTK_FRAME_EXTENTS').partition('=')[2])
    left, right, top, bottom = map(int, shadow or (0, 0, 0, 0))
    return x + left, y + top, x + w - right, y + h - bottom


# Controls, through AT-SPI

def applications():
    """Those with windows. There are two of each name where a theme of GTK is loaded by Qt."""
    found = []
    for each in pyatspi.Registry.getDesktop(0):
        try:
            if each and each.childCount:
                found.append(each)
        except GLib.Error:
            pass  # it has ended meanwhile
    return found


def walk(item):
    """The control and all showing ones in it."""
    try:
        yield item
        for child in item:
            if child and child.getState().contains(pyatspi.STATE_SHOWING):
                yield from walk(child)
    except (GLib.Error, LookupError, TypeError):  # it has gone meanwhile
        return


def controls(name, role=None, within=None):
    """The showing controls whose name matches as a whole. Labels only if that role is wanted."""
    found = []
    for top in [each for each in applications() if within is None or each.name == within]:
        for item in walk(top):
            try:
                its_role = item.getRoleName()
                fits = its_role == role if role else its_role not in ('label', 'filler', 'frame', 'dialog')
                if fits and re.fullmatch(name, item.name or '', re.DOTALL):
                    found.append(item)
            except (GLib.Error, LookupError):
                pass
    return found


def find(name, role=None, within='corvane', seconds=10):
    return until(lambda: controls(name, role, within), seconds, f'there is no "{name}"')[-1]


def extents(item):
    box = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return box.x, box.y, box.width, box.height


def middle(item):
    x, y, w, h = extents(item)
    return x + w // 2, y + h // 2


def has_focus(item):
    return item.getState().contains(pyatspi.STATE_FOCUSED)


def press(name):
    """Presses the button, box or switch with the space bar."""
    item = until(lambda: [each for each in controls(name, within='corvane')
                          if each.getState().contains(pyatspi.STATE_FOCUSABLE)],
                 otherwise=f'there is no "{name}"')[-1]
    item.queryComponent().grabFocus()
    until(lambda: has_focus(item), 3, f'"{name}" does not take the focus')
    key('space')


def labels():
    return [item.name for item in controls('.+', 'label', 'corvane')]


# Pictures

def grab(file=None, area=None):
    """A picture of the screen, or of x, y, width, height of it, as a file or as bytes."""
    crop = ['-crop', '{2}x{3}+{0}+{1}'.format(*area)] if area else []
    return subprocess.run(['import', '-window', 'root', '-depth', '8', *crop, file or 'rgb:-'],
                          capture_output=True, check=False).stdout


def settled(area=None):
    """Waits until the picture does not change any more, as menus and windows fade in."""
    last = [b'']

    def is_same():
        before, last[0] = last[0], grab(area=area)
        return before == last[0]
    try:
        until(is_same, 3)
    except Failed:
        pass  # something blinks


def brightness(area):
    pixels = grab(area=area)
    return sum(pixels) / len(pixels) / 255


def colors(area):
    pixels = grab(area=area)
    return len({pixels[i:i + 3] for i in range(0, len(pixels), 3)})


def changed_area(before, after, width):
    """Left, top, width and height of what differs between two pictures of this width; or None."""
    places = [i // 3 for i in range(0, len(before), 3) if before[i:i + 3] != after[i:i + 3]]
    if not places:
        return None
    columns = [place % width for place in places]
    top, bottom = places[0] // width, places[-1] // width
    return min(columns), top, max(columns) - min(columns) + 1, bottom - top + 1


# The tray, over the bus

def call(name, path, interface, method, arguments=None):
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    return bus.call_sync(name, path, interface, method, arguments, None, 0, 5000, None).unpack()


def watched(name):
    """A property of the desktop's list of tray items; None if it has no such list."""
    try:
        return call('org.kde.StatusNotifierWatcher', '/StatusNotifierWatcher',
                    'org.freedesktop.DBus.Properties', 'Get',
                    GLib.Variant('(ss)', ('org.kde.StatusNotifierWatcher', name)))[0]
    except GLib.Error:
        return None


def shows_tray_items():
    return watched('IsStatusNotifierHostRegistered')


def tray_item():
    """The bus name of Corvane's tray item; None if the desktop has none."""
    for item in watched('RegisteredStatusNotifierItems') or []:
        owner, path = re.fullmatch('([^@/]*)@?/?(.*)', item).groups()
        try:
            identity, = call(owner, '/' + (path or 'StatusNotifierItem'),
                             'org.freedesktop.DBus.Properties', 'Get',
                             GLib.Variant('(ss)', ('org.kde.StatusNotifierItem', 'Id')))
        except GLib.Error:
            continue
        if 'corvane' in identity.lower():
            return owner
    return None


def choose_in_tray(label):
    """Chooses from the tray item's menu as panels do."""
    owner = tray_item()
    _, (_, _, items) = call(owner, '/MenuBar', 'com.canonical.dbusmenu', 'GetLayout',
                            GLib.Variant('(iias)', (0, 1, [])))
    number = next(number for number, properties, _ in items if properties.get('label') == label)
    call(owner, '/MenuBar', 'com.canonical.dbusmenu', 'Event',
         GLib.Variant('(isvu)', (number, 'clicked', GLib.Variant('i', 0), 0)))
