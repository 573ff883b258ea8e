#pragma once

#include "ValueBlanking.h"

#include "qelvane/Types.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace qelhost {

/// How one layer of a zone is drawn.
struct LayerStyle {
  bool show = true;
  LgIndex_t color = ColorIndex_Black;
  double lineThickness = 0.1;  ///< percent of the frame
};

enum class Layer { Edge, Mesh, Shade, Contour, Scatter, Vector };
constexpr std::size_t kLayerCount = 6;

/// The style map that draws one zone.
struct FieldMap {
  std::array<LayerStyle, kLayerCount> layers;
  LgIndex_t surfacesToPlot = 0;
  bool useValueBlanking = true;
  bool showSlices = false;
  bool showIsosurfaces = false;
  bool showStreamtraces = false;
};

/// The layer of a keyword such as SHOWMESH; false when it names none.
bool LayerOfKeyword(const std::string& keyword, Layer& layer);

/// Everything that a frame's plot can be styled with. Field maps count as the zones do.
class Styles {
 public:
  ValueBlanking blanking;
  std::array<bool, kLayerCount> layerActive{true, false, true, false, false, false};
  LgIndex_t contourVariable = 0;

  /// The map of a zone, from 1, made when missing.
  FieldMap& MapOf(LgIndex_t zone) { return m_maps[zone]; }
  /// Forgets the maps of deleted zones and renumbers those of the zones behind them.
  void DropZones(const std::vector<LgIndex_t>& zones);

 private:
  std::map<LgIndex_t, FieldMap> m_maps;
};

/// One style setting that was addressed by its path.
///
/// path     P1, P2, ...
/// offset1  OFFSET1, 0 when not given
/// maps     the field maps of OBJECTSET
struct StyleAddress {
  std::vector<std::string> path;
  LgIndex_t offset1 = 0;
  std::vector<LgIndex_t> maps;
};

/// A style's value as an integer, cut off towards 0: 0 for NaN, and a number that no setting takes
/// for one out of range.
ArbParam_t IntegerOf(double value);

/// Who sets a style.
enum class StyleSetter { Host, AddOn };

/// Sets what the address names. value is used by number settings, otherwise integer. The variable
/// count bounds variable numbers.
QelSetValueResult_e SetStyle(Styles& styles, const StyleAddress& address, ArbParam_t integer,
                             double value, LgIndex_t variableCount,
                             StyleSetter setter = StyleSetter::Host);

/// Reads what the address names into the pointer that fits the setting; a null one is not written.
QelSetValueResult_e GetStyle(Styles& styles, const StyleAddress& address, ArbParam_t* integer,
                             double* value);

}  // namespace qelhost
