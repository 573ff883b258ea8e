// Any modifier: refused, or it has an operand, an inverse that fits and a text that means the same.
#include "Input.h"

#include "ValueModifier.h"

#include <cmath>

using namespace qelvane::qelutiltools;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto modifier = ParseModifierText(text);
  if (!modifier) return 0;
  Demand(modifier->op <= ValueModifier::kDivide, "there are five operators");
  Demand(modifier->op != ValueModifier::kDivide || modifier->value != 0.0, "nothing divides by 0");
  for (const double current : {0.0, -0.0, 1.0, -2.5e300, 5e-324, HUGE_VAL, std::nan("")}) {
    const double result = ApplyModifier(*modifier, current);
    const auto inverse = InverseOf(*modifier);
    if (!inverse || !std::isfinite(result) || !std::isfinite(modifier->value)) continue;
    static_cast<void>(ApplyModifier(*inverse, result));
  }
  const std::string shown = FormatModifier(*modifier);
  const auto again = ParseModifierText(shown);
  // What begins with a letter, infinity and what is no number, is shown but not read.
  if (!std::isfinite(modifier->value)) return 0;
  Demand(again.has_value(), "a shown modifier is read");
  Demand(again->op == modifier->op, "it has the same operator");
  Demand(FormatModifier(*again) == shown, "and is shown as before");
  return 0;
}
