// Tests of quoted-printable: texts written by Python's quopri decode to the same bytes, the line
// counter's soft breaks, and the decoder's rules for '_', soft breaks and stray '='.

#include "zeb/data/tqpcodec.h"

#include <gtest/gtest.h>

#include <string>

namespace {
#include "zeb/data/testdata/codec_vectors.inc"

std::string encoded(const std::string& data) {
  TAnsiString out;
  const int n = tqpcodec::Encode(data.data(), static_cast<int>(data.size()), out);
  return n == 0 ? "" : std::string(out.p(), n);
}

std::string decoded(const std::string& text) {
  TAnsiString out;
  const int n = tqpcodec::Decode(text.data(), static_cast<int>(text.size()), out);
  return n == 0 ? "" : std::string(out.p(), n);
}

TEST(QuotedPrintable, AgreesWithTheReferenceCodec) {
  for (const QpVector& v : kQpVectors) {
    const std::string text(v.text, v.size), data(v.decoded, v.decodedSize);
    EXPECT_EQ(decoded(text), data) << text;
    // Below 73 characters no soft break is due, so the texts are identical.
    if (v.size < 73) {
      EXPECT_EQ(encoded(data), text);
    }
  }
}

TEST(QuotedPrintable, EscapesEverythingButPrintablesOtherThanEquals) {
  EXPECT_EQ(encoded("a=b"), "a=3Db");
  EXPECT_EQ(encoded(std::string("\t \x7f\x80~!", 6)), "=09=20=7F=80~!");
}

TEST(QuotedPrintable, WritesASoftBreakOnceTheLineCountReaches73) {
  const std::string plain = encoded(std::string(73, 'x'));
  EXPECT_EQ(plain, std::string(73, 'x') + "=\r\n");
  EXPECT_EQ(encoded(std::string(72, 'x')), std::string(72, 'x'));
  // 24 escapes make 72, the 25th makes 75: the break follows it.
  const std::string escaped = encoded(std::string(26, ' '));
  EXPECT_EQ(escaped.find("=\r\n"), 75u);
  EXPECT_EQ(escaped.size(), 26 * 3 + 3u);
  for (const std::string& data : {std::string(2500, '\xff'), std::string(1000, 'q')})
    EXPECT_EQ(decoded(encoded(data)), data);
}

TEST(QuotedPrintableDecode, UnderscoresSoftBreaksAndStrayEquals) {
  EXPECT_EQ(decoded("a_b"), "a b");
  EXPECT_EQ(decoded("ab=\r\n \t cd"), "abcd");
  EXPECT_EQ(decoded("=3d=3D"), "==");
  EXPECT_EQ(decoded("a=zz=4"), "a=zz=4");
  EXPECT_EQ(decoded("x=\r"), "x=\r");
  TAnsiString out("kept");
  EXPECT_EQ(tqpcodec::Decode("abc", 0, out), 0);
  EXPECT_TRUE(out.isEmpty());
  EXPECT_EQ(tqpcodec::Decode("a=41", -1, out), 2);
  EXPECT_STREQ(out.p(), "aA");
  EXPECT_EQ(tqpcodec::Encode(nullptr, 3, out), 0);
}

}  // namespace
