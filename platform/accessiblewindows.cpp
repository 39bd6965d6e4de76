#include "platform/accessiblewindows.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace zelvan {

namespace {

// Asked for each class of an object's ancestry, most derived first: this
// answers at the plain widget, after every class with an interface of its own
// (dialogs, main windows, menus and popups among them) has had its turn.
QAccessibleInterface* windowInterface(const QString& className, QObject* object) {
    if (className != QLatin1String("QWidget") || !object->isWidgetType()) return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    if (widget->windowType() != Qt::Window) return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Window);
}

}  // namespace

void presentWindowsToScreenReaders() {
    QAccessible::installFactory(windowInterface);
}

}  // namespace zelvan
