#include "settings/EntryRow.h"

#include "actions/ActionRunner.h"
#include "settings/Badge.h"
#include "settings/WarningLines.h"
#include "store/ShortcutStore.h"
#include "viewkit/AccessibleRole.h"
#include "viewkit/Layouts.h"

#include <QFontMetrics>
#include <QGraphicsOpacityEffect>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// Both are the design's.
constexpr qreal disabledOpacity = 0.55;
constexpr int symbolSide = 16;

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

/// Aligns the item with the upper edge of its row, lowered so that its first line is level with the
/// text of the buttons.
Item onFirstLine(std::function<int()> lineHeight, Item item)
{
    Column column{std::move(item)};
    column.rules.append([widget = column.widget, lineHeight = std::move(lineHeight)] {
        widget->setContentsMargins(0, (buttonHeight() - lineHeight()) / 2, 0, 0);
    });
    return alignTop(column);
}

Item badge(TextSource source, TextSource spoken)
{
    auto *const badge = new Badge;
    const Rule rule = [badge, source = std::move(source)] {
        if (const QString text = source(); badge->text() != text)
            badge->setText(text);
    };
    return onFirstLine([badge] { return badge->sizeHint().height(); },
                       described(std::move(spoken), widget(badge, rule)));
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
    const Item edit = button(u"Edit"_s, [this, onEdit = std::move(onEdit)] { onEdit(m_entry); });
    m_edit = edit.widget;
    setBody(Row{
        padding(12, 3),
        spacing(10),
        alignTop(toggle(u"Enabled"_s,
                        {
                            .get = [this] { return m_entry.isEnabled; },
                            .set = [this](bool isOn) { m_store.setEnabled(isOn, m_entry.id); },
                        })),
        onFirstLine(
            [] { return symbolSide; },
            fixedWidth(20,
                       tinted(TextColor::secondary,
                              symbol([this] { return symbolName(m_entry.kind); }, symbolSide)))),
        stretched(
            onFirstLine([] { return QFontMetrics(viewkit::font(TextStyle::headline)).height(); },
                        description())),
        enabledWhen([this] { return m_store.canRegisterKeys(); },
                    badge([this] { return m_store.shortcutText(m_entry); },
                          [this] { return m_store.spokenKeys(m_entry.shortcutName()); })),
        alignTop(edit),
        alignTop(destructiveButton(u"trash"_s, u"Delete"_s,
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
                      tinted(TextColor::error,
                             text(TextStyle::captionBold,
                                  [this] { return m_missingReason.value_or(QString()); }))),
            Spacer{},
        },
        tinted(TextColor::secondary,
               shortenedText(TextStyle::caption, [this] { return m_entry.targetDescription(); })),
        warningLines(TextStyle::caption,
                     [this] { return m_store.warnings(m_entry.shortcutName(), m_entry.id); }),
        shownWhen([this] { return !m_otherKeys.isEmpty(); },
                  tinted(TextColor::secondary,
                         paragraph(TextStyle::caption, [this] { return m_otherKeys; }))),
    };
}

void EntryRow::setEntry(const LaunchEntry &entry)
{
    m_entry = entry;
    m_missingReason = ActionRunner::missingReason(entry);
    m_otherKeys = m_store.otherKeys(entry.shortcutName());
    m_dimming->setEnabled(!entry.isEnabled);
    setAccessibleName(entry.name);
    refresh();
}
