// TStrSimilar.h: how alike two 8-bit strings are, as whole-number scores from 0 to 100, and the
// edit distance they are built on.
//
// Characters compare after folding ASCII letters to upper case, so "Kitten" and "kitten" are
// equal; every other byte compares as itself (multi-byte text is compared byte by byte). Words
// are maximal runs of bytes that, read as signed 8-bit values, are at least 33 and are not '~':
// spaces, control characters, '~' and every byte from 128 to 255 separate words, so text outside
// ASCII has no words at all.
//
//   TStrSimilar similar;
//   similar.distance("kitten", "sitting", 0);             // 3
//   similar.similarity_proportion("kitten", "sitting");   // (7 - 3) * 100 / 7 = 57
//   similar.similarity_InterSec("abc", "abd");             // 2 shared of 4 characters: 50
//   similar.simlarity_composite("Report 2024", "report 2024");  // 100
//
// Every score treats null as empty: two empty strings score 100, exactly one empty scores 0.
// Divisions are unsigned and round down. One object keeps one distance matrix that only grows
// (to half again beyond the need), so comparisons of similar sizes allocate nothing; an object
// must not be used from two threads at once.
#ifndef ZEB_FORMATS_TSTRSIMILAR_H
#define ZEB_FORMATS_TSTRSIMILAR_H

#include "zeb/zeb_api.h"

class ZEB_API TStrSimilar {
 public:
  TStrSimilar() = default;
  ~TStrSimilar();
  TStrSimilar(const TStrSimilar&) = delete;
  TStrSimilar& operator=(const TStrSimilar&) = delete;

  // The edit distance (insertions, deletions and substitutions of one byte, each costing 1).
  // A common prefix and then a common suffix are set aside first. With limit non-zero the
  // computation stops at the first diagonal cell (i, i) of the remaining table that exceeds the
  // limit and returns that cell: a value above the limit, not the full distance. An empty side
  // gives the other side's length.
  unsigned int distance(const char* a, const char* b, unsigned int limit);
  // (n - d) * 100 / n: n the longer length in bytes, d the distance without limit.
  unsigned int similarity_proportion(const char* a, const char* b);
  // 100 / (distance(a, b, L) + 1), L = (100 - p) / p for p non-zero, else 0 (no limit). A p of
  // 50 allows one edit before stopping: identical strings give 100, one edit 50.
  unsigned int similarity_dkl_s(const char* a, const char* b, unsigned int p);
  // As similarity_proportion over words: n the larger word count, d the word edit distance. Two
  // strings without words score 100.
  unsigned int similarityWords_proportion(const char* a, const char* b);
  // As similarity_dkl_s over words.
  unsigned int similarityWords_dkl(const char* a, const char* b, unsigned int p);
  // intersection * 100 / union of the sets of characters 32-126 that occur in each string, case
  // sensitive; other bytes take no part. Occurrences are counted in 8 bits, so a character that
  // occurs a multiple of 256 times counts as absent. An empty union gives 0.
  unsigned int similarity_InterSec(const char* a, const char* b);
  // The same with ASCII letters folded to upper case.
  unsigned int similarity_InterSecNoCase(const char* a, const char* b);
  // (similarity_InterSecNoCase + 3 * similarity_proportion) / 4.
  unsigned int simlarity_composite(const char* a, const char* b);

 private:
  // Makes the matrix at least (n + 1) x (n + 1); when it must grow, the new side is
  // n + 1 + n / 2 and row 0 and column 0 hold 0, 1, 2, ... When the memory cannot be had the
  // matrix is left empty and the distance is computed in two rows instead.
  void expandlsBuffer(unsigned int n);
  void deleteDistanceResource();
  // The distance between two sequences (bytes or words) after prefix and suffix stripping.
  template <typename Sequence>
  unsigned int sequenceDistance(const Sequence& a, const Sequence& b, unsigned int limit);
  unsigned int overlap(const char* a, const char* b, bool foldCase);

  unsigned int* matrix = nullptr;
  unsigned int dim = 0;
  unsigned char firstCounts[255] = {};
  unsigned char secondCounts[255] = {};
};

#endif  // ZEB_FORMATS_TSTRSIMILAR_H
