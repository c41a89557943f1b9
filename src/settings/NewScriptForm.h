// The form that asks for the name of a new Shortcut, and makes it.
#pragma once

#include "viewkit/View.h"

#include <functional>
#include <optional>

class ShortcutLibrary;

class NewScriptForm : public viewkit::View
{
    Q_OBJECT

public:
    /// The callbacks close the form; the first one gets the name and the path of the new script.
    /// The library must outlive the form.
    NewScriptForm(ShortcutLibrary &library, const QString &proposedName,
                  std::function<void(const QString &name, const QString &path)> onCreate,
                  viewkit::Action onCancel);

    static QString title();

private:
    void create();

    ShortcutLibrary &m_library;
    const std::function<void(const QString &name, const QString &path)> m_onCreate;
    QString m_name;
    std::optional<QString> m_message;
};
