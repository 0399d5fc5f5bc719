// Fuzzing of the Base64 and quoted-printable decoders on arbitrary bytes, with both lengths
// (given, and up to the NUL), and of each codec's round trip: decoding what the encoder wrote
// gives the input back (for quoted-printable with '_' read back as a space, the decoder's rule).
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <string>

#include "zeb/data/tbase64codec.h"
#include "zeb/data/tqpcodec.h"

namespace {

void check(bool ok) {
  if (!ok) abort();
}

// Decoding any text gives at most 3 bytes per 4 characters, NUL-terminated.
void decodeArbitrary(const char* text, int length) {
  const int size = length < 0 ? static_cast<int>(strlen(text)) : length;
  TAnsiString out;
  const int n = tbase64codec::Decode(text, length, out);
  check(n >= 0 && n <= 3 * (size / 4 + 1));
  if (n > 0) check(out.p()[n] == '\0');
  check(tbase64codec::Decode(text, length).size() == n);
  const int q = tqpcodec::Decode(text, length, out);
  check(q >= 0 && q <= size);
  if (q > 0) check(out.p()[q] == '\0');
}

void roundTrip(const char* data, int length) {
  TAnsiString text, back;
  const int encoded = tbase64codec::Encode(data, length, text);
  check(tbase64codec::Decode(text.p(), encoded, back) == length);
  check(memcmp(back.p(), data, length) == 0);
  const int qp = tqpcodec::Encode(data, length, text);
  check(qp < text.getCapacity());
  check(tqpcodec::Decode(text.p(), qp, back) == length);
  std::string expected(data, length);
  for (char& c : expected) c = c == '_' ? ' ' : c;
  check(memcmp(back.p(), expected.data(), length) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 1 << 16) return 0;
  const std::string input(reinterpret_cast<const char*>(data), size);
  const int length = static_cast<int>(size);
  decodeArbitrary(input.c_str(), length);
  decodeArbitrary(input.c_str(), -1);
  if (length > 0) roundTrip(input.data(), length);
  return 0;
}
