#include "development/SweepInk.h"

#include <QHash>

#include <algorithm>
#include <cstdlib>

namespace {

/// Of the three channels together. Lines and tints stay below, texts and icons go beyond.
constexpr int InkContrast = 150;

QRgb CommonestColour(const QImage& image) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            ++counts[line[x]];
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    return most == counts.end() ? 0 : most.key();
}

} // namespace

int CountInk(const QImage& source) {
    const QImage image = source.convertToFormat(QImage::Format_RGB32);
    const QRgb paper = CommonestColour(image);
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int contrast = std::abs(qRed(line[x]) - qRed(paper)) +
                                 std::abs(qGreen(line[x]) - qGreen(paper)) +
                                 std::abs(qBlue(line[x]) - qBlue(paper));
            if (contrast > InkContrast)
                ++ink;
        }
    }
    return ink;
}
