// What stands beside the plot: the caption above it, the legend of the colours to its right.
#pragma once

#include <vtkLookupTable.h>
#include <vtkRenderer.h>

#include <string>

#include "PlotScene.h"

namespace qelhost {

/// Part of the picture that the plot has.
constexpr double kPlotWidth = 0.83;
constexpr double kPlotHeight = 0.92;

/// What the margin shows.
struct MarginContent {
  std::string caption;
  std::string variable;  ///< empty: no legend
  std::string colourMap;
  double min = 0.0;
  double max = 0.0;
  int width = 1;
  int height = 1;
  double textSize = 1.0;

  bool operator==(const MarginContent& other) const;
};

class MarginDrawing {
 public:
  explicit MarginDrawing(vtkRenderer* renderer) : m_renderer(renderer) {}

  /// Makes everything anew when something changed.
  void Update(const MarginContent& content);

 private:
  void AddLegend();

  vtkRenderer* m_renderer;
  MarginContent m_shown;
  std::vector<vtkSmartPointer<vtkProp>> m_actors;
};

/// The colours of a map over a range.
vtkSmartPointer<vtkLookupTable> MakeColourTable(const std::string& colourMap, double min,
                                                double max);

}  // namespace qelhost
