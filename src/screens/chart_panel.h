#pragma once
// The one plot widget of the screens: a frame with a bottom axis and a left and a right
// vertical scale (each linear or logarithmic), coloured series replaced whole, vertical marks,
// a click read-out with a cross-hair, and export of the picture to PNG and SVG.
// Screens never paint plots themselves; a later move to another chart library stays here.
#include <QColor>
#include <QString>
#include <QWidget>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tervale::screens {

struct ChartAxis {
  QString title;
  double min = 0;
  double max = 1;
  bool log = false;
  int divisions = 10;
  std::string labelPattern;  // display pattern of the tick labels; empty: shortest text
  bool shown = true;
};

enum class Scale { Left, Right };

class ChartPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ChartPanel(QWidget* parent = nullptr);

  void SetTitle(const QString& title);
  void SetXAxis(const ChartAxis& axis);
  void SetLeftAxis(const ChartAxis& axis);
  void SetRightAxis(const ChartAxis& axis);  // hidden unless set
  void ClearSeries();
  // Adds a series or, when one of that name exists, replaces its points.
  void SetSeries(const QString& name, QColor colour, Scale scale, std::span<const double> x,
                 std::span<const double> y);
  void ClearMarks();
  void AddVerticalMark(double x, const QString& label, QColor colour);
  void ClearCrossHair();

  // The x value under a pixel column of the plot area (clamped to the axis).
  double XAtPixel(double px) const;
  double PixelAtX(double x) const;
  QRectF PlotArea() const { return PlotAreaFor(size()); }

  bool ExportPng(const QString& path) const;
  bool ExportSvg(const QString& path) const;

  // Captions of the context menu (Export PNG / SVG), in the screen's language.
  void SetMenuTexts(const QString& exportPng, const QString& exportSvg) {
    exportPngText_ = exportPng;
    exportSvgText_ = exportSvg;
  }

 signals:
  // A click in the plot area: x under the click and the fraction 0..1 of its position
  // across the plot area.
  void pointClicked(double x, double fraction);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct Series {
    QString name;
    QColor colour;
    Scale scale;
    std::vector<double> x, y;
  };
  struct Mark {
    double x;
    QString label;
    QColor colour;
  };
  void Render(QPainter& p, QSize size) const;
  QRectF PlotAreaFor(QSize size) const;
  static double Fraction(const ChartAxis& axis, double v);

  QString title_;
  ChartAxis x_, left_, right_;
  bool hasRight_ = false;
  std::vector<Series> series_;
  std::vector<Mark> marks_;
  std::optional<QPointF> cross_;  // in plot-area fractions
  QString exportPngText_ = QStringLiteral("PNG...");
  QString exportSvgText_ = QStringLiteral("SVG...");
};

}  // namespace tervale::screens
