#include "DialogLayout.h"

#include <algorithm>
#include <cmath>

namespace marquell::workbench {

namespace {

/// Free pixels between controls that the author set apart.
constexpr int kGapX = 4;
constexpr int kGapY = 2;

int Pixels(double hundredths, double unit) {
  return static_cast<int>(std::lround(hundredths * unit / kHundredths));
}

QRect RectOf(const LayoutItem& item, const LayoutUnits& units, const QSize& room) {
  const int x = Pixels(item.place.x, units.x);
  int width = std::max(Pixels(item.place.width, units.x), item.need.width());
  width = std::max(item.need.width(), std::min(width, room.width() - x));
  const int height = std::max(Pixels(item.place.height, units.y), item.need.height());
  int y = Pixels(item.place.y, units.y);
  if (item.barHeight > 0) return {x, y - item.barHeight, width, height + item.barHeight};
  if (item.place.height > 0) {
    y = Pixels(item.place.y + item.place.height / 2.0, units.y) - height / 2;
  } else if (item.lineHeight > 0) {
    y += (static_cast<int>(std::lround(units.y)) - item.lineHeight) / 2;
  }
  return {x, std::max(y, 0), width, height};
}

bool AreApart(LgIndex_t a, LgIndex_t aLength, LgIndex_t b, LgIndex_t bLength) {
  if (a == b) return false;
  return a < b ? a + aLength <= b : b + bLength <= a;
}

/// Whether two intervals come closer than the gap.
bool Collide(int a, int aLength, int b, int bLength, int gap) {
  return a < b + bLength + gap && b < a + aLength + gap;
}

Shortage CollisionOf(const LayoutItem& a, const QRect& aRect, const LayoutItem& b,
                     const QRect& bRect) {
  const bool isApartX = AreApart(a.place.x, a.place.width, b.place.x, b.place.width);
  const bool isApartY = AreApart(a.place.y, a.place.height, b.place.y, b.place.height);
  // One upon the other by their author's will.
  if (!isApartX && !isApartY) return {};
  const int gapX = isApartX ? kGapX : 0;
  const int gapY = isApartY ? kGapY : 0;
  if (!Collide(aRect.x(), aRect.width(), bRect.x(), bRect.width(), gapX) ||
      !Collide(aRect.y(), aRect.height(), bRect.y(), bRect.height(), gapY)) {
    return {};
  }
  Shortage shortage;
  shortage.inHeight = isApartY;
  shortage.inWidth = !isApartY;
  return shortage;
}

/// The width that a control may have before it comes upon one to its right.
int FreeWidth(std::size_t which, const std::vector<QRect>& rects, const QSize& room) {
  const QRect& rect = rects[which];
  int end = room.width();
  for (const QRect& other : rects) {
    if (other.x() <= rect.x()) continue;
    if (Collide(rect.y(), rect.height(), other.y(), other.height(), 0)) {
      end = std::min(end, other.x() - kGapX);
    }
  }
  return end - rect.x();
}

/// Menus that their author made equally wide, one below the other, stay so.
int WishIn(std::size_t which, const std::vector<LayoutItem>& items) {
  int wish = items[which].wishedWidth;
  if (wish == 0) return 0;
  for (const LayoutItem& item : items) {
    const bool isAlike =
        item.place.x == items[which].place.x && item.place.width == items[which].place.width;
    if (isAlike) wish = std::max(wish, item.wishedWidth);
  }
  return wish;
}

}  // namespace

Shortage PlaceSiblings(const std::vector<LayoutItem>& items, const LayoutUnits& units,
                       const QSize& room, std::vector<QRect>& rects) {
  rects.clear();
  for (const LayoutItem& item : items) rects.push_back(RectOf(item, units, room));
  Shortage shortage;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const QRect& rect = rects[i];
    if (rect.x() + rect.width() > room.width()) shortage.inWidth = true;
    if (rect.y() < 0 || rect.y() + rect.height() > room.height()) shortage.inHeight = true;
    for (std::size_t j = 0; j < i; ++j) {
      shortage.Add(CollisionOf(items[i], rect, items[j], rects[j]));
    }
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    const int wished = std::min(WishIn(i, items), FreeWidth(i, rects, room));
    rects[i].setWidth(std::max(rects[i].width(), wished));
  }
  return shortage;
}

}  // namespace marquell::workbench
