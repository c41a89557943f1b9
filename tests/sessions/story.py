"""The story of a user with Corvane in a whole desktop session. usage: story.py DESKTOP PICTURES"""
import os
import subprocess
import sys
import time

from user import *  # pylint: disable=wildcard-import,unused-wildcard-import

SCREEN = (0, 0, 1280, 800)
AUTOSTART = os.path.expanduser('~/.config/autostart/org.corvane.Corvane.desktop')
SCRIPT = os.path.expanduser('~/.local/share/shortcuts/Tidy Up')
desktop, pictures = sys.argv[1:]
called = {'xfce': 'Xfce', 'mate': 'MATE', 'lxqt': 'LXQt', 'cinnamon': 'Cinnamon', 'plasma': 'Plasma',
          'gnome': 'GNOME'}[desktop]
super_key = 'Meta' if desktop in ('plasma', 'lxqt') else 'Super'
# Keys that the desktop itself uses.
used_keys = {'lxqt': ('alt+F1', 'Alt+F1')}.get(desktop, ('alt+F4', 'Alt+F4'))
dark = {
    'xfce': 'xfconf-query -c xsettings -p /Net/ThemeName -s Adwaita-dark',
    'mate': 'gsettings set org.mate.interface gtk-theme BlackMATE',
    'cinnamon': 'gsettings set org.cinnamon.desktop.interface gtk-theme Adwaita-dark',
    'gnome': 'gsettings set org.gnome.desktop.interface color-scheme prefer-dark && '
             'gsettings set org.gnome.desktop.interface gtk-theme Adwaita-dark',
    'plasma': 'plasma-apply-colorscheme BreezeDark',
    'lxqt': r"printf '[Palette]\nwindow_color=#31363b\nbase_color=#232629\ntext_color=#eff0f1\n"
            r"window_text_color=#eff0f1\n' >>~/.config/lxqt/lxqt.conf",
}[desktop]
failures = 0
program = None


def see(condition, instead):
    if not condition:
        raise Failed(instead)


def picture(name):
    settled()
    grab(f'{pictures}/{len(os.listdir(pictures)) + 1:02}-{name}.png')


def step(name, tell):
    """Tells one step of the story and prints how it went."""
    global failures
    try:
        print(f'ok    {name}', *filter(None, [tell()]), sep=': ', flush=True)
    except (Failed, GLib.Error, LookupError) as error:
        failures += 1
        print(f'FAIL  {name}: {error}', flush=True)
        picture('failed')


def go_to(name):
    """Makes this window of Corvane the active one, and closes what earlier steps left open."""
    def is_there():
        open_now = [each for each in windows('.') if output('xdotool', 'getwindowpid', each).strip()
                    == str(program.pid)]
        others = [each for each in open_now if title(each) not in ('Corvane', name)]
        wanted = [each for each in open_now if title(each) == name]
        active = str(active_window())
        if active in others:
            key('Escape')
        elif others or active not in wanted:
            for window in (others or wanted)[:1]:
                output('timeout', '2', 'xdotool', 'windowactivate', '--sync', window)
                if str(active_window()) != window:
                    # KWin may take it for active; another window, the desktop, helps.
                    click((SCREEN[2] - 10, 400))
                    output('timeout', '2', 'xdotool', 'windowactivate', '--sync', window)
        return not others and active in wanted
    until(is_there, 10, f'there is no way to the window "{name}"')


def desktop_is_drawn():
    """Whether there is more than an empty screen, and it stays the same for two seconds."""
    before = grab()
    time.sleep(2)  # splash screens change faster
    return colors(SCREEN) > 30 and grab() == before


def first_window():
    global program
    until(shows_tray_items, 30, 'the desktop shows no tray items')
    until(desktop_is_drawn, 30, 'the desktop does not come to rest')
    if desktop == 'gnome':
        settled()
        key('Escape')  # it starts with the overview
    program = subprocess.Popen(['corvane'])
    window = await_window('Corvane', 20)
    until(lambda: colors(extents(find('Corvane', 'frame'))) > 20, otherwise='the window stays empty')
    picture('welcome')
    left, top, right, bottom = frame(window)
    see(left >= 0 and top >= 0 and right <= SCREEN[2] and bottom <= SCREEN[3],
        f'the window reaches from {left},{top} to {right},{bottom}')
    heights = {item.name: extents(item)[3] for item in controls('.+', 'label', 'corvane')}
    width = extents(find('Corvane', 'frame'))[2]
    output('xdotool', 'windowsize', str(window), str(width), '760')
    settled()
    squeezed = [item.name for item in controls('.+', 'label', 'corvane')
                if extents(item)[3] > heights[item.name]]
    output('xdotool', 'windowsize', str(window), str(width), str(bottom - top))
    press('Got it')
    see(not squeezed, f'these texts were squeezed: {squeezed}')


def first_entry():
    go_to('Corvane')
    press('Add')
    await_window('New shortcut')
    press('Choose…')
    await_window('Choose App')
    write('mousepad')
    find('Mousepad', 'list item')
    picture('apps')
    key('Return')
    await_window('New shortcut')
    until(lambda: [item for item in controls('.*', within='corvane') if has_focus(item)], 3,
          'nothing has the focus')
    before = focused()
    key('Tab')
    until(lambda: focused() != before, 3, f'Tab does not move the focus from "{before}"')
    return f'the focus went from "{before}" to "{focused()}"'


def focused():
    return [item.name or item.getRoleName() for item in controls('.*', within='corvane') if has_focus(item)]


def record(keys, text):
    """Records keys in the open editor, and returns the warning about them."""
    press('Record Shortcut|([A-Z][a-z]+\\+)+.')
    find('Press the keys…')
    key(keys)
    find(text.replace('+', '\\+'), 'push button')
    return sorted({label for label in labels() if label.startswith(text + ' ')})  # the list has them, too


def recording():
    go_to('New shortcut')
    record('ctrl+alt+j', 'Ctrl+Alt+J')
    picture('recorded')
    await_window('New shortcut', 3)


def saving():
    go_to('New shortcut')
    key('Return')
    await_window('Corvane')
    find('Mousepad', 'list item')
    picture('list')


def firing():
    go_to('Corvane')
    key('ctrl+alt+j')
    window = await_window('.*Mousepad')
    picture('fired')
    key('alt+F4')
    until(lambda: active_window() != window, otherwise='Mousepad does not close')
    settled()
    see(not windows('Mousepad$'), 'there was another window of Mousepad')
    until(lambda: title(active_window()) == 'Corvane', otherwise=lambda:
          f'then the active window was "{title(active_window())}"')


def super_keys():
    go_to('Corvane')
    press('Edit')
    await_window('Edit shortcut')
    warnings = record('super+j', f'{super_key}+J')
    picture('super')
    opened = {'gnome': 'overview', 'cinnamon': 'menu'}.get(desktop)
    wanted = [f'Super+J does not reach apps on {called} while the Super key alone opens the '
              f'{opened}.'] if opened else []
    see(warnings == wanted, f'the warnings were {warnings}')


def desktops_keys():
    go_to('Edit shortcut')
    keys, text = used_keys
    warnings = record(keys, text)
    picture('used')
    see(len(warnings) == 1 and re.fullmatch(
        re.escape(f'{text} is already used by {called}') + r'( \(.+\))?\. It may not work\.',
        warnings[0]), f'the warnings were {warnings}')
    return warnings[0]


def cancelling():
    go_to('Edit shortcut')
    press('Cancel')
    await_window('Corvane')
    find('.*Ctrl\\+Alt\\+J', 'label')


def tray_icon():
    """Finds the icon: it is what changes on the screen when the user pauses all shortcuts."""
    def change():
        settled()
        before = grab()
        choose_in_tray('Pause all shortcuts')
        until(lambda: grab() != before, 5, 'pausing does not change the icon')
        settled()
        area = changed_area(before, grab(), SCREEN[2])
        choose_in_tray('Pause all shortcuts')
        return area if area and max(area[2:]) < 50 else None
    see(tray_item(), 'the desktop has no item of Corvane')
    output('xdotool', 'mousemove', '20', '400')  # or the icon's tool tip would change, too
    left, top, width, height = until(change, 20, 'the icon was not found')
    return left + width // 2, top + height // 2


def tray_menu(button):
    """Opens the menu, which must be near the pointer, and returns what it covers of the screen."""
    place = tray_icon()
    before = grab()
    click(place, button)
    changed = lambda: changed_area(before, grab(), SCREEN[2]) or (0, 0, 0, 0)
    until(lambda: min(changed()[2:]) > 80, otherwise='no menu opens')
    picture(f'tray-{("left", "middle", "right")[button - 1]}')
    left, top, width, height = changed()
    if not (left - 60 < place[0] < left + width + 60 and top - 60 < place[1] < top + height + 60):
        key('Escape')
        raise Failed(f'the menu is at {left},{top}, the icon at {place[0]},{place[1]}')
    return left, top, width, height


def left_click():
    go_to('Corvane')
    press('Show a small notification when a shortcut runs')  # its bubble may cover the menu
    tray_menu(1)
    key('Down', 'Return')
    await_window('.*Mousepad')
    key('alt+F4')
    await_window('Corvane')


def right_click():
    tray_menu(3)
    key('Escape')
    await_window('Corvane')


def app_icons():
    go_to('Corvane')
    press('Add')
    await_window('New shortcut')
    press('Choose…')
    await_window('Choose App')
    picture('icons')
    rows = controls('.+', 'list item', find('Apps').getApplication().name)
    panel = extents(find('Apps'))
    empty = []
    for row in rows:
        x, y, w, h = extents(row)
        if y >= panel[1] and y + h <= panel[1] + panel[3] and colors((x + 2, y + 2, 28, h - 4)) < 2:
            empty.append(row.name)
    see(not empty, f'these have no icon: {empty}')


def file_panel(button):
    go_to('Corvane')
    window = active_window()
    press(button)
    panel = until(lambda: active_window() not in (0, window) and active_window(),
                  otherwise='no panel becomes active')
    picture(button.strip('…').lower())
    left, top, right, bottom = frame(panel)
    key('Escape')
    await_window('Corvane')
    see(left >= 0 and top >= 0 and right <= SCREEN[2] and bottom <= SCREEN[3],
        f'the panel reaches from {left},{top} to {right},{bottom}')


def launch_at_login():
    go_to('Corvane')
    press('Launch at login')
    until(lambda: os.path.exists(AUTOSTART), otherwise='there is no file')
    until(lambda: find('Launch at login').getState().contains(pyatspi.STATE_CHECKED),
          otherwise='it is not shown as on')


def new_script():
    go_to('Corvane')
    press('Add')
    await_window('New shortcut')
    key('Tab', 'Down', 'Down', 'Down')
    press('New…')
    await_window('New script')
    write('Tidy Up')
    key('Return')
    window = await_window('.*Tidy Up.*Mousepad')
    picture('script')
    see(os.access(SCRIPT, os.X_OK), 'the script is not executable')
    key('alt+F4')
    until(lambda: active_window() != window, otherwise='Mousepad does not close')
    go_to('New shortcut')
    press('Cancel')
    await_window('Corvane')


def second_start():
    key('ctrl+alt+j')
    await_window('.*Mousepad')
    status = subprocess.run(['corvane'], check=False, timeout=10).returncode
    await_window('Corvane')
    picture('second-start')
    see(status == 0, f'the second program ended with {status}')


def open_app():
    key('ctrl+alt+j')
    await_window('.*Mousepad')
    settled()
    see(len(windows('Mousepad$')) == 1, 'there is another window of Mousepad')
    subprocess.run(['corvane'], check=False, timeout=10)
    await_window('Corvane')


def going_dark():
    go_to('Corvane')
    x, y, w, h = extents(find('Corvane', 'frame'))
    see(brightness((x, y, w, h)) > 0.5, 'the window was dark before')
    subprocess.run(dark, shell=True, check=False, capture_output=True)
    until(lambda: brightness((x, y, w, h)) < 0.4, otherwise=lambda:
          f'the window has a brightness of {brightness((x, y, w, h)):.2f}')
    picture('dark')


def dark_menu():
    own_windows = lambda: output('xdotool', 'search', '--onlyvisible', '--pid', str(program.pid))
    before = own_windows()
    tone = brightness(tray_menu(1))
    is_ours = own_windows() != before
    key('Escape')
    await_window('Corvane')
    see(tone < 0.5 or not is_ours, f'the menu has a brightness of {tone:.2f}')
    return None if is_ours else f'the desktop draws the menu, with a brightness of {tone:.2f}'


def quitting():
    tray_menu(3)
    if desktop == 'gnome':  # the submenu of the extension does not wrap around
        key('Down', 'Down', 'Down', 'Down', 'Return')
    else:
        key('Up', 'Return')
    until(lambda: program.poll() is not None, otherwise='the program still runs')
    see(program.returncode == 0, f'the program ended with {program.returncode}')
    until(lambda: not tray_item(), otherwise='the tray item is still there')
    picture('end')


step('the first window shows all its texts within the screen', first_window)
step('after the choice of an app the editor has the focus', first_entry)
step('recorded keys leave the editor active', recording)
step('Return saves the entry', saving)
step('the keys open the app once, in front', firing)
step(f'{super_key}+J is warned of if the desktop keeps it', super_keys)
step(f'keys of the desktop are warned of: {used_keys[1]}', desktops_keys)
step('Cancel keeps the former keys', cancelling)
step('a left click on the tray icon opens the menu, which opens the app', left_click)
step('a right click on the tray icon opens the menu', right_click)
step('apps have icons', app_icons)
step('the panel of Import lies within the screen', lambda: file_panel('Import…'))
step('the panel of Export lies within the screen', lambda: file_panel('Export…'))
step('Launch at login writes the file and is shown as on', launch_at_login)
step('a new script opens in the text editor, in front', new_script)
step('a second start brings the window to the front', second_start)
step('the keys bring the open app to the front', open_app)
step('the window follows the desktop into the dark', going_dark)
step('the tray menu does so, too', dark_menu)
step('Quit ends the program and removes the tray icon', quitting)
if program.poll() is None:
    program.kill()
sys.exit(1 if failures else 0)
