#pragma once

#include <QQuickItem>
#include <qqmlintegration.h>

namespace navro {

// What the views' own controls need from C++ and QML alone cannot give them: whether their
// keyboard focus came from the keyboard (Tab, Shift+Tab, a shortcut), for the focus ring, and a
// `checked` that flips without losing the binding a page set on it, so that a switch keeps
// following its setting after the user flipped it.
class PressableItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY checkedChanged)

public:
    explicit PressableItem(QQuickItem* parent = nullptr);

    bool visualFocus() const { return visualFocus_; }
    bool isChecked() const { return checked_; }
    void setChecked(bool checked);

    // Flips `checked` as the user's click does.
    Q_INVOKABLE void toggle();

signals:
    void visualFocusChanged();
    void checkedChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setVisualFocus(bool shown);

    bool visualFocus_ = false;
    bool checked_ = false;
};

} // namespace navro
