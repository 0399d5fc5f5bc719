// Codec and digest hot paths beside their anchors:
//   - zeb_crc32 against zlib's crc32 and libdeflate's libdeflate_crc32;
//   - CalculateMD5 against OpenSSL's MD5 (through EVP_Digest);
//   - tbase64codec::Encode / Decode against OpenSSL's EVP_EncodeBlock / EVP_DecodeBlock and
//     modp_b64. Ours writes CR LF every 76 characters, the anchors write one long line; every
//     decoder reads the one-line text (ours also the text with line breaks, for reference).
// Each benchmark checks its result against the anchor's once, outside the timed loop.
#include <benchmark/benchmark.h>
#include <libdeflate.h>
#include <modp_b64.h>
#include <openssl/evp.h>
#include <zlib.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "zeb/data/tbase64codec.h"
#include "zeb/data/zeb_crc32.h"
#include "zeb/data/zeb_md5.h"

namespace {

std::vector<unsigned char> randomBytes(size_t n) {
  std::mt19937 random(11);
  std::vector<unsigned char> bytes(n);
  for (unsigned char& b : bytes) b = static_cast<unsigned char>(random());
  return bytes;
}

void setBytes(benchmark::State& state, size_t n) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * n));
}

void check(bool ok) {
  if (!ok) abort();
}

#define ZEB_SIZES ->Arg(64)->Arg(4096)->Arg(1 << 20)

// ---- CRC-32 ------------------------------------------------------------------------------------

void BM_Crc32_Ours(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  const auto n = static_cast<unsigned>(data.size());
  check(zeb_crc32(0, data.data(), n) == crc32(0, data.data(), n));
  for (auto _ : state) benchmark::DoNotOptimize(zeb_crc32(0, data.data(), n));
  setBytes(state, data.size());
}
BENCHMARK(BM_Crc32_Ours) ZEB_SIZES;

void BM_Crc32_Zlib(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  const auto n = static_cast<unsigned>(data.size());
  for (auto _ : state) benchmark::DoNotOptimize(crc32(0, data.data(), n));
  setBytes(state, data.size());
}
BENCHMARK(BM_Crc32_Zlib) ZEB_SIZES;

void BM_Crc32_Libdeflate(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  check(zeb_crc32(0, data.data(), static_cast<unsigned>(data.size())) ==
        libdeflate_crc32(0, data.data(), data.size()));
  for (auto _ : state) benchmark::DoNotOptimize(libdeflate_crc32(0, data.data(), data.size()));
  setBytes(state, data.size());
}
BENCHMARK(BM_Crc32_Libdeflate) ZEB_SIZES;

// ---- MD5 ---------------------------------------------------------------------------------------

void BM_Md5_Ours(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  unsigned char ours[16], theirs[16];
  CalculateMD5(ours, nullptr, data.data(), static_cast<unsigned>(data.size()));
  EVP_Digest(data.data(), data.size(), theirs, nullptr, EVP_md5(), nullptr);
  check(memcmp(ours, theirs, 16) == 0);
  for (auto _ : state) {
    CalculateMD5(ours, nullptr, data.data(), static_cast<unsigned>(data.size()));
    benchmark::DoNotOptimize(ours);
  }
  setBytes(state, data.size());
}
BENCHMARK(BM_Md5_Ours) ZEB_SIZES;

void BM_Md5_OpenSSL(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  const EVP_MD* md5 = EVP_md5();
  unsigned char digest[16];
  for (auto _ : state) {
    EVP_Digest(data.data(), data.size(), digest, nullptr, md5, nullptr);
    benchmark::DoNotOptimize(digest);
  }
  setBytes(state, data.size());
}
BENCHMARK(BM_Md5_OpenSSL) ZEB_SIZES;

// ---- Base64 ------------------------------------------------------------------------------------

std::string oneLineBase64(const std::vector<unsigned char>& data) {
  std::string text(modp_b64_encode_len(data.size()), '\0');
  text.resize(modp_b64_encode(&text[0], reinterpret_cast<const char*>(data.data()), data.size()));
  return text;
}

void BM_Base64Encode_Ours(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  TAnsiString out;
  const int n = static_cast<int>(data.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        tbase64codec::Encode(reinterpret_cast<const char*>(data.data()), n, out));
  }
  TAnsiString lines(oneLineBase64(data).c_str());
  check(out.replace("\r\n", "") == lines);
  setBytes(state, data.size());
}
BENCHMARK(BM_Base64Encode_Ours) ZEB_SIZES;

void BM_Base64Encode_OpenSSL(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  std::vector<unsigned char> out(data.size() / 3 * 4 + 8);
  for (auto _ : state)
    benchmark::DoNotOptimize(EVP_EncodeBlock(out.data(), data.data(), static_cast<int>(data.size())));
  setBytes(state, data.size());
}
BENCHMARK(BM_Base64Encode_OpenSSL) ZEB_SIZES;

void BM_Base64Encode_Modp(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  std::vector<char> out(modp_b64_encode_len(data.size()));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        modp_b64_encode(out.data(), reinterpret_cast<const char*>(data.data()), data.size()));
  }
  setBytes(state, data.size());
}
BENCHMARK(BM_Base64Encode_Modp) ZEB_SIZES;

void decodeOurs(benchmark::State& state, bool withLineBreaks) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  TAnsiString text;
  if (withLineBreaks) {
    tbase64codec::Encode(reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size()),
                         text);
  } else {
    text = oneLineBase64(data).c_str();
  }
  const int length = text.length();
  TAnsiString out;
  int n = 0;
  for (auto _ : state) benchmark::DoNotOptimize(n = tbase64codec::Decode(text.p(), length, out));
  check(n == static_cast<int>(data.size()) && memcmp(out.p(), data.data(), data.size()) == 0);
  setBytes(state, data.size());
}

void BM_Base64Decode_Ours(benchmark::State& state) {
  decodeOurs(state, false);
}
BENCHMARK(BM_Base64Decode_Ours) ZEB_SIZES;

void BM_Base64Decode_OursLineBreaks(benchmark::State& state) {
  decodeOurs(state, true);
}
BENCHMARK(BM_Base64Decode_OursLineBreaks) ZEB_SIZES;

void BM_Base64Decode_OpenSSL(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  const std::string text = oneLineBase64(data);
  std::vector<unsigned char> out(text.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(EVP_DecodeBlock(
        out.data(), reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size())));
  }
  setBytes(state, data.size());
}
BENCHMARK(BM_Base64Decode_OpenSSL) ZEB_SIZES;

void BM_Base64Decode_Modp(benchmark::State& state) {
  const auto data = randomBytes(static_cast<size_t>(state.range(0)));
  const std::string text = oneLineBase64(data);
  std::vector<char> out(modp_b64_decode_len(text.size()));
  for (auto _ : state)
    benchmark::DoNotOptimize(modp_b64_decode(out.data(), text.data(), text.size()));
  setBytes(state, data.size());
}
BENCHMARK(BM_Base64Decode_Modp) ZEB_SIZES;

}  // namespace
