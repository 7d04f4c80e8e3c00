#include "ViewsWindowFixture.h"

#include <QQuickItem>

namespace navro {
namespace {

using PressableTest = ViewsWindowFixture;

// The ring shows for focus that came from the keyboard, never for a click's or a program's.
TEST_F(PressableTest, TheRingFollowsWhereTheFocusCameFrom)
{
    QQuickItem* first = place("Pressable { width: 40; height: 20 }");
    QQuickItem* second = place("Pressable { x: 60; width: 40; height: 20 }");
    ASSERT_TRUE(first && second);
    showWindow();

    first->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(first->property("visualFocus").toBool());
    second->forceActiveFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(first->property("visualFocus").toBool());
    EXPECT_FALSE(second->property("visualFocus").toBool());
    first->forceActiveFocus(Qt::BacktabFocusReason);
    EXPECT_TRUE(first->property("visualFocus").toBool());
    second->forceActiveFocus(Qt::OtherFocusReason);
    EXPECT_TRUE(second->hasActiveFocus());
    EXPECT_FALSE(second->property("visualFocus").toBool());

    // A click takes the focus, without a ring.
    first->forceActiveFocus(Qt::TabFocusReason);
    click(QPointF(80, 10));
    EXPECT_TRUE(second->hasActiveFocus());
    EXPECT_FALSE(second->property("visualFocus").toBool());
}

// Space, Return and Enter press it once per press, as a click does; a held Space does not repeat.
TEST_F(PressableTest, KeysAndClicksPressItOnce)
{
    QQuickItem* button = place("Pressable { width: 40; height: 20; property int presses: 0;"
                               " onClicked: presses++ }");
    ASSERT_TRUE(button);
    showWindow();
    button->forceActiveFocus(Qt::TabFocusReason);

    press(Qt::Key_Space);
    press(Qt::Key_Space, true);
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_EQ(button->property("presses").toInt(), 3);

    click(QPointF(20, 10));
    EXPECT_EQ(button->property("presses").toInt(), 4);
    click(QPointF(120, 10));
    EXPECT_EQ(button->property("presses").toInt(), 4);

    button->setEnabled(false);
    click(QPointF(20, 10));
    EXPECT_EQ(button->property("presses").toInt(), 4);
}

// A switch flipped by the user reports the new state with `toggled` and goes on following the
// setting its page bound it to, when the setting changes from elsewhere.
TEST_F(PressableTest, AFlippedSwitchKeepsFollowingItsSetting)
{
    QQuickItem* page = place("Item { property bool setting: false; property int toggles: 0;"
                             " property bool reported: false;"
                             " property alias control: control;"
                             " NavroSwitch { id: control; checked: parent.setting;"
                             "  onToggled: { parent.toggles++; parent.reported = checked } } }");
    ASSERT_TRUE(page);
    showWindow();
    auto* control = page->property("control").value<QQuickItem*>();
    ASSERT_TRUE(control);

    click(QPointF(20, 12));
    EXPECT_TRUE(control->property("checked").toBool());
    EXPECT_EQ(page->property("toggles").toInt(), 1);
    EXPECT_TRUE(page->property("reported").toBool());

    page->setProperty("setting", true);
    page->setProperty("setting", false);
    EXPECT_FALSE(control->property("checked").toBool());
    page->setProperty("setting", true);
    EXPECT_TRUE(control->property("checked").toBool());
}

} // namespace
} // namespace navro
