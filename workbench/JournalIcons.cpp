#include "JournalIcons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace marquell::workbench {

namespace {

/// Where every picture is drawn, whatever the icon's size.
constexpr double kPictureBox = 24.0;
constexpr double kPen = 2.4;

struct Drawing {
  QPainterPath filled;
  QPainterPath lines;
  bool isAlarming = false;
};

void AddTriangle(QPainterPath& path, double left, double right) {
  path.moveTo(left, 5);
  path.lineTo(right, 12);
  path.lineTo(left, 19);
  path.closeSubpath();
}

void AddLine(QPainterPath& path, const QPointF& from, const QPointF& to) {
  path.moveTo(from);
  path.lineTo(to);
}

void AddCross(QPainterPath& path) {
  AddLine(path, {6, 6}, {18, 18});
  AddLine(path, {18, 6}, {6, 18});
}

Drawing DrawingOf(JournalIcon which) {
  Drawing drawing;
  switch (which) {
    case JournalIcon::Record:
      drawing.filled.addEllipse(QPointF(12, 12), 7, 7);
      drawing.isAlarming = true;
      break;
    case JournalIcon::Stop:
      drawing.filled.addRect(6, 6, 12, 12);
      break;
    case JournalIcon::Play:
      AddTriangle(drawing.filled, 7, 19);
      break;
    case JournalIcon::Step:
      AddTriangle(drawing.filled, 5, 15);
      AddLine(drawing.lines, {18, 6}, {18, 18});
      break;
    case JournalIcon::Rewind:
      AddTriangle(drawing.filled, 19, 9);
      AddLine(drawing.lines, {6, 6}, {6, 18});
      break;
    case JournalIcon::FromHere:
      AddTriangle(drawing.filled, 11, 20);
      AddLine(drawing.lines, {3, 12}, {11, 12});
      break;
    case JournalIcon::InHand:
      AddTriangle(drawing.filled, 5, 20);
      break;
    case JournalIcon::Done:
      AddLine(drawing.lines, {5, 13}, {10, 18});
      AddLine(drawing.lines, {10, 18}, {19, 6});
      break;
    case JournalIcon::Failed:
      AddCross(drawing.lines);
      drawing.isAlarming = true;
      break;
    case JournalIcon::Clear:
      AddCross(drawing.lines);
      break;
    case JournalIcon::None:
      break;
  }
  return drawing;
}

class JournalIconEngine : public QIconEngine {
 public:
  explicit JournalIconEngine(JournalIcon which) : m_which(which) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const Drawing drawing = DrawingOf(m_which);
    const QPalette palette = QApplication::palette();
    QColor ink = palette.color(QPalette::WindowText);
    if (mode == QIcon::Disabled) {
      ink = palette.color(QPalette::Disabled, QPalette::WindowText);
    } else if (drawing.isAlarming) {
      ink = AlarmColor(palette);
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kPictureBox, rect.height() / kPictureBox);
    painter->setPen(QPen(ink, kPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(drawing.lines);
    painter->fillPath(drawing.filled, ink);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new JournalIconEngine(*this); }

 private:
  JournalIcon m_which;
};

}  // namespace

QIcon IconOf(JournalIcon which) { return QIcon(new JournalIconEngine(which)); }

QColor AlarmColor(const QPalette& palette) {
  constexpr int kOnLight = 95;
  constexpr int kOnDark = 175;
  const bool isDark =
      palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
  return QColor::fromHsl(0, 200, isDark ? kOnDark : kOnLight);
}

}  // namespace marquell::workbench
