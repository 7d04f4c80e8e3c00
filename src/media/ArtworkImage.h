#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <optional>

namespace navro {

// Covers are drawn at most a few hundred pixels wide; decoding them down to this keeps the
// artwork cache small whatever size the players hand out.
inline constexpr int artworkSide = 256;

// The image in `bytes`, scaled down to fit artworkSide × artworkSide; a null image when the bytes
// are not an image Qt can read.
QImage decodeArtwork(const QByteArray& bytes);

// The cover's average colour taken 35 % toward white, from about 12 × 12 samples; nothing for an
// image without pixels.
std::optional<QColor> artworkTint(const QImage& image);

} // namespace navro
