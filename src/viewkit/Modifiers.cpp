#include "viewkit/Item.h"

#include "viewkit/AccessibleRole.h"
#include "viewkit/Card.h"
#include "viewkit/Tint.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>

namespace viewkit
{

namespace
{
/// Adds an invisible child whose name screen readers announce when it appears, whatever the role of
/// the widget itself.
QWidget *noticeOn(QWidget *widget)
{
    auto *const notice = new QWidget(widget);
    setAccessibleRole(*notice, QAccessible::Notification);
    notice->setAttribute(Qt::WA_TransparentForMouseEvents);
    notice->resize(1, 1);
    return notice;
}

/// Lets a function handle a widget's key events of one type. It returns whether it has done so.
class KeyFilter final : public QObject
{
public:
    using Handler = std::function<bool(QKeyEvent &event)>;

    KeyFilter(QEvent::Type type, Handler handler, QWidget *widget)
        : QObject(widget)
        , m_type(type)
        , m_handler(std::move(handler))
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->type() == m_type && m_handler(*static_cast<QKeyEvent *>(event));
    }

private:
    const QEvent::Type m_type;
    const Handler m_handler;
};
} // namespace

Item widget(QWidget *widget, Rule rule)
{
    Item item{.widget = widget};
    if (rule)
        item.rules.append(std::move(rule));
    return item;
}

Item tinted(TextColor textColor, Item item)
{
    // Use WindowText, whatever surface the item lies on.
    item.widget->setForegroundRole(QPalette::WindowText);
    item.rules.append(tint(item.widget, QPalette::WindowText, textColor));
    return item;
}

Item styled(TextStyle style, Item item)
{
    item.rules.append([widget = item.widget, style] {
        if (const QFont wanted = font(style); widget->font() != wanted)
            widget->setFont(wanted);
    });
    return item;
}

Item announced(Item item)
{
    auto *const label = qobject_cast<QLabel *>(item.widget);
    Q_ASSERT(label);
    item.rules.append([label, notice = noticeOn(label)] {
        if (notice->accessibleName() != label->text())
            notice->setAccessibleName(label->text());
    });
    return item;
}

Item described(TextSource description, Item item)
{
    item.rules.append([widget = item.widget, description = std::move(description)] {
        if (const QString text = description(); widget->accessibleDescription() != text)
            widget->setAccessibleDescription(text);
    });
    return item;
}

Item onKey(Qt::Key key, Action action, Item item)
{
    const auto act = [key, action = std::move(action)](const QKeyEvent &press) {
        const bool isIt = press.key() == key && !(press.modifiers() & ~Qt::KeypadModifier);
        if (isIt)
            action();
        return isIt;
    };
    new KeyFilter(QEvent::KeyPress, act, item.widget);
    return item;
}

Item leavingKeys(QKeySequence::StandardKey keys, Predicate isLeft, Item item)
{
    // Ignore the widget's claim to keys that are a shortcut of its window too.
    const auto leave = [keys, isLeft = std::move(isLeft)](QKeyEvent &claim) {
        const bool leaves = claim.matches(keys) && isLeft();
        if (leaves)
            claim.ignore();
        return leaves;
    };
    new KeyFilter(QEvent::ShortcutOverride, leave, item.widget);
    return item;
}

Item announcedChanges(Item item)
{
    auto *const button = qobject_cast<QAbstractButton *>(item.widget);
    Q_ASSERT(button);
    item.rules.append([button, notice = noticeOn(button)] {
        if (notice->accessibleName() == button->text())
            return;
        // Hide it first: screen readers announce a message only when it appears.
        notice->hide();
        notice->setAccessibleName(button->text());
        notice->setVisible(button->isVisible() && !button->hasFocus());
    });
    return item;
}

Item card(Item item)
{
    item.widget = new Card(item.widget);
    return item;
}

Item shownWhen(Predicate isShown, Item item)
{
    // The item's other rules run first, so that a label has its text when it is shown.
    item.rules.append([widget = item.widget, isShown = std::move(isShown)] {
        if (const bool wanted = isShown(); widget->isHidden() == wanted)
            widget->setVisible(wanted);
    });
    return item;
}

Item enabledWhen(Predicate isEnabled, Item item)
{
    item.rules.append([widget = item.widget, isEnabled = std::move(isEnabled)] {
        widget->setEnabled(isEnabled());
    });
    return item;
}

Item stretched(Item item)
{
    item.stretch = 1;
    return item;
}

Item fixedWidth(int width, Item item)
{
    item.widget->setFixedWidth(width);
    return item;
}

Item alignTop(Item item)
{
    item.alignment = Qt::AlignTop;
    return item;
}

Item centredLines(Item item)
{
    if (auto *const label = qobject_cast<QLabel *>(item.widget))
        label->setAlignment(Qt::AlignCenter);
    return item;
}

Item centred(Item item)
{
    item = centredLines(std::move(item));
    // An alignment of the item itself would not take wrapped text into account.
    return Row{Spacer{}, std::move(item), Spacer{}};
}

} // namespace viewkit
