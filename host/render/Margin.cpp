#include "Margin.h"

#include <vtkNew.h>
#include <vtkProperty2D.h>
#include <vtkScalarBarActor.h>
#include <vtkTextProperty.h>

#include <tuple>

#include "Actors.h"

namespace qelhost {

bool MarginContent::operator==(const MarginContent& other) const {
  const auto all = [](const MarginContent& c) {
    return std::tie(c.caption, c.variable, c.colourMap, c.min, c.max, c.width, c.height,
                    c.textSize);
  };
  return all(*this) == all(other);
}

vtkSmartPointer<vtkLookupTable> MakeColourTable(const std::string& colourMap, double min,
                                                double max) {
  constexpr int kColourCount = 256;
  auto table = vtkSmartPointer<vtkLookupTable>::New();
  table->SetNumberOfTableValues(kColourCount);
  for (int n = 0; n < kColourCount; ++n) {
    const Colour colour = ColourAt(colourMap, n / (kColourCount - 1.0));
    table->SetTableValue(n, colour[0], colour[1], colour[2], 1.0);
  }
  table->SetNanColor(0.5, 0.5, 0.5, 1.0);
  table->SetRange(min, max);
  return table;
}

void MarginDrawing::Update(const MarginContent& content) {
  if (content == m_shown) return;
  m_shown = content;
  for (const auto& actor : m_actors) m_renderer->RemoveViewProp(actor);
  m_actors.clear();
  if (!m_shown.variable.empty()) AddLegend();
  if (!m_shown.caption.empty()) {
    m_actors.emplace_back(MakeText(m_shown.caption, 0.03 * m_shown.width, 0.935 * m_shown.height,
                                   m_shown.textSize * 40.0 / 28.0));
  }
  for (const auto& actor : m_actors) m_renderer->AddViewProp(actor);
}

void MarginDrawing::AddLegend() {
  constexpr int kLabels = 5;
  const double max = m_shown.max > m_shown.min ? m_shown.max : m_shown.min + 1.0;
  vtkNew<vtkScalarBarActor> legend;
  legend->SetLookupTable(MakeColourTable(m_shown.colourMap, m_shown.min, max));
  legend->SetNumberOfLabels(kLabels);
  legend->SetLabelFormat("%-.4g");
  legend->SetUnconstrainedFontSize(true);
  legend->SetPosition(0.845, 0.14);
  legend->SetWidth(0.12);
  legend->SetHeight(0.66);
  legend->SetBarRatio(0.22);
  vtkTextProperty* const text = legend->GetLabelTextProperty();
  text->ShallowCopy(MakeText("", 0.0, 0.0, m_shown.textSize)->GetTextProperty());
  m_actors.emplace_back(legend);
  m_actors.emplace_back(MakeText(m_shown.variable, 0.85 * m_shown.width, 0.83 * m_shown.height,
                                 m_shown.textSize * 40.0 / 32.0));
}

}  // namespace qelhost
