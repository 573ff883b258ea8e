#include "Icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <map>

namespace marquell::workbench {

namespace {

/// Where every glyph is drawn, whatever the icon's size.
constexpr double kBox = 24.0;

/// Line strokes, and what is filled.
struct Shape {
  QPainterPath lines;
  QPainterPath filled;
  QString letter{};
};

QPainterPath Arrow(const QPointF& tip, const QPointF& left, const QPointF& right) {
  QPainterPath arrow(tip);
  arrow.lineTo(left);
  arrow.lineTo(right);
  arrow.closeSubpath();
  return arrow;
}

Shape DrawOpen() {
  Shape s;
  s.lines.moveTo(3, 19);
  s.lines.lineTo(3, 5);
  s.lines.lineTo(9, 5);
  s.lines.lineTo(11, 8);
  s.lines.lineTo(19, 8);
  s.lines.lineTo(19, 11);
  s.lines.moveTo(3, 19);
  s.lines.lineTo(7, 11);
  s.lines.lineTo(22, 11);
  s.lines.lineTo(18, 19);
  s.lines.closeSubpath();
  return s;
}

Shape DrawSave() {
  Shape s;
  s.lines.moveTo(4, 4);
  s.lines.lineTo(17, 4);
  s.lines.lineTo(20, 7);
  s.lines.lineTo(20, 20);
  s.lines.lineTo(4, 20);
  s.lines.closeSubpath();
  s.lines.addRect(8, 13, 8, 7);
  s.filled.addRect(8, 4, 7, 5);
  return s;
}

/// A bent arrow; a redo is its mirror image.
Shape DrawTurn(bool isRedo) {
  const auto at = [isRedo](double x, double y) { return QPointF(isRedo ? kBox - x : x, y); };
  Shape s;
  s.lines.moveTo(at(7, 9));
  s.lines.lineTo(at(15, 9));
  s.lines.cubicTo(at(22, 9), at(22, 19), at(15, 19));
  s.lines.lineTo(at(9, 19));
  s.filled = Arrow(at(2, 9), at(9, 4), at(9, 14));
  return s;
}

Shape DrawSelect() {
  Shape s;
  s.filled.moveTo(6, 3);
  s.filled.lineTo(6, 19);
  s.filled.lineTo(10, 15);
  s.filled.lineTo(13, 21);
  s.filled.lineTo(15.5, 20);
  s.filled.lineTo(12.8, 14);
  s.filled.lineTo(18, 14);
  s.filled.closeSubpath();
  return s;
}

Shape DrawRotate() {
  Shape s;
  s.lines.arcMoveTo(4, 4, 16, 16, 40);
  s.lines.arcTo(4, 4, 16, 16, 40, 290);
  s.filled = Arrow({21, 11}, {14, 8.5}, {19.5, 4});
  return s;
}

Shape DrawPan() {
  Shape s;
  s.lines.moveTo(12, 5);
  s.lines.lineTo(12, 19);
  s.lines.moveTo(5, 12);
  s.lines.lineTo(19, 12);
  s.filled = Arrow({12, 1.5}, {9, 6}, {15, 6});
  s.filled.addPath(Arrow({12, 22.5}, {9, 18}, {15, 18}));
  s.filled.addPath(Arrow({1.5, 12}, {6, 9}, {6, 15}));
  s.filled.addPath(Arrow({22.5, 12}, {18, 9}, {18, 15}));
  return s;
}

Shape DrawZoom() {
  Shape s;
  s.lines.addEllipse(QPointF(10, 10), 6.5, 6.5);
  s.lines.moveTo(15, 15);
  s.lines.lineTo(21, 21);
  s.lines.moveTo(10, 7.5);
  s.lines.lineTo(10, 12.5);
  s.lines.moveTo(7.5, 10);
  s.lines.lineTo(12.5, 10);
  return s;
}

Shape DrawProbe() {
  Shape s;
  s.lines.addEllipse(QPointF(12, 12), 6, 6);
  for (const auto& [from, to] :
       {std::pair(QPointF(12, 2), QPointF(12, 9)), std::pair(QPointF(12, 15), QPointF(12, 22)),
        std::pair(QPointF(2, 12), QPointF(9, 12)), std::pair(QPointF(15, 12), QPointF(22, 12))}) {
    s.lines.moveTo(from);
    s.lines.lineTo(to);
  }
  return s;
}

Shape DrawPolygon() {
  Shape s;
  s.lines.addPolygon(QPolygonF({{4, 9}, {13, 3}, {21, 10}, {17, 20}, {6, 18}, {4, 9}}));
  for (const QPointF& corner :
       {QPointF(4, 9), QPointF(13, 3), QPointF(21, 10), QPointF(17, 20), QPointF(6, 18)}) {
    s.filled.addEllipse(corner, 1.9, 1.9);
  }
  return s;
}

Shape DrawRectangle() {
  Shape s;
  s.lines.addRect(2.5, 6, 19, 12);
  return s;
}

Shape DrawSquare() {
  Shape s;
  s.lines.addRect(5, 5, 14, 14);
  return s;
}

Shape DrawCircle() {
  Shape s;
  s.lines.addEllipse(QPointF(12, 12), 8.5, 8.5);
  return s;
}

Shape DrawEllipse() {
  Shape s;
  s.lines.addEllipse(QPointF(12, 12), 10, 6);
  return s;
}

Shape DrawFit() {
  Shape s;
  for (const int x : {3, 21}) {
    for (const int y : {3, 21}) {
      const int dx = x == 3 ? 5 : -5;
      const int dy = y == 3 ? 5 : -5;
      s.lines.moveTo(x + dx, y);
      s.lines.lineTo(x, y);
      s.lines.lineTo(x, y + dy);
    }
  }
  s.filled.addRect(8, 9, 8, 6);
  return s;
}

/// The two axes that lie in the picture when the viewer looks along the third.
Shape DrawAxes(const QString& letters) {
  Shape s;
  s.lines.moveTo(4, 4);
  s.lines.lineTo(4, 20);
  s.lines.lineTo(20, 20);
  s.filled = Arrow({4, 1}, {1.5, 6}, {6.5, 6});
  s.filled.addPath(Arrow({23, 20}, {18, 17.5}, {18, 22.5}));
  s.letter = letters;
  return s;
}

Shape DrawCorner() {
  Shape s;
  s.lines.addPolygon(QPolygonF({{12, 2}, {21, 7}, {21, 17}, {12, 22}, {3, 17}, {3, 7}, {12, 2}}));
  s.lines.moveTo(3, 7);
  s.lines.lineTo(12, 12);
  s.lines.lineTo(21, 7);
  s.lines.moveTo(12, 12);
  s.lines.lineTo(12, 22);
  return s;
}

Shape DrawPicture() {
  Shape s;
  s.lines.addRect(2.5, 4.5, 19, 15);
  s.filled.addEllipse(QPointF(8, 9.5), 1.8, 1.8);
  s.filled.addPolygon(QPolygonF({{4, 18}, {9, 13}, {12, 16}, {16, 11}, {20, 18}}));
  return s;
}

Shape DrawApplication() {
  Shape s;
  for (const int at : {3, 9, 15, 21}) {
    s.lines.moveTo(at, 3);
    s.lines.lineTo(at, 21);
    s.lines.moveTo(3, at);
    s.lines.lineTo(21, at);
  }
  s.filled.addRect(9, 9, 12, 6);
  s.filled.addRect(9, 15, 6, 6);
  return s;
}

using Draw = Shape (*)();

const std::map<Glyph, Draw>& Drawings() {
  static const std::map<Glyph, Draw> drawings = {{Glyph::Open, DrawOpen},
                                                 {Glyph::Save, DrawSave},
                                                 {Glyph::Undo, [] { return DrawTurn(false); }},
                                                 {Glyph::Redo, [] { return DrawTurn(true); }},
                                                 {Glyph::Select, DrawSelect},
                                                 {Glyph::Rotate, DrawRotate},
                                                 {Glyph::Pan, DrawPan},
                                                 {Glyph::Zoom, DrawZoom},
                                                 {Glyph::Probe, DrawProbe},
                                                 {Glyph::Polygon, DrawPolygon},
                                                 {Glyph::Rectangle, DrawRectangle},
                                                 {Glyph::Square, DrawSquare},
                                                 {Glyph::Circle, DrawCircle},
                                                 {Glyph::Ellipse, DrawEllipse},
                                                 {Glyph::Fit, DrawFit},
                                                 {Glyph::AlongX, [] { return DrawAxes("YZ"); }},
                                                 {Glyph::AlongY, [] { return DrawAxes("XZ"); }},
                                                 {Glyph::AlongZ, [] { return DrawAxes("XY"); }},
                                                 {Glyph::Corner, DrawCorner},
                                                 {Glyph::Picture, DrawPicture},
                                                 {Glyph::Application, DrawApplication}};
  return drawings;
}

class GlyphEngine : public QIconEngine {
 public:
  explicit GlyphEngine(Glyph glyph) : m_glyph(glyph) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const bool isGrey = mode == QIcon::Disabled;
    const QColor ink = QApplication::palette().color(isGrey ? QPalette::Disabled : QPalette::Active,
                                                     QPalette::WindowText);
    const Shape shape = Drawings().at(m_glyph)();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kBox, rect.height() / kBox);
    painter->setPen(QPen(ink, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(shape.lines);
    painter->fillPath(shape.filled, ink);
    if (!shape.letter.isEmpty()) {
      QFont font = QApplication::font();
      font.setPixelSize(10);
      font.setBold(true);
      painter->setFont(font);
      painter->drawText(QRectF(7, 4, 16, 13), Qt::AlignCenter, shape.letter);
    }
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new GlyphEngine(*this); }

 private:
  Glyph m_glyph;
};

}  // namespace

QIcon IconOf(Glyph glyph) { return QIcon(new GlyphEngine(glyph)); }

}  // namespace marquell::workbench
