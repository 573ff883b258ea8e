#include "BitmapIcon.h"

#include <QColor>
#include <QImage>
#include <QPixmap>

namespace marquell::workbench {

namespace {

constexpr int kMostBrightness = 255;
constexpr int kLargestScale = 4;

QColor WithBrightnessTurned(const QColor& color) {
  const QColor hsl = color.toHsl();
  return QColor::fromHsl(hsl.hslHue(), hsl.hslSaturation(), kMostBrightness - hsl.lightness());
}

QImage ImageOf(const qelhost::Bitmap& bitmap, bool isOnDark) {
  QImage image(bitmap.width, bitmap.height, QImage::Format_ARGB32);
  const QColor transparent(bitmap.red, bitmap.green, bitmap.blue);
  std::size_t byte = 0;
  const auto next = [&bitmap, &byte] { return static_cast<unsigned char>(bitmap.rgb[byte++]); };
  for (int y = 0; y < bitmap.height; ++y) {
    for (int x = 0; x < bitmap.width; ++x) {
      const int red = next();
      const int green = next();
      const int blue = next();
      const QColor color(red, green, blue);
      if (bitmap.hasTransparentColor && color == transparent) {
        image.setPixelColor(x, y, Qt::transparent);
      } else {
        image.setPixelColor(x, y, isOnDark ? WithBrightnessTurned(color) : color);
      }
    }
  }
  return image;
}

}  // namespace

QIcon IconOf(const qelhost::Bitmap& bitmap, const QPalette& palette) {
  const bool isOnDark =
      palette.color(QPalette::Button).lightness() < palette.color(QPalette::ButtonText).lightness();
  const QImage image = ImageOf(bitmap, isOnDark);
  QIcon icon;
  for (int scale = 1; scale <= kLargestScale; ++scale) {
    QPixmap pixmap = QPixmap::fromImage(image.scaled(image.size() * scale));
    pixmap.setDevicePixelRatio(scale);
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace marquell::workbench
