// Ticks with numbers around a flat plot, or along a box around the data of a solid one; and how X,
// Y and Z lie, in a corner.
#pragma once

#include <vtkActor.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>

#include <string>
#include <vector>

#include "Overlay.h"
#include "PlotCamera.h"

namespace qelhost {

/// Round numbers within a range, about so many, ascending.
std::vector<double> TicksWithin(double low, double high, int about);

/// The number as short as its distance to the next tick allows.
std::string TickText(double tick, double step);

/// Words at a place in pixels of the renderer.
struct PlacedText {
  enum class Side { Left, Middle, Right };  ///< of the words, that is at the place

  std::string words;
  FlatPoint at{};
  Side across = Side::Middle;
  Side up = Side::Middle;  ///< Left: the lower side; Right: the upper one

  bool operator==(const PlacedText& other) const {
    return words == other.words && at == other.at && across == other.across && up == other.up;
  }
};

/// Texts of one size; those that did not change stay.
class TextLayer {
 public:
  explicit TextLayer(vtkRenderer* renderer) : m_renderer(renderer) {}
  ~TextLayer() { Show({}, 1.0); }
  TextLayer(const TextLayer&) = delete;
  TextLayer& operator=(const TextLayer&) = delete;

  void Show(const std::vector<PlacedText>& texts, double size);
  void AppendActors(std::vector<vtkProp*>& actors) const {
    for (const Shown& shown : m_shown) actors.push_back(shown.actor);
  }

 private:
  struct Shown {
    PlacedText text;
    vtkSmartPointer<vtkTextActor> actor;
  };
  vtkRenderer* m_renderer;
  double m_size = 0.0;
  std::vector<Shown> m_shown;
};

/// Pixels that the numbers of a flat plot's axes take from its left and lower side.
int AxisMarginLeft(double textSize);
int AxisMarginBelow(double textSize);
/// Pixels on each side of a solid plot for what stands around its box.
int BoxAxisClearance(double textSize);

class Axes {
 public:
  /// Axes of a flat plot stand in the margin, those of a solid one in the plot.
  Axes(vtkRenderer* margin, vtkRenderer* plot);

  void Hide();
  void ShowFlat(const PlotCamera& camera, double textSize, double scale);
  void ShowSolid(const PlotCamera& camera, const DataBox& data, double textSize, double scale);
  /// Those that stand in the plot, in the order in which they are drawn.
  void AppendActors(std::vector<vtkProp*>& actors) const {
    if (m_box != nullptr) actors.push_back(m_box);
    m_solidLines.AppendActors(actors);
    m_solidTexts.AppendActors(actors);
  }

 private:
  /// The box itself stands among the data, which hide its far edges.
  void ShowBox(const DataBox& data, double scale);
  void HideBox();

  vtkRenderer* m_plot;
  vtkSmartPointer<vtkActor> m_box;
  DataBox m_boxed;
  FlatLayer m_flatLines;
  TextLayer m_flatTexts;
  FlatLayer m_solidLines;
  TextLayer m_solidTexts;
};

class OrientationMarker {
 public:
  explicit OrientationMarker(vtkRenderer* plot);

  void Hide();
  void Show(const PlotCamera& camera, double textSize, double scale);
  void AppendActors(std::vector<vtkProp*>& actors) const {
    for (const FlatLayer& arrow : m_arrows) arrow.AppendActors(actors);
    m_names.AppendActors(actors);
  }

 private:
  std::array<FlatLayer, 3> m_arrows;
  TextLayer m_names;
};

}  // namespace qelhost
