#pragma once

#include <QSize>
#include <QString>

#include "scene/map_scene.h"

// The scene painted offscreen into a file: PNG through QImage, SVG through
// QSvgGenerator. QtGui draws without a display.
namespace orv::scene {

enum class ImageKind { Png, Svg, Unknown };
ImageKind imageKindOf(const QString& path);

// Paints the whole scene at its view size; false when the file could not be
// written.
bool writeMapImage(const MapScene& scene, const QString& path);

} // namespace orv::scene
