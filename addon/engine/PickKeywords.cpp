#include "PickKeywords.h"

#include <map>

namespace qelvane::qelutiltools {

namespace {

using KeywordMap = std::map<std::int32_t, std::int32_t>;

/// Constructed empty when the library is loaded, filled at registration.
KeywordMap pickKindKeywords;
KeywordMap keywordPickKinds;
KeywordMap pickRuleKeywords;
KeywordMap keywordPickRules;

KeywordMap ReverseOf(const KeywordMap& map) {
  KeywordMap reverse;
  for (const auto& [code, keyword] : map) reverse[keyword] = code;
  return reverse;
}

std::int32_t Find(const KeywordMap& map, std::int32_t key) {
  const auto entry = map.find(key);
  return entry == map.end() ? kNoKeywordEntry : entry->second;
}

}  // namespace

void FillPickKeywordMaps() {
  pickKindKeywords = {{0, 9}, {1, 10}, {2, 11}, {3, 13}, {4, 12}, {5, 14}, {6, 15}};
  pickRuleKeywords = {{0, 17}, {1, 19}, {2, 16}, {3, 18}};
  keywordPickKinds = ReverseOf(pickKindKeywords);
  keywordPickRules = ReverseOf(pickRuleKeywords);
}

std::int32_t KeywordOfPickKind(PickKind kind) {
  return Find(pickKindKeywords, static_cast<std::int32_t>(kind));
}

std::int32_t KeywordOfPickRule(PickRule rule) {
  return Find(pickRuleKeywords, static_cast<std::int32_t>(rule));
}

std::int32_t PickKindOfKeyword(std::int32_t keyword) { return Find(keywordPickKinds, keyword); }

std::int32_t PickRuleOfKeyword(std::int32_t keyword) { return Find(keywordPickRules, keyword); }

}  // namespace qelvane::qelutiltools
