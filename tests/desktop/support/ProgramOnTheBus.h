// What other programs ask of the running program over the session bus.
#pragma once

class QString;

/// Opens its settings window, or brings it to the front.
void askForSettings();

/// Does what the keys of the entry with that id do.
void askToFire(const QString &id);
