// String similarity. The edit distance runs one unit-cost dynamic programme over bytes or words,
// in the object's matrix (or two rows when no matrix can be had). Without a limit the byte
// distance takes a bit-parallel path instead (Myers' algorithm in Hyyrö's formulation, 64 rows
// per machine word), which gives the same value as the programme: only the early stop needs the
// programme's diagonal cells.

#include "zeb/formats/TStrSimilar.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <vector>

#include "zeb/strings/internal/units.h"

namespace {

constexpr unsigned kCounted = 255;  // counters per string: bytes 0-254
constexpr unsigned char kFirstOverlap = 32, kLastOverlap = 126;
// A larger side would need more than 2^32 cells; such lengths use two rows.
constexpr unsigned kMaxMatrixSide = 65535;

using zeb::internal::foldUpper;
using zeb::internal::isEmptyText;

unsigned textLength(const char* s) {
  return s == nullptr ? 0 : static_cast<unsigned>(strlen(s));
}

// ---- sequences ----------------------------------------------------------------------------------

struct ByteSequence {
  const unsigned char* bytes;
  unsigned count;

  explicit ByteSequence(const char* s)
      : bytes(reinterpret_cast<const unsigned char*>(s)), count(textLength(s)) {}
  unsigned size() const { return count; }
  bool equal(unsigned i, const ByteSequence& other, unsigned j) const {
    return foldUpper(bytes[i]) == foldUpper(other.bytes[j]);
  }
};

inline bool isWordByte(unsigned char c) {
  return static_cast<signed char>(c) >= 33 && c != '~';
}

struct WordSequence {
  struct Span {
    const unsigned char* start;
    unsigned length;
  };
  std::vector<Span> words;

  explicit WordSequence(const char* s) {
    const auto* p = reinterpret_cast<const unsigned char*>(s == nullptr ? "" : s);
    while (*p != 0) {
      if (!isWordByte(*p)) {
        ++p;
        continue;
      }
      const unsigned char* start = p;
      while (isWordByte(*p)) ++p;
      words.push_back({start, static_cast<unsigned>(p - start)});
    }
  }
  unsigned size() const { return static_cast<unsigned>(words.size()); }
  bool equal(unsigned i, const WordSequence& other, unsigned j) const {
    const Span& x = words[i];
    const Span& y = other.words[j];
    if (x.length != y.length) return false;
    for (unsigned k = 0; k < x.length; ++k)
      if (foldUpper(x.start[k]) != foldUpper(y.start[k])) return false;
    return true;
  }
};

// ---- the dynamic programme ---------------------------------------------------------------------

// Levenshtein over a[0, la) and b[0, lb) (offsets into the sequences applied by `equal`), row by
// row; rowAt(i) gives row i's storage, at least lb + 1 cells. With limit non-zero the first
// diagonal cell above the limit is returned as soon as it is computed.
template <typename RowAt, typename Equal>
unsigned dynamicProgramme(unsigned la, unsigned lb, unsigned limit, RowAt rowAt, Equal equal) {
  unsigned* first = rowAt(0);
  for (unsigned j = 0; j <= lb; ++j) first[j] = j;
  for (unsigned i = 1; i <= la; ++i) {
    const unsigned* prev = rowAt(i - 1);
    unsigned* row = rowAt(i);
    row[0] = i;
    for (unsigned j = 1; j <= lb; ++j) {
      const unsigned gap = (prev[j] < row[j - 1] ? prev[j] : row[j - 1]) + 1;
      const unsigned diagonal = prev[j - 1] + (equal(i - 1, j - 1) ? 0 : 1);
      row[j] = gap < diagonal ? gap : diagonal;
    }
    if (limit != 0 && i <= lb && row[i] > limit) return row[i];
  }
  return rowAt(la)[lb];
}

// ---- the bit-parallel distance -------------------------------------------------------------------

// The distance between pattern p (1 <= m) and text t, computed column by column over the text
// with the pattern's rows packed 64 to a machine word. peq holds 256 * blocks zeroed words, vp
// and vn `blocks` words each, blocks = ceil(m / 64).
unsigned bitParallelCore(const unsigned char* p, unsigned m, const unsigned char* t, unsigned n,
                         unsigned blocks, uint64_t* peq, uint64_t* vp, uint64_t* vn) {
  for (unsigned i = 0; i < m; ++i)
    peq[foldUpper(p[i]) * blocks + i / 64] |= uint64_t{1} << (i % 64);
  for (unsigned w = 0; w < blocks; ++w) {
    vp[w] = ~uint64_t{0};
    vn[w] = 0;
  }
  const uint64_t lastRow = uint64_t{1} << ((m - 1) % 64);
  unsigned score = m;
  for (unsigned j = 0; j < n; ++j) {
    const uint64_t* eqs = &peq[foldUpper(t[j]) * blocks];
    uint64_t carryPlus = 1, carryMinus = 0;  // the row-0 boundary rises by one per column
    for (unsigned w = 0; w < blocks; ++w) {
      uint64_t eq = eqs[w];
      const uint64_t pv = vp[w], mv = vn[w];
      const uint64_t xv = eq | mv;
      eq |= carryMinus;
      const uint64_t xh = (((eq & pv) + pv) ^ pv) | eq;
      uint64_t ph = mv | ~(xh | pv);
      uint64_t mh = pv & xh;
      if (w == blocks - 1) score += ((ph & lastRow) != 0) - ((mh & lastRow) != 0);
      const uint64_t outPlus = ph >> 63, outMinus = mh >> 63;
      ph = (ph << 1) | carryPlus;
      mh = (mh << 1) | carryMinus;
      vp[w] = mh | ~(xv | ph);
      vn[w] = ph & xv;
      carryPlus = outPlus;
      carryMinus = outMinus;
    }
  }
  return score;
}

// The same with the working storage on the stack for patterns of up to 64 bytes.
unsigned bitParallelDistance(const unsigned char* p, unsigned m, const unsigned char* t,
                             unsigned n) {
  const unsigned blocks = (m + 63) / 64;
  if (blocks == 1) {
    uint64_t peq[256] = {}, vp, vn;
    return bitParallelCore(p, m, t, n, 1, peq, &vp, &vn);
  }
  std::vector<uint64_t> peq(256 * static_cast<size_t>(blocks), 0), v(2 * blocks);
  return bitParallelCore(p, m, t, n, blocks, peq.data(), v.data(), v.data() + blocks);
}

// ---- helpers for the scores ---------------------------------------------------------------------

// The rule for empty input: both empty 100, exactly one empty 0. True when it applies.
bool emptyInputScore(const char* a, const char* b, unsigned* score) {
  const bool aEmpty = isEmptyText(a), bEmpty = isEmptyText(b);
  if (!aEmpty && !bEmpty) return false;
  *score = aEmpty && bEmpty ? 100 : 0;
  return true;
}

unsigned proportion(unsigned n, unsigned d) {
  return n == 0 ? 100 : (n - d) * 100 / n;
}

unsigned decayLimit(unsigned p) {
  return p != 0 ? (100 - p) / p : 0;
}

}  // namespace

// ---- the matrix -------------------------------------------------------------------------------

TStrSimilar::~TStrSimilar() {
  deleteDistanceResource();
}

void TStrSimilar::deleteDistanceResource() {
  delete[] matrix;
  matrix = nullptr;
  dim = 0;
}

void TStrSimilar::expandlsBuffer(unsigned int n) {
  if (dim >= n + 1ULL) return;
  deleteDistanceResource();
  const unsigned long long side = n + 1ULL + n / 2;
  if (side > kMaxMatrixSide) return;
  matrix = new (std::nothrow) unsigned int[side * side];
  if (matrix == nullptr) return;
  dim = static_cast<unsigned>(side);
  matrix[0] = 0;
  for (unsigned i = 1; i < dim; ++i) matrix[i * dim] = matrix[i] = i;
}

// ---- distances ----------------------------------------------------------------------------------

template <typename Sequence>
unsigned int TStrSimilar::sequenceDistance(const Sequence& a, const Sequence& b,
                                           unsigned int limit) {
  const unsigned la = a.size(), lb = b.size();
  unsigned start = 0;
  while (start < la && start < lb && a.equal(start, b, start)) ++start;
  unsigned endA = la, endB = lb;
  while (endA > start && endB > start && a.equal(endA - 1, b, endB - 1)) --endA, --endB;
  const unsigned ra = endA - start, rb = endB - start;
  if (ra == 0 || rb == 0) return ra + rb;

  if constexpr (std::is_same_v<Sequence, ByteSequence>) {
    if (limit == 0) {
      return ra <= rb ? bitParallelDistance(a.bytes + start, ra, b.bytes + start, rb)
                      : bitParallelDistance(b.bytes + start, rb, a.bytes + start, ra);
    }
  }
  const auto equal = [&](unsigned i, unsigned j) { return a.equal(start + i, b, start + j); };
  expandlsBuffer(la > lb ? la : lb);
  if (matrix != nullptr) {
    return dynamicProgramme(ra, rb, limit, [&](unsigned i) { return matrix + i * dim; }, equal);
  }
  std::vector<unsigned> rows(2 * (rb + 1ULL));
  return dynamicProgramme(
      ra, rb, limit, [&](unsigned i) { return rows.data() + (i & 1) * (rb + 1ULL); }, equal);
}

unsigned int TStrSimilar::distance(const char* a, const char* b, unsigned int limit) {
  return sequenceDistance(ByteSequence(a), ByteSequence(b), limit);
}

unsigned int TStrSimilar::similarity_proportion(const char* a, const char* b) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  const ByteSequence sa(a), sb(b);
  return proportion(sa.size() > sb.size() ? sa.size() : sb.size(), sequenceDistance(sa, sb, 0));
}

unsigned int TStrSimilar::similarity_dkl_s(const char* a, const char* b, unsigned int p) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  return 100 / (distance(a, b, decayLimit(p)) + 1);
}

unsigned int TStrSimilar::similarityWords_proportion(const char* a, const char* b) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  const WordSequence wa(a), wb(b);
  const unsigned n = wa.size() > wb.size() ? wa.size() : wb.size();
  return proportion(n, sequenceDistance(wa, wb, 0));
}

unsigned int TStrSimilar::similarityWords_dkl(const char* a, const char* b, unsigned int p) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  return 100 / (sequenceDistance(WordSequence(a), WordSequence(b), decayLimit(p)) + 1);
}

// ---- overlap ----------------------------------------------------------------------------------

unsigned int TStrSimilar::overlap(const char* a, const char* b, bool foldCase) {
  memset(firstCounts, 0, sizeof firstCounts);
  memset(secondCounts, 0, sizeof secondCounts);
  const auto count = [foldCase](const char* s, unsigned char* counts) {
    for (const auto* p = reinterpret_cast<const unsigned char*>(s); *p != 0; ++p) {
      const unsigned char c = foldCase ? foldUpper(*p) : *p;
      if (c < kCounted) ++counts[c];
    }
  };
  count(a, firstCounts);
  count(b, secondCounts);
  unsigned inUnion = 0, inBoth = 0;
  for (unsigned c = kFirstOverlap; c <= kLastOverlap; ++c) {
    inUnion += firstCounts[c] != 0 || secondCounts[c] != 0;
    inBoth += firstCounts[c] != 0 && secondCounts[c] != 0;
  }
  return inUnion == 0 ? 0 : inBoth * 100 / inUnion;
}

unsigned int TStrSimilar::similarity_InterSec(const char* a, const char* b) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  return overlap(a, b, false);
}

unsigned int TStrSimilar::similarity_InterSecNoCase(const char* a, const char* b) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  return overlap(a, b, true);
}

unsigned int TStrSimilar::simlarity_composite(const char* a, const char* b) {
  unsigned score;
  if (emptyInputScore(a, b, &score)) return score;
  return (similarity_InterSecNoCase(a, b) + 3 * similarity_proportion(a, b)) / 4;
}
