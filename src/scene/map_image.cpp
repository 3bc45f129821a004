#include "scene/map_image.h"

#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

namespace orv::scene {

ImageKind imageKindOf(const QString& path) {
    if (path.endsWith(".png", Qt::CaseInsensitive))
        return ImageKind::Png;
    if (path.endsWith(".svg", Qt::CaseInsensitive))
        return ImageKind::Svg;
    return ImageKind::Unknown;
}

bool writeMapImage(const MapScene& scene, const QString& path) {
    const QSize size = scene.size().toSize();
    switch (imageKindOf(path)) {
    case ImageKind::Png: {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(MapScene::background());
        {
            QPainter p(&image);
            p.setRenderHint(QPainter::Antialiasing);
            scene.paint(p);
        }
        return image.save(path, "PNG");
    }
    case ImageKind::Svg: {
        QSvgGenerator svg;
        svg.setFileName(path);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        QPainter p;
        if (!p.begin(&svg))
            return false;
        scene.paint(p);
        return p.end();
    }
    case ImageKind::Unknown:
        break;
    }
    return false;
}

} // namespace orv::scene
