// fuzz_input.h: what the model-checking fuzz targets share: the input read as a program, one
// operand at a time (zeros once it runs out), and a check that stops the run at the first
// disagreement with the model, naming the condition that failed.
#ifndef ZEB_FUZZ_FUZZ_INPUT_H
#define ZEB_FUZZ_FUZZ_INPUT_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <string>

namespace zeb::fuzz {

class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool done() const { return pos_ >= size_; }
  // The next byte; 0 once the input is used up.
  unsigned char byte() { return pos_ < size_ ? data_[pos_++] : 0; }
  // The next n bytes, or the rest of the input when it is shorter.
  std::string take(size_t n) {
    n = std::min(n, size_ - std::min(pos_, size_));
    std::string out(reinterpret_cast<const char*>(data_) + pos_, n);
    pos_ += n;
    return out;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t pos_ = 0;
};

}  // namespace zeb::fuzz

#define FUZZ_CHECK(condition)                                         \
  do {                                                                \
    if (!(condition)) {                                               \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      abort();                                                        \
    }                                                                 \
  } while (0)

#endif  // ZEB_FUZZ_FUZZ_INPUT_H
