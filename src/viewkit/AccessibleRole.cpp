#include "viewkit/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace viewkit
{

namespace
{
constexpr auto roleProperty = "corvaneAccessibleRole";

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    const QVariant role = object->property(roleProperty);
    auto *const widget = qobject_cast<QWidget *>(object);
    if (!widget || !role.isValid())
        return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Role(role.toInt()));
}
} // namespace

void setAccessibleRole(QWidget &widget, QAccessible::Role role)
{
    // Qt installs each factory only once, so repeated calls are harmless.
    QAccessible::installFactory(makeInterface);
    widget.setProperty(roleProperty, int(role));
}

} // namespace viewkit
