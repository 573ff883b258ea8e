#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace qelvane::qelutiltools {

/// The ids of the commands, attributes and value keywords. They are part of recorded behaviour:
/// the tables of MacroVocabulary.cpp spell them, the dispatcher and the getters use them.
enum MacroCommandId : std::int32_t {
  Command_None = -1,  ///< an empty line
  Command_UndoAlter = 0,
  Command_UndoBlank = 1,
  Command_PickRectangle = 2,
  Command_PickCircle = 3,
  Command_PickPolygon = 4,
  Command_PickCube = 5,
  Command_PickSphere = 6,
  Command_AlterElement = 7,
  Command_BlankElement = 8,
  Command_AlterSurface = 9,
  Command_BlankSurface = 10,
  Command_AlterArea = 11,
  Command_BlankArea = 12,
  Command_ViewXY = 13,
  Command_ViewXZ = 14,
  Command_ViewYZ = 15,
  Command_View3D = 16,
  Command_PickGeometry = 17
};

enum MacroAttributeId : std::int32_t {
  Attribute_Mode = 0,
  Attribute_Rule = 1,
  Attribute_Variable = 2,
  Attribute_Modifier = 3,
  Attribute_Zone = 4,
  Attribute_SeedPoint = 5,
  Attribute_Element = 6,
  Attribute_AnchorX = 7,
  Attribute_AnchorY = 8,
  Attribute_AnchorZ = 9,
  Attribute_SizeX = 10,
  Attribute_SizeY = 11,
  Attribute_SizeZ = 12,
  Attribute_RotateX = 13,
  Attribute_RotateY = 14,
  Attribute_RotateZ = 15,
  Attribute_Radius = 16,
  Attribute_Corners = 17
};

enum MacroKeywordId : std::int32_t {
  Keyword_T = 1,
  Keyword_F = 2,
  Keyword_True = 3,
  Keyword_False = 4,
  Keyword_Yes = 5,
  Keyword_No = 6,
  Keyword_Blank = 7,
  Keyword_Alter = 8,
  Keyword_Off = 9,
  Keyword_Element = 10,
  Keyword_Rectangle = 11,
  Keyword_Circle = 12,
  Keyword_Polygon = 13,
  Keyword_Cube = 14,
  Keyword_Sphere = 15,
  Keyword_AllInside = 16,
  Keyword_AnyInside = 17,
  Keyword_AllOutside = 18,
  Keyword_AnyOutside = 19,
  Keyword_EndOfList = 20  ///< ends the list of pairs of GetKeywordMapped
};

/// One vocabulary, both ways; the second map is filled from the first, so the two always agree.
struct MacroVocabulary {
  explicit MacroVocabulary(std::map<std::int32_t, std::string> texts);

  /// The keyword of an id, empty when there is none.
  const std::string& TextOf(std::int32_t id) const;

  std::map<std::int32_t, std::string> idToText;
  std::map<std::string, std::int32_t> textToId;
};

/// The three vocabularies. Keywords are in upper case.
MacroVocabulary CommandVocabulary();
MacroVocabulary AttributeVocabulary();
MacroVocabulary KeywordVocabulary();

}  // namespace qelvane::qelutiltools
