// Fuzzing of the Base64 and quoted-printable decoders on arbitrary bytes, with both lengths
// (given, and up to the NUL), the Base64 decoder against a character-by-character reading of its
// rules, and of each codec's round trip: decoding what the encoder wrote
// gives the input back (for quoted-printable with '_' read back as a space, the decoder's rule).
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>

#include "fuzz/fuzz_input.h"
#include "zeb/data/tbase64codec.h"
#include "zeb/data/tqpcodec.h"

namespace {

// The Base64 decoding rules read one character at a time, with no tables and no fast path.
std::string referenceBase64(const char* text, int length) {
  static const std::string alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto at = [&](int i) { return i < length ? text[i] : '\0'; };
  const auto value = [&](char c) {
    const size_t v = c == '\0' ? std::string::npos : alphabet.find(c);
    return v == std::string::npos ? 0u : static_cast<unsigned>(v);
  };
  std::string out;
  if (length == 0 || text[0] == '.') return out;
  for (int i = 0; i < length;) {
    if (text[i] == '\r' || text[i] == '\n') {
      ++i;
      continue;
    }
    const unsigned v =
        value(at(i)) << 18 | value(at(i + 1)) << 12 | value(at(i + 2)) << 6 | value(at(i + 3));
    out += static_cast<char>(v >> 16);
    if (at(i + 2) != '=' && at(i + 2) != '\0') {
      out += static_cast<char>(v >> 8);
      if (at(i + 3) != '=') out += static_cast<char>(v);
    }
    i += 4;
  }
  return out;
}

// Decoding any text gives at most 3 bytes per 4 characters, NUL-terminated.
void decodeArbitrary(const char* text, int length) {
  const int size = length < 0 ? static_cast<int>(strlen(text)) : length;
  TAnsiString out;
  const int n = tbase64codec::Decode(text, length, out);
  FUZZ_CHECK(n >= 0 && n <= 3 * (size / 4 + 1));
  if (n > 0) FUZZ_CHECK(out.p()[n] == '\0');
  FUZZ_CHECK(tbase64codec::Decode(text, length).size() == n);
  const std::string expected = referenceBase64(text, size);
  FUZZ_CHECK(expected.size() == static_cast<size_t>(n) &&
             (n == 0 || memcmp(out.p(), expected.data(), n) == 0));
  const int q = tqpcodec::Decode(text, length, out);
  FUZZ_CHECK(q >= 0 && q <= size);
  if (q > 0) FUZZ_CHECK(out.p()[q] == '\0');
}

void roundTrip(const char* data, int length) {
  TAnsiString text, back;
  const int encoded = tbase64codec::Encode(data, length, text);
  FUZZ_CHECK(tbase64codec::Decode(text.p(), encoded, back) == length);
  FUZZ_CHECK(memcmp(back.p(), data, length) == 0);
  const int qp = tqpcodec::Encode(data, length, text);
  FUZZ_CHECK(qp < text.getCapacity());
  FUZZ_CHECK(tqpcodec::Decode(text.p(), qp, back) == length);
  std::string expected(data, length);
  for (char& c : expected) c = c == '_' ? ' ' : c;
  FUZZ_CHECK(memcmp(back.p(), expected.data(), length) == 0);
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
