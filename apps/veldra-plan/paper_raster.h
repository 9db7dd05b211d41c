#pragma once
// The scanned paper plan of a sample: a light drawing of the enclosure, sections, alleys
// and plots on a cream ground, written as an RGB GeoTIFF whose geotransform puts every
// pixel where the plan's coordinates say. Texts are drawn only when a QGuiApplication
// exists (fonts need one).

#include <QString>

namespace veldra::plantool {

struct SampleLayout;

// Erreur (AccesRefuse) when the file cannot be written.
void writePaperRaster(const SampleLayout& layout, const QString& path);

} // namespace veldra::plantool
