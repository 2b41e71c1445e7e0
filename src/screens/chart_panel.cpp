#include "screens/chart_panel.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QImage>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "io/display_format.h"
#include "io/record_writer.h"
#include "screens/screen_text.h"

namespace tervale::screens {
namespace {

QString TickLabel(const ChartAxis& axis, double v) {
  if (axis.labelPattern.empty()) {
    if (std::abs(v) < 1e-12 * std::max(std::abs(axis.max), std::abs(axis.min))) v = 0;
    return QString::number(v, 'g', 6);
  }
  return Fmt(v, axis.labelPattern).trimmed();
}

double AxisValue(const ChartAxis& axis, double fraction) {
  if (axis.log && axis.min > 0 && axis.max > 0) {
    const double a = std::log10(axis.min), b = std::log10(axis.max);
    return std::pow(10.0, a + fraction * (b - a));
  }
  return axis.min + fraction * (axis.max - axis.min);
}

}  // namespace

ChartPanel::ChartPanel(QWidget* parent) : QWidget(parent) {
  setMinimumSize(400, 300);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  setCursor(Qt::CrossCursor);
}

void ChartPanel::SetTitle(const QString& title) {
  title_ = title;
  update();
}
void ChartPanel::SetXAxis(const ChartAxis& axis) {
  x_ = axis;
  update();
}
void ChartPanel::SetLeftAxis(const ChartAxis& axis) {
  left_ = axis;
  update();
}
void ChartPanel::SetRightAxis(const ChartAxis& axis) {
  right_ = axis;
  hasRight_ = axis.shown;
  update();
}
void ChartPanel::ClearSeries() {
  series_.clear();
  update();
}

void ChartPanel::SetSeries(const QString& name, QColor colour, Scale scale,
                           std::span<const double> x, std::span<const double> y) {
  auto it =
      std::find_if(series_.begin(), series_.end(), [&](const Series& s) { return s.name == name; });
  if (it == series_.end()) {
    series_.push_back(Series{name, colour, scale, {}, {}});
    it = series_.end() - 1;
  }
  it->colour = colour;
  it->scale = scale;
  const size_t n = std::min(x.size(), y.size());
  it->x.assign(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(n));
  it->y.assign(y.begin(), y.begin() + static_cast<std::ptrdiff_t>(n));
  update();
}

void ChartPanel::ClearMarks() {
  marks_.clear();
  update();
}

void ChartPanel::AddVerticalMark(double x, const QString& label, QColor colour) {
  marks_.push_back(Mark{x, label, colour});
  update();
}

void ChartPanel::ClearCrossHair() {
  cross_.reset();
  update();
}

double ChartPanel::Fraction(const ChartAxis& axis, double v) {
  if (axis.log) {
    if (v <= 0 || axis.min <= 0 || axis.max <= 0) return std::nan("");
    return (std::log10(v) - std::log10(axis.min)) / (std::log10(axis.max) - std::log10(axis.min));
  }
  if (axis.max == axis.min) return 0;
  return (v - axis.min) / (axis.max - axis.min);
}

QRectF ChartPanel::PlotAreaFor(QSize size) const {
  // Margins in the proportions of the program's plots: wider on the left and right for the
  // scales, room below for the axis title.
  const QFontMetrics fm(font());
  const double left = fm.horizontalAdvance(QStringLiteral("-0000.000")) + fm.height() * 2.0;
  const double right = hasRight_ ? left : fm.height() * 1.5;
  const double top = fm.height() * (title_.isEmpty() ? 1.5 : 3.0);
  const double bottom = fm.height() * 3.5;
  return QRectF(left, top, std::max(10.0, size.width() - left - right),
                std::max(10.0, size.height() - top - bottom));
}

double ChartPanel::XAtPixel(double px) const {
  const QRectF a = PlotArea();
  const double f = std::clamp((px - a.left()) / a.width(), 0.0, 1.0);
  return AxisValue(x_, f);
}

double ChartPanel::PixelAtX(double x) const {
  const QRectF a = PlotArea();
  return a.left() + Fraction(x_, x) * a.width();
}

void ChartPanel::Render(QPainter& p, QSize size) const {
  p.setRenderHint(QPainter::Antialiasing, true);
  p.fillRect(QRectF(QPointF(0, 0), QSizeF(size)), palette().base());
  const QRectF a = PlotAreaFor(size);
  const QFontMetrics fm(font());
  const QColor ink = palette().color(QPalette::Text);

  if (!title_.isEmpty()) {
    QFont f = font();
    f.setBold(true);
    p.setFont(f);
    p.setPen(ink);
    p.drawText(QRectF(0, fm.height() * 0.3, size.width(), fm.height() * 1.6), Qt::AlignCenter,
               title_);
    p.setFont(font());
  }

  // Dotted grid and the scales' tick labels.
  QPen gridPen(QColor(160, 160, 160), 0, Qt::DotLine);
  for (int i = 0; i <= x_.divisions; ++i) {
    const double f = static_cast<double>(i) / x_.divisions;
    const double px = a.left() + f * a.width();
    p.setPen(gridPen);
    p.drawLine(QPointF(px, a.top()), QPointF(px, a.bottom()));
    p.setPen(ink);
    if (x_.shown && (i % 2 == 0 || x_.divisions <= 6))
      p.drawText(QRectF(px - 60, a.bottom() + 4, 120, fm.height()), Qt::AlignHCenter | Qt::AlignTop,
                 TickLabel(x_, AxisValue(x_, f)));
  }
  for (int i = 0; i <= left_.divisions; ++i) {
    const double f = static_cast<double>(i) / left_.divisions;
    const double py = a.bottom() - f * a.height();
    p.setPen(gridPen);
    p.drawLine(QPointF(a.left(), py), QPointF(a.right(), py));
    p.setPen(ink);
    p.drawText(QRectF(0, py - fm.height() / 2.0, a.left() - 6, fm.height()),
               Qt::AlignRight | Qt::AlignVCenter, TickLabel(left_, AxisValue(left_, f)));
  }
  if (hasRight_) {
    for (int i = 0; i <= right_.divisions; ++i) {
      const double f = static_cast<double>(i) / right_.divisions;
      const double py = a.bottom() - f * a.height();
      p.drawText(
          QRectF(a.right() + 6, py - fm.height() / 2.0, size.width() - a.right() - 6, fm.height()),
          Qt::AlignLeft | Qt::AlignVCenter, TickLabel(right_, AxisValue(right_, f)));
    }
  }
  p.setPen(QPen(ink, 1));
  p.drawRect(a);

  // Axis titles: bottom centred, left above its scale, right above its scale.
  p.drawText(QRectF(a.left(), a.bottom() + fm.height() * 1.4, a.width(), fm.height() * 1.5),
             Qt::AlignCenter, x_.title);
  p.drawText(QRectF(0, a.top() - fm.height() * 1.4, a.left() + 60, fm.height()),
             Qt::AlignLeft | Qt::AlignVCenter, left_.title);
  if (hasRight_)
    p.drawText(QRectF(a.right() - 60, a.top() - fm.height() * 1.4, size.width() - a.right() + 58,
                      fm.height()),
               Qt::AlignRight | Qt::AlignVCenter, right_.title);

  // Vertical marks.
  for (const Mark& m : marks_) {
    const double f = Fraction(x_, m.x);
    if (!(f >= 0 && f <= 1)) continue;
    const double px = a.left() + f * a.width();
    p.setPen(QPen(m.colour, 1.5, Qt::DashLine));
    p.drawLine(QPointF(px, a.top()), QPointF(px, a.bottom()));
    // The label stands inside the plot: right of the line in the left half, else left of it.
    const bool leftHalf = f < 0.5;
    p.drawText(QRectF(leftHalf ? px + 3 : px - 203, a.top() + 2, 200, fm.height()),
               (leftHalf ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignTop, m.label);
  }

  // Series, clipped to the plot area.
  p.save();
  p.setClipRect(a.adjusted(-1, -1, 1, 1));
  for (const Series& s : series_) {
    const ChartAxis& ya = s.scale == Scale::Left ? left_ : right_;
    QPainterPath path;
    bool open = false;
    for (size_t i = 0; i < s.x.size(); ++i) {
      const double fx = Fraction(x_, s.x[i]), fy = Fraction(ya, s.y[i]);
      if (!std::isfinite(fx) || !std::isfinite(fy)) {
        open = false;
        continue;
      }
      const QPointF pt(a.left() + fx * a.width(), a.bottom() - fy * a.height());
      if (open)
        path.lineTo(pt);
      else
        path.moveTo(pt);
      open = true;
    }
    p.setPen(QPen(s.colour, 2));
    p.drawPath(path);
  }
  p.restore();

  // Legend along the bottom.
  double lx = a.left();
  const double ly = size.height() - fm.height() * 0.9;
  for (const Series& s : series_) {
    p.setPen(QPen(s.colour, 3));
    p.drawLine(QPointF(lx, ly), QPointF(lx + 20, ly));
    p.setPen(ink);
    const QString label =
        s.name + (hasRight_ ? (s.scale == Scale::Left ? QStringLiteral(" ←") : QStringLiteral(" →"))
                            : QString());
    p.drawText(QPointF(lx + 24, ly + fm.ascent() / 2.0 - 1), label);
    lx += 40 + fm.horizontalAdvance(label);
  }

  // Cross-hair of the last click.
  if (cross_) {
    const QPointF c(a.left() + cross_->x() * a.width(), a.top() + cross_->y() * a.height());
    p.setPen(QPen(QColor(200, 0, 0), 1));
    p.drawLine(QPointF(c.x(), a.top()), QPointF(c.x(), a.bottom()));
    p.drawLine(QPointF(a.left(), c.y()), QPointF(a.right(), c.y()));
  }
}

void ChartPanel::paintEvent(QPaintEvent*) {
  QElapsedTimer timer;
  timer.start();
  QPainter p(this);
  Render(p, size());
  qCInfo(lcTiming) << objectName() << "painted in" << timer.nsecsElapsed() / 1000 << "us";
}

void ChartPanel::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QWidget::mousePressEvent(event);
    return;
  }
  const QRectF a = PlotArea();
  const QPointF pos = event->position();
  if (!a.contains(pos)) return;
  const double fx = (pos.x() - a.left()) / a.width();
  cross_ = QPointF(fx, (pos.y() - a.top()) / a.height());
  update();
  emit pointClicked(XAtPixel(pos.x()), fx);
}

void ChartPanel::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  QAction* png = menu.addAction(exportPngText_);
  QAction* svg = menu.addAction(exportSvgText_);
  QAction* chosen = menu.exec(event->globalPos());
  if (chosen == png) {
    const QString f = QFileDialog::getSaveFileName(this, exportPngText_, QString(),
                                                   QStringLiteral("PNG (*.png)"));
    if (!f.isEmpty()) ExportPng(f);
  } else if (chosen == svg) {
    const QString f = QFileDialog::getSaveFileName(this, exportSvgText_, QString(),
                                                   QStringLiteral("SVG (*.svg)"));
    if (!f.isEmpty()) ExportSvg(f);
  }
}

bool ChartPanel::ExportPng(const QString& path) const {
  QImage image(size().expandedTo(QSize(400, 300)), QImage::Format_ARGB32);
  image.fill(Qt::white);
  QPainter p(&image);
  p.setFont(font());
  Render(p, image.size());
  p.end();
  return image.save(path, "PNG");
}

bool ChartPanel::ExportSvg(const QString& path) const {
  const QSize sz = size().expandedTo(QSize(400, 300));
  QSvgGenerator gen;
  gen.setFileName(path);
  gen.setSize(sz);
  gen.setViewBox(QRect(QPoint(0, 0), sz));
  gen.setTitle(title_);
  QPainter p;
  if (!p.begin(&gen)) return false;
  p.setFont(font());
  Render(p, sz);
  return p.end();
}

}  // namespace tervale::screens
