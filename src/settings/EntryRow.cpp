#include "settings/EntryRow.h"

#include "actions/ActionRunner.h"
#include "model/ShortcutStore.h"
#include "settings/Badge.h"
#include "settings/WarningLines.h"
#include "viewkit/AccessibleRole.h"

#include <QGraphicsOpacityEffect>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal disabledOpacity = 0.55;

QString symbolName(ActionKind kind)
{
    switch (kind) {
    case ActionKind::app:
        return u"app.badge"_s;
    case ActionKind::path:
        return u"folder"_s;
    case ActionKind::website:
        return u"globe"_s;
    case ActionKind::shortcut:
        return u"square.stack.3d.up"_s;
    }
    Q_UNREACHABLE();
}

Item badge(TextSource source)
{
    auto *const badge = new Badge;
    return part(badge, [badge, source = std::move(source)] {
        if (const QString text = source(); badge->text() != text)
            badge->setText(text);
    });
}
} // namespace

EntryRow::EntryRow(ShortcutStore &store, EntryAction onEdit, EntryAction onDelete, QWidget *parent)
    : View(parent)
    , m_store(store)
    , m_dimming(new QGraphicsOpacityEffect(this))
{
    setAccessibleRole(*this, QAccessible::ListItem);
    m_dimming->setOpacity(disabledOpacity);
    setGraphicsEffect(m_dimming);
    setBody(Row{
        padding(12, 3),
        spacing(10),
        onTop(toggle(u"Enabled"_s,
                     {
                         .get = [this] { return m_entry.isEnabled; },
                         .set = [this](bool isOn) { m_store.setEnabled(isOn, m_entry.id); },
                     })),
        onTop(framed(
            20, inked(Ink::secondary, symbol([this] { return symbolName(m_entry.kind); }, 16)))),
        onTop(stretched(description())),
        onTop(badge([this] { return m_store.shortcutText(m_entry); })),
        onTop(button(u"Edit"_s, [this, onEdit = std::move(onEdit)] { onEdit(m_entry); })),
        onTop(destructiveButton(u"trash"_s, u"Delete"_s,
                                [this, onDelete = std::move(onDelete)] { onDelete(m_entry); })),
    });
}

Item EntryRow::description()
{
    return Column{
        spacing(2),
        Row{
            spacing(6),
            shortenedText(TextStyle::headline, [this] { return m_entry.name; }),
            shownWhen([this] { return m_missingReason.has_value(); },
                      inked(Ink::error,
                            text(TextStyle::captionBold,
                                 [this] { return m_missingReason.value_or(QString()); }))),
            Spacer{},
        },
        inked(Ink::secondary,
              shortenedText(TextStyle::caption, [this] { return m_entry.targetDescription(); })),
        warningLines(TextStyle::caption, [this] { return warnings(); }),
    };
}

QStringList EntryRow::warnings() const
{
    return m_store.warnings(m_entry.shortcutName(), m_entry.id);
}

void EntryRow::setEntry(const LaunchEntry &entry)
{
    m_entry = entry;
    m_missingReason = ActionRunner::missingReason(entry);
    m_dimming->setEnabled(!entry.isEnabled);
    setAccessibleName(entry.name);
    refresh();
}
