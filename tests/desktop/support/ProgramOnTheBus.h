// What other programs ask of the running program over the session bus.
#pragma once

class QString;

/// Opens its settings window, or brings it to the front.
void askForSettings();

/// Does what the keys of the entry with that id do.
void askToFire(const QString &id);

/// Chooses an item of its tray item's menu, as the desktop's panel does that shows the menu, by
/// whatever way the user has there.
void chooseInTray(const QString &item);
