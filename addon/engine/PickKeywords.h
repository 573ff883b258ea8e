#pragma once

#include "PickTypes.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// What a lookup in the keyword maps yields when there is no entry.
constexpr std::int32_t kNoKeywordEntry = 255;

/// Fills the pick-kind and pick-rule maps and their reverses; called once, at load.
void FillPickKeywordMaps();

/// The value keyword of a pick kind or rule, and back.
std::int32_t KeywordOfPickKind(PickKind kind);
std::int32_t KeywordOfPickRule(PickRule rule);
std::int32_t PickKindOfKeyword(std::int32_t keyword);
std::int32_t PickRuleOfKeyword(std::int32_t keyword);

}  // namespace qelvane::qelutiltools
