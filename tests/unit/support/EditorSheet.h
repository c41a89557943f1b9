// The editor on the screen, over a store on fakes.
#pragma once

#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "settings/EditorForm.h"
#include "store/ShortcutStore.h"
#include "support/Seen.h"
#include "viewkit/Sheet.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

/// The sheet for an entry, over a window, as the settings open it.
struct EditorSheet {
    explicit EditorSheet(const LaunchEntry &edited)
        : entry(edited)
    {
    }

    void open()
    {
        form = new EditorForm(platform.services, store, entry, [this] { ++closings; });
        sheet = new viewkit::Sheet(
            form->title(), form, [this] { form->cancel(); }, &window);
        window.show();
        sheet->open();
        if (!QTest::qWaitForWindowActive(sheet))
            qFatal("the sheet does not become active");
    }

    QLineEdit *field(const QString &name) const
    {
        return qobject_cast<QLineEdit *>(seen(*form, QAccessible::EditableText, name));
    }
    QPushButton *button(const QString &label) const
    {
        return qobject_cast<QPushButton *>(seenButton(*form, label));
    }
    bool shows(const QString &text) const { return seenTexts(*form).contains(text); }

    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    ShortcutStore store{platform.services, center};
    const LaunchEntry entry;
    QWidget window;
    QPointer<viewkit::Sheet> sheet;
    EditorForm *form = nullptr;
    int closings = 0;
};
