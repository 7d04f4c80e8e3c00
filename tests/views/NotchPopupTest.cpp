#include "ViewsWindowFixture.h"

#include <QQuickItem>

namespace navro {
namespace {

// A menu of the notch: where it opens, and what closes it.
class NotchPopupTest : public ViewsWindowFixture {
protected:
    void SetUp() override
    {
        page = place("Item { id: page; property bool mirrored: false; property int pressesUnder: 0;"
                     " property int closings: 0;"
                     " property alias popup: popup; property alias origin: origin;"
                     " LayoutMirroring.enabled: mirrored; LayoutMirroring.childrenInherit: true;"
                     " property alias under: under;"
                     " Pressable { id: under; y: 150; width: 300; height: 50;"
                     "  onClicked: parent.pressesUnder++ }"
                     " Pressable { id: origin; x: 100; y: 10; width: 40; height: 20 }"
                     " NotchPopup { id: popup; margins: 8; onClosed: page.closings++;"
                     "  contentItem: Item { implicitWidth: 60; implicitHeight: 30 } } }");
        ASSERT_TRUE(page);
        popup = page->property("popup").value<QQuickItem*>();
        origin = page->property("origin").value<QQuickItem*>();
        ASSERT_TRUE(popup && origin);
        showWindow(QSize(300, 200));
    }

    // Opens the menu under the origin and says where its panel's top-left corner is.
    QPointF openBelowOrigin()
    {
        QMetaObject::invokeMethod(popup, "openBelow", Q_ARG(QVariant, QVariant::fromValue(origin)),
                                  Q_ARG(QVariant, 2));
        EXPECT_TRUE(popup->isVisible());
        const auto* content = popup->property("contentItem").value<QQuickItem*>();
        return content ? content->parentItem()->mapToScene(QPointF()) : QPointF(-1, -1);
    }

    QQuickItem* page = nullptr;
    QQuickItem* popup = nullptr;
    QQuickItem* origin = nullptr;
};

// Under its button, lined up with the edge reading starts from, and never past the window's
// margins.
TEST_F(NotchPopupTest, OpensUnderItsButtonFromTheEdgeReadingStartsAt)
{
    EXPECT_EQ(openBelowOrigin(), QPointF(100, 32)) << "left-to-right: the button's left edge";
    QMetaObject::invokeMethod(popup, "close");

    page->setProperty("mirrored", true);
    EXPECT_EQ(openBelowOrigin(), QPointF(140 - 60, 32)) << "mirrored: the button's right edge";
    QMetaObject::invokeMethod(popup, "close");

    origin->setX(20);
    EXPECT_EQ(openBelowOrigin(), QPointF(8, 32)) << "kept inside the window's margin";
}

// Nothing under the open panel shows the pointer's hover (nor a tool tip for it).
TEST_F(NotchPopupTest, WhatLiesUnderTheOpenPanelIsNotHovered)
{
    auto* under = page->property("under").value<QQuickItem*>();
    ASSERT_TRUE(under);
    openBelowOrigin();
    moveTo(QPointF(150, 170));
    EXPECT_FALSE(under->property("hovered").toBool());

    QMetaObject::invokeMethod(popup, "close");
    moveTo(QPointF(151, 171));
    EXPECT_TRUE(under->property("hovered").toBool()) << "hovered once the panel is closed";
}

// A press outside closes it and still reaches what lies under it; Escape closes it too.
TEST_F(NotchPopupTest, APressOutsideOrEscapeClosesIt)
{
    openBelowOrigin();
    click(QPointF(150, 175));
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(page->property("closings").toInt(), 1);
    EXPECT_EQ(page->property("pressesUnder").toInt(), 1);

    openBelowOrigin();
    click(QPointF(110, 40));
    EXPECT_TRUE(popup->isVisible()) << "a press on the panel keeps it open";
    press(Qt::Key_Escape);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(page->property("closings").toInt(), 2);
}

} // namespace
} // namespace navro
