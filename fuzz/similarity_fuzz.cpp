// Fuzzing of TStrSimilar on arbitrary pairs: the input is split at its first NUL into two
// strings (the second ends at the next NUL). Every score lies in 0..100; the distance without a
// limit equals a plain two-row programme; a limited distance either equals the full distance or
// exceeds the limit. One object serves every input, so the matrix is reused across sizes.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "zeb/formats/TStrSimilar.h"

namespace {

void check(bool ok) {
  if (!ok) abort();
}

unsigned char upper(unsigned char c) {
  return c >= 'a' && c <= 'z' ? c - 32 : c;
}

unsigned plainDistance(const std::string& a, const std::string& b) {
  std::vector<unsigned> prev(b.size() + 1), row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) prev[j] = static_cast<unsigned>(j);
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = static_cast<unsigned>(i);
    for (size_t j = 1; j <= b.size(); ++j) {
      const unsigned cost = upper(a[i - 1]) == upper(b[j - 1]) ? 0 : 1;
      row[j] = std::min({prev[j] + 1, row[j - 1] + 1, prev[j - 1] + cost});
    }
    std::swap(prev, row);
  }
  return prev[b.size()];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  static TStrSimilar similar;
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t split = input.find('\0');
  const std::string a = input.substr(0, split);
  const std::string b = split == std::string::npos ? "" : std::string(input.c_str() + split + 1);
  const char* pa = a.c_str();
  const char* pb = b.c_str();

  const unsigned full = similar.distance(pa, pb, 0);
  check(full == plainDistance(a, b));
  const unsigned limit = size % 7;
  const unsigned stopped = similar.distance(pa, pb, limit);
  check(stopped == full || (limit != 0 && stopped > limit));

  const unsigned p = static_cast<unsigned>(size % 120);
  const unsigned scores[] = {
      similar.similarity_proportion(pa, pb),   similar.similarity_dkl_s(pa, pb, p),
      similar.similarityWords_proportion(pa, pb), similar.similarityWords_dkl(pa, pb, p),
      similar.similarity_InterSec(pa, pb),     similar.similarity_InterSecNoCase(pa, pb),
      similar.simlarity_composite(pa, pb)};
  for (unsigned s : scores) check(s <= 100);
  return 0;
}
