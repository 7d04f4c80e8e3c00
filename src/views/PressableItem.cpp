#include "PressableItem.h"

#include <QFocusEvent>

namespace navro {

PressableItem::PressableItem(QQuickItem* parent) : QQuickItem(parent) {}

void PressableItem::setChecked(bool checked)
{
    if (checked == checked_)
        return;
    checked_ = checked;
    emit checkedChanged();
}

void PressableItem::toggle()
{
    setChecked(!checked_);
}

void PressableItem::focusInEvent(QFocusEvent* event)
{
    QQuickItem::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    setVisualFocus(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                   reason == Qt::ShortcutFocusReason);
}

void PressableItem::focusOutEvent(QFocusEvent* event)
{
    QQuickItem::focusOutEvent(event);
    setVisualFocus(false);
}

void PressableItem::setVisualFocus(bool shown)
{
    if (shown == visualFocus_)
        return;
    visualFocus_ = shown;
    emit visualFocusChanged();
}

} // namespace navro
