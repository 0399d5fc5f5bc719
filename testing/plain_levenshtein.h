// plain_levenshtein.h: the textbook edit distance in two rows, with ASCII letters folded as the
// library's similarity code compares them. The reference that TStrSimilar's tests, fuzzer and
// benchmark measure against (header only, so the fuzz build can use it without zeb_testing).
//
//   std::vector<unsigned> prev, row;   // reused across calls
//   unsigned d = zeb::testing::plainLevenshtein("kitten", "sitting", prev, row);   // 3
#ifndef ZEB_TESTING_PLAIN_LEVENSHTEIN_H
#define ZEB_TESTING_PLAIN_LEVENSHTEIN_H

#include <algorithm>
#include <string>
#include <vector>

namespace zeb {
namespace testing {

inline unsigned char foldLetter(unsigned char c) {
  return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 32) : c;
}

inline unsigned plainLevenshtein(const std::string& a, const std::string& b,
                                 std::vector<unsigned>& prev, std::vector<unsigned>& row) {
  prev.resize(b.size() + 1);
  row.resize(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) prev[j] = static_cast<unsigned>(j);
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = static_cast<unsigned>(i);
    const unsigned char ca = foldLetter(static_cast<unsigned char>(a[i - 1]));
    for (size_t j = 1; j <= b.size(); ++j) {
      const unsigned cost = ca == foldLetter(static_cast<unsigned char>(b[j - 1])) ? 0 : 1;
      row[j] = std::min({prev[j] + 1, row[j - 1] + 1, prev[j - 1] + cost});
    }
    std::swap(prev, row);
  }
  return prev[b.size()];
}

inline unsigned plainLevenshtein(const std::string& a, const std::string& b) {
  std::vector<unsigned> prev, row;
  return plainLevenshtein(a, b, prev, row);
}

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_PLAIN_LEVENSHTEIN_H
