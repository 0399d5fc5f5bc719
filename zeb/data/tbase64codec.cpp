// Base64: the encoder writes four characters per three bytes through a table of character pairs
// (one lookup per 12 bits); the decoder reads four characters per group through tables that hold
// each character's value already shifted into place.

#include "zeb/data/tbase64codec.h"

#include <climits>
#include <cstdint>
#include <cstring>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int kGroupsPerLine = 19;  // 76 characters

// The two characters of every 12-bit value.
struct EncodePairs {
  char pair[4096][2] = {};
  constexpr EncodePairs() {
    for (int v = 0; v < 4096; ++v) {
      pair[v][0] = kAlphabet[v >> 6];
      pair[v][1] = kAlphabet[v & 63];
    }
  }
};
constexpr EncodePairs kPairs{};

// The decoded bytes of a group as a little-endian word: bytes 0-2 are the group's three bytes.
// word[k][c] is the share of character c (0 outside the alphabet) in the k-th position. Byte 3
// flags the characters that need the careful path in that position: a line break in the first,
// '=' or NUL in the third, '=' in the fourth.
constexpr uint32_t kCareful = 1u << 24;

struct DecodeTables {
  uint32_t word[4][256] = {};
  constexpr DecodeTables() {
    for (uint32_t v = 0; v < 64; ++v) {
      const auto c = static_cast<unsigned char>(kAlphabet[v]);
      word[0][c] = v << 2;
      word[1][c] = (v >> 4) | ((v & 15) << 12);
      word[2][c] = ((v >> 2) << 8) | ((v & 3) << 22);
      word[3][c] = v << 16;
    }
    constexpr unsigned char kCr = '\r', kLf = '\n', kPad = '=';
    word[0][kCr] = word[0][kLf] = kCareful;
    word[2][kPad] = word[2][0] = word[3][kPad] = kCareful;
  }
};
constexpr DecodeTables kDecode{};

inline uint32_t groupWord(const unsigned char c[4]) {
  const auto& w = kDecode.word;
  return w[0][c[0]] | w[1][c[1]] | w[2][c[2]] | w[3][c[3]];
}

// Writes the word's three bytes; the fourth byte written is scratch, overwritten later or lying
// in the room reserved past the last group.
inline void storeGroup(unsigned char* o, uint32_t word) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  memcpy(o, &word, 4);
#else
  o[0] = static_cast<unsigned char>(word);
  o[1] = static_cast<unsigned char>(word >> 8);
  o[2] = static_cast<unsigned char>(word >> 16);
#endif
}

inline char* encodeGroup(const unsigned char* in, char* out) {
  const uint32_t v = (uint32_t{in[0]} << 16) | (uint32_t{in[1]} << 8) | in[2];
  memcpy(out, kPairs.pair[v >> 12], 2);
  memcpy(out + 2, kPairs.pair[v & 0xFFF], 2);
  return out + 4;
}

// The one or two bytes left after the full groups, padded to four characters.
char* encodeTail(const unsigned char* in, int count, char* out) {
  const uint32_t v = (uint32_t{in[0]} << 16) | (count > 1 ? uint32_t{in[1]} << 8 : 0);
  out[0] = kAlphabet[v >> 18];
  out[1] = kAlphabet[(v >> 12) & 63];
  out[2] = count > 1 ? kAlphabet[(v >> 6) & 63] : '=';
  out[3] = '=';
  return out + 4;
}

long long encodedLength(int length) {
  const long long groups = (static_cast<long long>(length) + 2) / 3;
  return groups * 4 + 2 * ((length / 3) / kGroupsPerLine);
}

// One group by the position rules, for groups with '=', a NUL or the end of the text in them.
unsigned char* decodeCarefully(const unsigned char c[4], unsigned char* o) {
  const uint32_t word = groupWord(c);
  *o++ = static_cast<unsigned char>(word);
  if (c[2] != '=' && c[2] != 0) {
    *o++ = static_cast<unsigned char>(word >> 8);
    if (c[3] != '=') *o++ = static_cast<unsigned char>(word >> 16);
  }
  return o;
}

// Decodes text[0, length) into out, which holds 3 * (length / 4 + 1) + 1 bytes. Returns the
// count.
int decodeInto(const unsigned char* text, int length, unsigned char* out) {
  unsigned char* o = out;
  int i = 0;
  while (i < length) {
    if (text[i] == '\r' || text[i] == '\n') {
      ++i;
      continue;
    }
    // Straight runs of plain groups, then one group by the rules.
    for (; i + 4 <= length; i += 4, o += 3) {
      const uint32_t word = groupWord(text + i);
      if (word >= kCareful) break;
      storeGroup(o, word);
    }
    if (i >= length || text[i] == '\r' || text[i] == '\n') continue;
    unsigned char c[4] = {0, 0, 0, 0};
    for (int k = 0; k < 4 && i + k < length; ++k) c[k] = text[i + k];
    o = decodeCarefully(c, o);
    i += 4;
  }
  return static_cast<int>(o - out);
}

}  // namespace

int tbase64codec::Encode(const char* data, int length, TAnsiString& out) {
  const long long needed = encodedLength(length) + 1;
  if (data == nullptr || length < 1 || needed > INT_MAX) {
    out.deleteBuffer();
    return 0;
  }
  const long long reserved = 3LL * length + 1;
  out.resetCapacity(static_cast<int>(reserved > needed && reserved <= INT_MAX ? reserved : needed));
  const auto* in = reinterpret_cast<const unsigned char*>(data);
  char* o = out.data();
  int groupsLeft = length / 3;
  while (groupsLeft > 0) {
    const int lineGroups = groupsLeft < kGroupsPerLine ? groupsLeft : kGroupsPerLine;
    for (int g = 0; g < lineGroups; ++g, in += 3) o = encodeGroup(in, o);
    groupsLeft -= lineGroups;
    if (lineGroups == kGroupsPerLine) {
      *o++ = '\r';
      *o++ = '\n';
    }
  }
  if (length % 3 != 0) o = encodeTail(in, length % 3, o);
  *o = '\0';
  return static_cast<int>(o - out.data());
}

namespace {

// The text's length when it decodes to anything, else 0 (null, empty, or starting with '.').
int decodableLength(const char* text, int length) {
  if (text == nullptr) return 0;
  if (length < 0) length = static_cast<int>(strlen(text));
  return length > 0 && text[0] != '.' ? length : 0;
}

int decodedCapacity(int length) {
  return 3 * (length / 4 + 1) + 1;
}

}  // namespace

int tbase64codec::Decode(const char* text, int length, TAnsiString& out) {
  length = decodableLength(text, length);
  if (length == 0) {
    out.deleteBuffer();
    return 0;
  }
  out.resetCapacity(decodedCapacity(length));
  const int count = decodeInto(reinterpret_cast<const unsigned char*>(text), length,
                               reinterpret_cast<unsigned char*>(out.data()));
  out.data()[count] = '\0';
  return count;
}

tbytesdata tbase64codec::Decode(const char* text, int length) {
  length = decodableLength(text, length);
  if (length == 0) return tbytesdata();
  tbytesdata bytes(decodedCapacity(length));
  bytes.setDataSize(decodeInto(reinterpret_cast<const unsigned char*>(text), length, bytes.p()));
  return bytes;
}
