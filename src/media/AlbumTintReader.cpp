#include "media/AlbumTintReader.h"

namespace norva {
namespace {

constexpr double kLivelySaturation = 0.25; // pixels duller than this count only when none is livelier
constexpr double kLivelyValue = 0.2;
constexpr double kTintDarkness = 0.55;

} // namespace

std::optional<QColor> AlbumTintReader::accentColor(const QImage& artwork)
{
    if (artwork.isNull())
        return std::nullopt;
    const QImage small = artwork.scaled(sampleSize, sampleSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGB32);
    double lively[3] = {0, 0, 0};
    double all[3] = {0, 0, 0};
    int livelyCount = 0;
    int allCount = 0;
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x) {
            const QColor pixel = small.pixelColor(x, y);
            const double rgb[3] = {pixel.redF(), pixel.greenF(), pixel.blueF()};
            for (int i = 0; i < 3; ++i)
                all[i] += rgb[i];
            ++allCount;
            if (pixel.hsvSaturationF() >= kLivelySaturation && pixel.valueF() >= kLivelyValue) {
                for (int i = 0; i < 3; ++i)
                    lively[i] += rgb[i];
                ++livelyCount;
            }
        }
    }
    const double* sum = livelyCount > 0 ? lively : all;
    const int count = livelyCount > 0 ? livelyCount : allCount;
    return QColor::fromRgbF(float(sum[0] / count), float(sum[1] / count), float(sum[2] / count));
}

QColor AlbumTintReader::tint(const QColor& accent)
{
    return QColor::fromHsvF(accent.hsvHueF(), accent.hsvSaturationF(), float(accent.valueF() * kTintDarkness));
}

} // namespace norva
