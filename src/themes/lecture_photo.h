#pragma once
// Photographs read safely, whatever the file holds: through QImageReader, under an
// allocation limit and a bound on the pixels a picture may declare, turned upright as its
// EXIF orientation says. A missing file, an empty one, a file that is not a picture, a
// truncated one, a picture of 30,000 x 30,000 pixels or a small file that would inflate
// to gigabytes is refused with a French Erreur before any large allocation.

#include <QImage>
#include <QSize>
#include <QString>

namespace veldra {

// 64 megapixels: 256 MB once decoded at 32 bits, what the reader is allowed to allocate.
inline constexpr qint64 kPixelsPhotoMax = 64LL * 1024 * 1024;
inline constexpr int kMegaOctetsPhoto = 256;

// The picture's size in pixels, upright. Erreur when it cannot be read or is too large.
QSize tailleImage(const QString& chemin);

// The picture, upright; decoded straight at `taille` when it is given (a JPEG is then
// scaled while it is decoded, which costs a fraction of a full decode). Erreur as above.
QImage lisImage(const QString& chemin, QSize taille = {});

} // namespace veldra
