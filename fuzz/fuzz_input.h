// fuzz_input.h: what the model-checking fuzz targets share: the input read as a stream of bytes
// (zeros once it runs out), and a check that stops the run naming the condition that failed.
#ifndef ZEB_FUZZ_FUZZ_INPUT_H
#define ZEB_FUZZ_FUZZ_INPUT_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool done() const { return pos_ >= size_; }
  unsigned char byte() { return pos_ < size_ ? data_[pos_++] : 0; }

 protected:
  const uint8_t* data_;
  size_t size_;
  size_t pos_ = 0;
};

#define FUZZ_CHECK(condition)                                         \
  do {                                                                \
    if (!(condition)) {                                               \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      abort();                                                        \
    }                                                                 \
  } while (0)

#endif  // ZEB_FUZZ_FUZZ_INPUT_H
