// wildcard.h: whole-text matching of names against patterns with '*' (any run of characters,
// the empty run included) and '?' (exactly one character). Every other pattern character
// matches only itself; matching is case-sensitive and has no escape character. An empty pattern
// matches only the empty text; a pattern of only '*' matches everything. A null text or pattern
// reads as "".
//
// All variants give the same answer; they differ in method and cost:
//   wildcardMatch / wildcardMatchW      iterative, no recursion, no allocation: the one to use.
//   wildcardMatchNormal                 recursive backtracking.
//   wildcharMatchSlow2                  table-driven, memory ~ text x pattern: the reference.
// The *Len forms use only the first `patternLen` pattern characters (a negative length: all).
//
//   if (wildcardMatch("report-2024.csv", "report-*.csv")) { ... }
#ifndef ZEB_STRINGS_WILDCARD_H
#define ZEB_STRINGS_WILDCARD_H

#include "zeb/zeb_api.h"

extern "C" {

ZEB_API bool wildcardMatch(const char* text, const char* pattern);
ZEB_API bool wildcardMatchW(const zwchar_t* text, const zwchar_t* pattern);
ZEB_API bool wildcardMatchLen(const char* text, const char* pattern, int patternLen);
ZEB_API bool wildcardMatchLenW(const zwchar_t* text, const zwchar_t* pattern, int patternLen);

ZEB_API bool wildcardMatchNormal(const char* text, const char* pattern);
ZEB_API bool wildcardMatchNormalLen(const char* text, const char* pattern, int patternLen);

ZEB_API bool wildcharMatchSlow2(const char* text, const char* pattern);
ZEB_API bool wildcharMatchSlow(const char* text, const char* pattern);

}  // extern "C"

#endif  // ZEB_STRINGS_WILDCARD_H
