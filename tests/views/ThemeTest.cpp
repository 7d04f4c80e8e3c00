#include "ViewsFixture.h"

#include <QColor>
#include <cmath>
#include <string>
#include <vector>

// The views are compiled into a static QML module.
#include <QQmlEngineExtensionPlugin>
Q_IMPORT_QML_PLUGIN(NavroPlugin)

namespace navro {
namespace {

double channel(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}

// The contrast ratio of two opaque colours, 1 to 21.
double contrast(const QColor& a, const QColor& b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(Contrast, MatchesKnownRatios)
{
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21.0, 1e-9);
    EXPECT_NEAR(contrast(QColor("#777777"), Qt::white), 4.48, 0.01);
    EXPECT_NEAR(contrast(QColor("#0062cc"), QColor("#0062cc")), 1.0, 1e-9);
}

class ThemeTest : public ViewsFixture {
protected:
    QColor color(const std::string& name) const
    {
        const QVariant value = singleton("theme")->property(name.c_str());
        EXPECT_TRUE(value.isValid()) << "the theme has no colour " << name;
        const QColor colour = value.value<QColor>();
        EXPECT_EQ(colour.alpha(), 255) << name << " must be opaque to be measured";
        return colour;
    }
};

// Every text colour against every background it is drawn on, in both themes: 4.5:1 for text,
// 3:1 for marks that are not text (rings, outlines).
TEST_F(ThemeTest, TextAndMarksStandOutFromTheirBackgroundsInBothThemes)
{
    struct Pair {
        std::string foreground;
        std::vector<std::string> backgrounds;
        double minimum;
    };
    const std::vector<std::string> windowSurfaces{"windowBackground", "sidebarBackground",
                                                  "cardBackground"};
    const std::vector<Pair> pairs{
        {"text",
         {"windowBackground", "sidebarBackground", "cardBackground", "buttonBackground",
          "buttonHover", "selection"},
         4.5},
        {"secondaryText",
         {"windowBackground", "sidebarBackground", "cardBackground", "buttonBackground",
          "selection"},
         4.5},
        {"accentText", windowSurfaces, 4.5},
        {"textOnAccent", {"accent", "notchAccentFill"}, 4.5},
        {"notchText", {"notchFill", "notchControl", "notchControlHover", "notchSelection"}, 4.5},
        {"notchSecondaryText", {"notchFill", "notchControl", "notchControlHover"}, 4.5},
        {"notchAccent", {"notchFill"}, 4.5},
        {"prayer", {"notchFill"}, 4.5},
        {"warning", {"notchFill"}, 4.5},
        {"music", {"notchFill"}, 4.5},
        {"success", {"notchFill"}, 4.5},
        {"overdue", {"notchFill", "notchControl"}, 4.5},
        // Priority flags are symbols.
        {"priorityHigh", {"notchFill", "notchControl"}, 3.0},
        {"priorityMedium", {"notchFill", "notchControl"}, 3.0},
        {"priorityLow", {"notchFill", "notchControl"}, 3.0},
        {"notchAccentFill", {"notchFill"}, 3.0},
        {"focusRing", windowSurfaces, 3.0},
        {"notchFocusRing", {"notchFill", "notchControl"}, 3.0},
        {"controlOutline", {"cardBackground"}, 3.0},
    };
    ASSERT_TRUE(singleton("theme"));
    for (const char* theme : {"light", "dark"}) {
        settings.setThemeRaw(QString::fromLatin1(theme));
        ASSERT_EQ(singleton("theme")->property("dark").toBool(), std::string(theme) == "dark");
        for (const Pair& pair : pairs) {
            for (const std::string& background : pair.backgrounds) {
                const double ratio = contrast(color(pair.foreground), color(background));
                EXPECT_GE(ratio, pair.minimum) << theme << ": " << pair.foreground << " on "
                                               << background << " is " << ratio << ":1";
            }
        }
    }
}

} // namespace
} // namespace navro
