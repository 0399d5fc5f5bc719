// Fuzzing of TStrSimilar on arbitrary pairs: the input is split at its first NUL into two
// strings (the second ends at the next NUL). Every score lies in 0..100; the distance without a
// limit equals a plain two-row programme; a limited distance either equals the full distance or
// exceeds the limit. One object serves every input, so the matrix is reused across sizes.
#include <stddef.h>
#include <stdint.h>

#include <string>

#include "fuzz/fuzz_input.h"
#include "testing/plain_levenshtein.h"
#include "zeb/formats/TStrSimilar.h"

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
  FUZZ_CHECK(full == zeb::testing::plainLevenshtein(a, b));
  const unsigned limit = size % 7;
  const unsigned stopped = similar.distance(pa, pb, limit);
  FUZZ_CHECK(stopped == full || (limit != 0 && stopped > limit));

  const unsigned p = static_cast<unsigned>(size % 120);
  const unsigned scores[] = {
      similar.similarity_proportion(pa, pb),      similar.similarity_dkl_s(pa, pb, p),
      similar.similarityWords_proportion(pa, pb), similar.similarityWords_dkl(pa, pb, p),
      similar.similarity_InterSec(pa, pb),        similar.similarity_InterSecNoCase(pa, pb),
      similar.simlarity_composite(pa, pb)};
  for (unsigned s : scores) FUZZ_CHECK(s <= 100);
  return 0;
}
