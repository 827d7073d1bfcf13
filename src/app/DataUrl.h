#pragma once

#include <QImage>
#include <QString>

namespace norva {

// A picture as a "data:image/png;base64,..." address, which QML's Image shows without an image
// provider, so norva_core needs no Qt Quick to hand a picture to a view.
QString pngDataUrl(const QImage& image);

} // namespace norva
