#include "MacroVocabulary.h"

#include <utility>

namespace qelvane::qelutiltools {

MacroVocabulary::MacroVocabulary(std::map<std::int32_t, std::string> texts)
    : idToText(std::move(texts)) {
  for (const auto& [id, text] : idToText) textToId[text] = id;
}

const std::string& MacroVocabulary::TextOf(std::int32_t id) const {
  static const std::string none;
  const auto entry = idToText.find(id);
  return entry == idToText.end() ? none : entry->second;
}

MacroVocabulary CommandVocabulary() {
  return MacroVocabulary({{Command_UndoAlter, "UNDOALTER"},
                          {Command_UndoBlank, "UNDOBLANK"},
                          {Command_PickRectangle, "PICKRECTANGLE"},
                          {Command_PickCircle, "PICKCIRCLE"},
                          {Command_PickPolygon, "PICKPOLYGON"},
                          {Command_PickCube, "PICKCUBE"},
                          {Command_PickSphere, "PICKSPHERE"},
                          {Command_AlterElement, "ALTERELEMENT"},
                          {Command_BlankElement, "BLANKELEMENT"},
                          {Command_AlterSurface, "ALTERSURFACE"},
                          {Command_BlankSurface, "BLANKSURFACE"},
                          {Command_AlterArea, "ALTERAREA"},
                          {Command_BlankArea, "BLANKAREA"},
                          {Command_ViewXY, "VIEWXY"},
                          {Command_ViewXZ, "VIEWXZ"},
                          {Command_ViewYZ, "VIEWYZ"},
                          {Command_View3D, "VIEW3D"},
                          {Command_PickGeometry, "PICKGEOMETRY"}});
}

MacroVocabulary AttributeVocabulary() {
  return MacroVocabulary({{Attribute_Mode, "MODE"},
                          {Attribute_Rule, "RULE"},
                          {Attribute_Variable, "VARIABLE"},
                          {Attribute_Modifier, "MODIFIER"},
                          {Attribute_Zone, "ZONE"},
                          {Attribute_SeedPoint, "SEEDPOINT"},
                          {Attribute_Element, "ELEMENT"},
                          {Attribute_AnchorX, "ANCHORX"},
                          {Attribute_AnchorY, "ANCHORY"},
                          {Attribute_AnchorZ, "ANCHORZ"},
                          {Attribute_SizeX, "SIZEX"},
                          {Attribute_SizeY, "SIZEY"},
                          {Attribute_SizeZ, "SIZEZ"},
                          {Attribute_RotateX, "ROTATEX"},
                          {Attribute_RotateY, "ROTATEY"},
                          {Attribute_RotateZ, "ROTATEZ"},
                          {Attribute_Radius, "RADIUS"},
                          {Attribute_Corners, "CORNERS"}});
}

MacroVocabulary KeywordVocabulary() {
  return MacroVocabulary({{Keyword_T, "T"},
                          {Keyword_F, "F"},
                          {Keyword_True, "TRUE"},
                          {Keyword_False, "FALSE"},
                          {Keyword_Yes, "YES"},
                          {Keyword_No, "NO"},
                          {Keyword_Blank, "BLANK"},
                          {Keyword_Alter, "ALTER"},
                          {Keyword_Off, "OFF"},
                          {Keyword_Element, "ELEMENT"},
                          {Keyword_Rectangle, "RECTANGLE"},
                          {Keyword_Circle, "CIRCLE"},
                          {Keyword_Polygon, "POLYGON"},
                          {Keyword_Cube, "CUBE"},
                          {Keyword_Sphere, "SPHERE"},
                          {Keyword_AllInside, "ALLINSIDE"},
                          {Keyword_AnyInside, "ANYINSIDE"},
                          {Keyword_AllOutside, "ALLOUTSIDE"},
                          {Keyword_AnyOutside, "ANYOUTSIDE"}});
}

}  // namespace qelvane::qelutiltools
