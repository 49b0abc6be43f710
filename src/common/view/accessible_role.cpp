// Keeps the role in the widget, where the toolkit's question for it is answered.
#include "common/view/accessible_role.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace tonewright {
namespace {

constexpr const char *RoleProperty = "accessibleRole";

QAccessibleInterface *MakeWithRole(const QString & /*className*/, QObject *object) {
    auto *widget = qobject_cast<QWidget *>(object);
    const QVariant role = widget ? widget->property(RoleProperty) : QVariant();
    return role.isValid()
               ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()))
               : nullptr;
}

} // namespace

void SetAccessibleRole(QWidget &widget, QAccessible::Role role) {
    QAccessible::installFactory(MakeWithRole); // once, however often it is called
    widget.setProperty(RoleProperty, static_cast<int>(role));
}

} // namespace tonewright
