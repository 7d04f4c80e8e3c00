#include "media/ArtworkImage.h"

#include "QtTestApplication.h"

#include <QBuffer>
#include <QPainter>
#include <gtest/gtest.h>

namespace navro {
namespace {

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage filled(QSize size, QColor colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

TEST(ArtworkTint, TheMeanColourOfEveryTwelfthOfTheImageTakenThirtyFivePercentTowardWhite)
{
    testApplication();
    const struct {
        QColor colour;
        QColor expected;
    } cases[] = {
        {QColor(0xc0, 0x30, 0x20), QColor(0xd6, 0x78, 0x6e)},
        {Qt::black, QColor(89, 89, 89)},
        {Qt::white, Qt::white},
        {QColor(0x0a, 0x84, 0xff), QColor(0x60, 0xaf, 0xff)},
    };
    for (const auto& c : cases) {
        const auto tint = artworkTint(filled({30, 20}, c.colour));
        ASSERT_TRUE(tint) << c.colour.name().toStdString();
        EXPECT_EQ(tint->name(), c.expected.name()) << c.colour.name().toStdString();
        EXPECT_EQ(tint->alphaF(), 1.0f);
    }

    // 24 wide: the step is 2, so only the even columns count. They are black, the odd ones
    // white: the tint is the one of black alone.
    QImage stripes = filled({24, 24}, Qt::white);
    for (int x = 0; x < 24; x += 2)
        for (int y = 0; y < 24; ++y)
            stripes.setPixelColor(x, y, Qt::black);
    EXPECT_EQ(artworkTint(stripes)->name(), QColor(89, 89, 89).name());

    // Narrower than 12: every pixel counts. Half black, half white → grey, then lightened.
    QImage halves = filled({4, 1}, Qt::white);
    halves.setPixelColor(0, 0, Qt::black);
    halves.setPixelColor(1, 0, Qt::black);
    const auto grey = artworkTint(halves);
    ASSERT_TRUE(grey);
    EXPECT_NEAR(grey->redF(), 0.5 + 0.5 * 0.35, 1.0 / 255);

    EXPECT_FALSE(artworkTint(QImage()));
}

TEST(DecodeArtwork, ScalesLargeCoversDownAndRefusesWhatIsNoImage)
{
    testApplication();
    const struct {
        QSize size;
        const char* format;
        QSize expected;
    } cases[] = {
        {{1000, 500}, "PNG", {256, 128}},
        {{600, 600}, "JPG", {256, 256}},
        {{100, 40}, "PNG", {100, 40}},
        {{300, 900}, "BMP", {85, 256}},
    };
    for (const auto& c : cases) {
        const QImage image = decodeArtwork(encoded(filled(c.size, Qt::red), c.format));
        EXPECT_EQ(image.size(), c.expected) << c.format << " " << c.size.width();
    }
    EXPECT_TRUE(decodeArtwork(QByteArray()).isNull());
    EXPECT_TRUE(decodeArtwork("\x89PNG\r\n\x1a\n but then nothing").isNull());
    EXPECT_TRUE(decodeArtwork("<html><body>Not found</body></html>").isNull());
}

} // namespace
} // namespace navro
