#include "settings/UndoLine.h"

#include "foundation/Text.h"
#include "store/ShortcutStore.h"

#include <QWidget>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
constexpr QChar leftToRightMark(0x200E);

QString whatCanBeUndone(const ShortcutStore &store)
{
    const auto undoable = store.undoable();
    if (!undoable)
        return {};
    if (!undoable->deleted)
        return u"The keys of all entries were removed."_s;
    const QString &name = undoable->deleted->name;
    if (name.isEmpty())
        return u"An entry was deleted."_s;
    // The sentence is English, whichever direction the name has.
    const QString mark = name.isRightToLeft() ? QString(leftToRightMark) : QString();
    return mark + u"%1 was deleted."_s.arg(quoted(name));
}

Item undoMessage(const ShortcutStore &store)
{
    Item message =
        announced(shortenedText(TextStyle::body, [&store] { return whatCanBeUndone(store); }));
    // Hide the former message first: screen readers announce a message only when it appears.
    const auto shown = std::make_shared<std::optional<ShortcutStore::Undoable>>();
    message.rules.prepend([&store, label = message.widget, shown] {
        const auto undoable = store.undoable();
        if (std::exchange(*shown, undoable) != undoable)
            label->hide();
    });
    return shownWhen([&store] { return store.undoable().has_value(); }, message);
}
} // namespace

Item undoLine(const ShortcutStore &store, Action undo, QWidget &next)
{
    const Item button = described([&store] { return whatCanBeUndone(store); },
                                  decisiveButton(u"Undo"_s, std::move(undo)));
    Item line = Column{
        divider(),
        Row{padding(12, 8), spacing(8), undoMessage(store), Spacer{}, button},
    };
    // Otherwise the focus would move from the button to the next control, which does something
    // else.
    line.rules.append([&store, &next, button = button.widget] {
        if (!store.undoable() && button->window()->focusWidget() == button)
            next.setFocus();
    });
    return shownWhen([&store] { return store.undoable().has_value(); }, line);
}
