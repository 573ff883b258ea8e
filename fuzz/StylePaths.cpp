// Any path of a style: refused without a change, or set to what is read back.
#include "Input.h"

#include "Styles.h"

#include "qelvane/Keywords.h"

#include <cmath>

namespace {

using namespace qelhost;

constexpr LgIndex_t kVariableCount = 5;

std::string Word(Input& input) {
  static constexpr const char* kWords[] = {SV_BLANKING,
                                           SV_VALUE,
                                           SV_INCLUDE,
                                           SV_BLANKENTIRECELL,
                                           SV_VALUEBLANKCELLMODE,
                                           SV_CONSTRAINT,
                                           SV_VARA,
                                           SV_VARB,
                                           SV_RELOP,
                                           SV_CONSTRAINTOP2MODE,
                                           SV_VALUECUTOFF,
                                           "FIELDMAP",
                                           "SHADE",
                                           "SHOW",
                                           "SURFACES",
                                           "SURFACESTOPLOT",
                                           "EFFECTS",
                                           "USEVALUEBLANKING",
                                           "VOLUMEMODE",
                                           "VOLUMEOBJECTSTOPLOT",
                                           "SHOWSLICES",
                                           "SHOWISOSURFACES",
                                           "SHOWSTREAMTRACES",
                                           "EDGELAYER",
                                           "MESH",
                                           "COLOR",
                                           "LINETHICKNESS",
                                           "EDGE",
                                           "CONTOUR",
                                           "SCATTER",
                                           "VECTOR"};
  constexpr int kCount = sizeof kWords / sizeof *kWords;
  const int n = input.Take<std::uint8_t>();
  return n < kCount ? kWords[n] : input.Text();
}

StyleAddress Address(Input& input) {
  StyleAddress address;
  for (int n = input.Below(7); n > 0; --n) address.path.push_back(Word(input));
  address.offset1 = input.Flag() ? input.Below(11) - 1 : input.Take<LgIndex_t>();
  for (int n = input.Below(4); n > 0; --n) {
    address.maps.push_back(input.Flag() ? 1 + input.Below(4) : input.Take<LgIndex_t>());
  }
  return address;
}

void DemandSound(const ValueBlanking& blanking) {
  Demand(blanking.cellMode >= 0 && blanking.cellMode <= 2, "the cell mode is one of three");
  for (const BlankConstraint& constraint : blanking.constraints) {
    Demand(constraint.varA >= 0 && constraint.varA <= kVariableCount, "variable A is one");
    Demand(constraint.varB >= 0 && constraint.varB <= kVariableCount, "variable B is one");
    Demand(constraint.relOp >= 0 && constraint.relOp <= 5, "the relation is one of six");
    Demand(constraint.op2Mode >= 0 && constraint.op2Mode <= 1, "the operand is one of two");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Styles styles;
  while (!input.IsAtEnd()) {
    const StyleAddress address = Address(input);
    const double value = input.Coordinate();
    const ArbParam_t integer = input.Flag() ? IntegerOf(value) : input.Take<ArbParam_t>();
    const StyleSetter setter = input.Flag() ? StyleSetter::Host : StyleSetter::AddOn;
    const QelSetValueResult_e result =
        SetStyle(styles, address, integer, value, kVariableCount, setter);
    DemandSound(styles.blanking);
    ArbParam_t integerNow = 0;
    double valueNow = 0.0;
    const QelSetValueResult_e read = GetStyle(styles, address, &integerNow, &valueNow);
    GetStyle(styles, address, nullptr, nullptr);
    if (result != SetValueResult_Ok) continue;
    Demand(read == SetValueResult_Ok, "what is set can be read");
    if (std::isnan(value)) continue;
    Demand(SetStyle(styles, address, integer, value, kVariableCount, setter) ==
               SetValueResult_Duplicate,
           "set once more it stays");
  }
  return 0;
}
