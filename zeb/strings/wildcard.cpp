// wildcard.cpp: the matchers of wildcard.h. The iterative matcher is a template over the
// character type shared by the 8-bit and 16-bit entry points; the recursive and table-driven
// matchers exist for 8-bit text only.
#include "zeb/strings/wildcard.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "zeb/strings/internal/units.h"

namespace {

constexpr char kAnyRun = '*';
constexpr char kAnyOne = '?';

using zeb::internal::orEmpty;

// Number of pattern characters in use: all of them for a negative `limit`, otherwise at most
// `limit`, never past the terminating NUL.
template <typename CharT>
size_t patternLength(const CharT* pattern, int limit) {
  if (limit < 0) return std::char_traits<CharT>::length(pattern);
  size_t n = 0;
  while (n < static_cast<size_t>(limit) && pattern[n]) ++n;
  return n;
}

template <typename CharT>
bool charMatches(CharT patternChar, CharT textChar) {
  return patternChar == CharT(kAnyOne) || patternChar == textChar;
}

// True when the star-free `segment` of `n` characters matches the `n` text characters at `text`.
template <typename CharT>
bool segmentMatchesAt(const CharT* text, const CharT* segment, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (!charMatches(segment[i], text[i])) return false;
  }
  return true;
}

// The leftmost place in [text, textEnd) where the star-free `segment` of `n` (> 0) characters
// matches, or null.
template <typename CharT>
const CharT* findSegment(const CharT* text, const CharT* textEnd, const CharT* segment, size_t n) {
  if (static_cast<size_t>(textEnd - text) < n) return nullptr;
  const CharT* lastStart = textEnd - n;
  const CharT first = segment[0];
  while (text <= lastStart) {
    if (first != CharT(kAnyOne)) {
      text = std::char_traits<CharT>::find(text, static_cast<size_t>(lastStart - text) + 1, first);
      if (!text) return nullptr;
    }
    if (segmentMatchesAt(text + 1, segment + 1, n - 1)) return text;
    ++text;
  }
  return nullptr;
}

// Matches the text [text, textEnd) against a pattern that begins and ends with '*' (the star at
// `lastStar` closes it). Between the stars lie star-free segments; each one taken at its leftmost
// place leaves the most text for the rest, so no backtracking is needed.
template <typename CharT>
bool segmentsFoundInOrder(const CharT* text, const CharT* textEnd, const CharT* firstStar,
                          const CharT* lastStar) {
  for (const CharT* star = firstStar; star != lastStar;) {
    const CharT* segment = star + 1;
    const CharT* segmentEnd = std::find(segment, lastStar, CharT(kAnyRun));
    const size_t n = static_cast<size_t>(segmentEnd - segment);
    if (n > 0) {
      text = findSegment(text, textEnd, segment, n);
      if (!text) return false;
      text += n;
    }
    star = segmentEnd;
  }
  return true;
}

// Iterative match: the part before the first '*' and the part after the last '*' are fixed in
// place at the two ends of the text; the segments between are found left to right.
template <typename CharT>
bool matchIterative(const CharT* text, const CharT* pattern, size_t patternLen) {
  const size_t textLen = std::char_traits<CharT>::length(text);
  const CharT* patternEnd = pattern + patternLen;
  const CharT* firstStar = std::find(pattern, patternEnd, CharT(kAnyRun));
  if (firstStar == patternEnd) {
    return textLen == patternLen && segmentMatchesAt(text, pattern, patternLen);
  }
  const CharT* lastStar = patternEnd - 1;
  while (*lastStar != CharT(kAnyRun)) --lastStar;
  const size_t headLen = static_cast<size_t>(firstStar - pattern);
  const size_t tailLen = static_cast<size_t>(patternEnd - lastStar - 1);
  if (textLen < headLen + tailLen) return false;
  const CharT* tailText = text + textLen - tailLen;
  return segmentMatchesAt(text, pattern, headLen) &&
         segmentMatchesAt(tailText, lastStar + 1, tailLen) &&
         segmentsFoundInOrder(text + headLen, tailText, firstStar, lastStar);
}

template <typename CharT>
bool matchIterativeLen(const CharT* text, const CharT* pattern, int patternLen) {
  pattern = orEmpty(pattern);
  return matchIterative(orEmpty(text), pattern, patternLength(pattern, patternLen));
}

// Outcome of the recursive matcher. kAbort means "no later text position can match either":
// the rest of the pattern ran out of text, or failed at every position after a '*'. Stopping the
// outer stars' retries there keeps the recursion polynomial on patterns like "*a*a*a*b".
enum class Outcome { kMatch, kNoMatch, kAbort };

Outcome matchRecursive(const char* text, const char* pattern, const char* patternEnd);

Outcome matchAfterStar(const char* text, const char* star, const char* patternEnd) {
  const char* rest = std::find_if(star, patternEnd, [](char c) { return c != kAnyRun; });
  if (rest == patternEnd) return Outcome::kMatch;
  for (;; ++text) {
    if (*rest != kAnyOne) {
      text = strchr(text, *rest);  // only where the next literal occurs can the rest match
      if (!text) return Outcome::kAbort;
    }
    const Outcome outcome = matchRecursive(text, rest, patternEnd);
    if (outcome != Outcome::kNoMatch) return outcome;
    if (!*text) return Outcome::kAbort;
  }
}

Outcome matchRecursive(const char* text, const char* pattern, const char* patternEnd) {
  for (; pattern != patternEnd; ++pattern, ++text) {
    if (*pattern == kAnyRun) return matchAfterStar(text, pattern, patternEnd);
    if (!*text) return Outcome::kAbort;
    if (!charMatches(*pattern, *text)) return Outcome::kNoMatch;
  }
  return *text ? Outcome::kNoMatch : Outcome::kMatch;
}

// A zeroed block of rows x columns one-byte cells, or null when the size overflows or the
// memory is not there.
std::unique_ptr<unsigned char[]> zeroedCells(size_t rows, size_t columns) {
  if (columns != 0 && rows > SIZE_MAX / columns) return nullptr;
  return std::unique_ptr<unsigned char[]>(new (std::nothrow) unsigned char[rows * columns]());
}

// Full table: row i is the first i text characters, column j the first j pattern characters;
// a cell is 1 when those prefixes match.
bool matchByTable(const char* text, const char* pattern, size_t textLen, size_t patternLen) {
  const size_t columns = patternLen + 1;
  const std::unique_ptr<unsigned char[]> cells = zeroedCells(textLen + 1, columns);
  if (!cells) return matchIterative(text, pattern, patternLen);
  auto cell = [&](size_t i, size_t j) -> unsigned char& { return cells[i * columns + j]; };
  cell(0, 0) = 1;
  for (size_t j = 1; j <= patternLen && pattern[j - 1] == kAnyRun; ++j) cell(0, j) = cell(0, j - 1);
  for (size_t i = 1; i <= textLen; ++i) {
    for (size_t j = 1; j <= patternLen; ++j) {
      const char p = pattern[j - 1];
      if (p == kAnyRun) {
        cell(i, j) = cell(i, j - 1) | cell(i - 1, j);
      } else if (charMatches(p, text[i - 1])) {
        cell(i, j) = cell(i - 1, j - 1);
      }
    }
  }
  return cell(textLen, patternLen) != 0;
}

// Two columns of the same table, walking the pattern one character at a time: memory ~ text.
// Stops early once no text prefix matches the pattern prefix any more.
bool matchByColumns(const char* text, const char* pattern, size_t textLen, size_t patternLen) {
  const std::unique_ptr<unsigned char[]> cells = zeroedCells(2, textLen + 1);
  if (!cells) return matchIterative(text, pattern, patternLen);
  unsigned char* previous = cells.get();
  unsigned char* current = previous + textLen + 1;
  previous[0] = 1;
  for (size_t j = 0; j < patternLen; ++j) {
    const char p = pattern[j];
    current[0] = p == kAnyRun ? previous[0] : 0;
    bool anySet = current[0] != 0;
    for (size_t i = 1; i <= textLen; ++i) {
      if (p == kAnyRun) {
        current[i] = previous[i] | current[i - 1];
      } else {
        current[i] = charMatches(p, text[i - 1]) ? previous[i - 1] : 0;
      }
      anySet |= current[i] != 0;
    }
    if (!anySet) return false;
    std::swap(previous, current);
  }
  return previous[textLen] != 0;
}

using TableMatcher = bool (*)(const char*, const char*, size_t, size_t);

bool matchWithTable(const char* text, const char* pattern, TableMatcher matcher) {
  text = orEmpty(text);
  pattern = orEmpty(pattern);
  return matcher(text, pattern, std::char_traits<char>::length(text),
                 std::char_traits<char>::length(pattern));
}

}  // namespace

extern "C" {

bool wildcardMatch(const char* text, const char* pattern) {
  return matchIterativeLen(text, pattern, -1);
}

bool wildcardMatchW(const zwchar_t* text, const zwchar_t* pattern) {
  return matchIterativeLen(text, pattern, -1);
}

bool wildcardMatchLen(const char* text, const char* pattern, int patternLen) {
  return matchIterativeLen(text, pattern, patternLen);
}

bool wildcardMatchLenW(const zwchar_t* text, const zwchar_t* pattern, int patternLen) {
  return matchIterativeLen(text, pattern, patternLen);
}

bool wildcardMatchNormal(const char* text, const char* pattern) {
  return wildcardMatchNormalLen(text, pattern, -1);
}

bool wildcardMatchNormalLen(const char* text, const char* pattern, int patternLen) {
  pattern = orEmpty(pattern);
  const char* patternEnd = pattern + patternLength(pattern, patternLen);
  return matchRecursive(orEmpty(text), pattern, patternEnd) == Outcome::kMatch;
}

bool wildcharMatchSlow2(const char* text, const char* pattern) {
  return matchWithTable(text, pattern, matchByTable);
}

bool wildcharMatchSlow(const char* text, const char* pattern) {
  return matchWithTable(text, pattern, matchByColumns);
}

}  // extern "C"
