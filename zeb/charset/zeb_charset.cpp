// zeb_charset.cpp: the exported charset functions and the MIB name table. Every conversion is a
// one-line call of one of three bodies: bytes to bytes (AnyToAny), UTF-16 to bytes
// (StrUnicodeToAny) and bytes to UTF-16 (AnyToUnicode); the named ones pass fixed names, which
// the converter cache matches by address. The ANSI pair goes to the platform's code-page
// conversions.
#include "zeb/charset/zeb_charset.h"

#include <string.h>

#include <array>
#include <iterator>

#include "zeb/charset/internal/iconv_converter.h"
#include "zeb/charset/internal/text_conversion.h"
#include "zeb/platform/codepage.h"
#include "zeb/strings/zeb_cstr.h"

namespace {

using zeb::charset::callerName;
using zeb::charset::CharsetName;
using zeb::charset::convertText;
using zeb::charset::ConvertResult;
using zeb::charset::fixedName;

// The charset names the library converts with.
constexpr CharsetName kUtf8 = fixedName(zeb::charset::kUtf8Name);
constexpr CharsetName kUtf16 = fixedName(zeb::charset::kHostUtf16);
constexpr CharsetName kGb2312 = fixedName("gb2312");
constexpr CharsetName kGb18030 = fixedName("gb18030");
constexpr CharsetName kLatin9 = fixedName("Latin-9");
constexpr CharsetName kBig5 = fixedName("BIG5");
constexpr CharsetName kUsAscii = fixedName("us-ascii");

struct MibRow {
  int value;
  const char* name;
};

// IANA MIB numbers and the charset names the library gives them.
constexpr MibRow kMibRows[] = {
    {3, "ASCII"},
    {4, "ISO-8859-1"},
    {5, "ISO-8859-2"},
    {6, "ISO-8859-3"},
    {7, "ISO-8859-4"},
    {8, "ISO-8859-5"},
    {9, "ISO-8859-6"},
    {10, "ISO-8859-7"},
    {11, "ISO-8859-8"},
    {12, "ISO-8859-9"},
    {13, "ISO-8859-10"},
    {14, "6937_2"},
    {15, "JIS_X0201"},
    {16, "JIS_Encoding"},
    {17, "Shift_JIS"},
    {18, "Extended_UNIX_Code_Packed_Format_for_Japanese"},
    {19, "Extended_UNIX_Code_Fixed_Width_for_Japanese"},
    {20, "BS_4730"},
    {21, "SEN_850200_C"},
    {22, "IT"},
    {23, "ES"},
    {24, "DIN_66003"},
    {25, "NS_4551_1"},
    {26, "NF_Z_62_010"},
    {27, "ISO1064_UTF1"},
    {28, "ISO_646_basic"},
    {29, "INVARIANT"},
    {30, "ISO_646_irv"},
    {31, "NATS_SEFI"},
    {32, "NATS_SEFI_ADD"},
    {33, "NATS_DANO"},
    {34, "NATS_DANO_ADD"},
    {35, "SEN_850200_B"},
    {36, "KS_C_5601"},
    {37, "ISO_2022_KR"},
    {38, "EUC_KR"},
    {39, "ISO_2022_JP"},
    {40, "ISO_2022_JP_2"},
    {41, "JIS_C6220_1969_jp"},
    {42, "JIS_C6220_1969_ro"},
    {43, "PT"},
    {44, "greek7_old"},
    {45, "Latin_greek"},
    {46, "NF_Z_62_010_1973"},
    {47, "Latin_greek_1"},
    {48, "ISO_5427"},
    {49, "JIS_C6226_1978"},
    {50, "BS_viewdata"},
    {51, "INIS"},
    {52, "INIS_8"},
    {53, "INIS_cyrillic"},
    {54, "ISO_5427_1981"},
    {55, "ISO_5428_1980"},
    {56, "GB_1988_80"},
    {57, "GB_2312_80"},
    {58, "NS_4551_2"},
    {59, "videotex_suppl"},
    {60, "PT2"},
    {61, "ES2"},
    {62, "MSZ_7795_3"},
    {63, "JIS_C6226_1983"},
    {64, "Greek7"},
    {65, "ASMO_449"},
    {66, "Iso_ir_90"},
    {67, "JIS_C6229_1984_a"},
    {68, "JIS_C6229_1984_b"},
    {69, "JIS_C6229_1984_b_add"},
    {70, "JIS_C6229_1984_hand"},
    {71, "JIS_C6229_1984_hand_add"},
    {72, "JIS_C6229_1984_kana"},
    {73, "ISO_2033_1983"},
    {74, "ANSI_X3_110_1983"},
    {75, "T_61_7bit"},
    {76, "T_61_8bit"},
    {77, "ECMA_cyrillic"},
    {78, "CSA_Z243_4_1985_1"},
    {79, "CSA_Z243_4_1985_2"},
    {80, "CSA_Z243_4_1985_gr"},
    {81, "ISO_8859_6_E"},
    {82, "ISO_8859_6_I"},
    {83, "T_101_G2"},
    {84, "ISO_8859_8_E"},
    {85, "ISO_8859_8_I"},
    {86, "CSN_369103"},
    {87, "JUS_I_B1_002"},
    {88, "IEC_P27_1"},
    {89, "JUS_I_B1_003_serb"},
    {90, "JUS_I_B1_003_mac"},
    {91, "Greek_ccitt"},
    {92, "NC_NC00_10_81"},
    {93, "ISO_6937_2_25"},
    {94, "GOST_19768_74"},
    {95, "ISO_8859_supp"},
    {96, "ISO_10367_box"},
    {97, "latin_lap"},
    {98, "JIS_X0212_1990"},
    {99, "DS_2089"},
    {100, "Us_dk"},
    {101, "Dk_us"},
    {102, "KSC5636"},
    {103, "UNICODE_1_1_UTF_7"},
    {104, "ISO_2022_CN"},
    {105, "ISO_2022_CN_EXT"},
    {106, "UTF-8"},
    {109, "ISO_8859_13"},
    {110, "ISO_8859_14"},
    {111, "ISO_8859_15"},
    {112, "ISO_8859_16"},
    {113, "GBK"},
    {114, "GB18030"},
    {115, "OSD_EBCDIC_DF04_15"},
    {116, "OSD_EBCDIC_DF03_IRV"},
    {117, "OSD_EBCDIC_DF04_1"},
    {118, "ISO_11548_1"},
    {119, "KZ_1048"},
    {1000, "csUnicode"},
    {1001, "ISO_10646_UCS_4"},
    {1002, "ISO_10646_UCS_Basic"},
    {1003, "ISO_10646_Unicode_Latin1"},
    {1004, "ISO_10646_J_1"},
    {1005, "ISO_Unicode_IBM_1261"},
    {1006, "ISO_Unicode_IBM_1268"},
    {1007, "ISO_Unicode_IBM_1276"},
    {1008, "ISO_Unicode_IBM_1264"},
    {1009, "ISO_Unicode_IBM_1265"},
    {1010, "UNICODE_1_1"},
    {1011, "SCSU"},
    {1012, "UTF_7"},
    {1013, "UTF_16BE"},
    {1014, "UTF_16LE"},
    {1015, "UTF_16"},
    {1016, "CESU_8"},
    {1017, "UTF_32"},
    {1018, "UTF_32BE"},
    {1019, "UTF_32LE"},
    {1020, "BOCU_1"},
    {2000, "ISO_8859_1_Windows_3_0_Latin_1"},
    {2001, "ISO_8859_1_Windows_3_1_Latin_1"},
    {2002, "ISO_8859_2_Windows_Latin_2"},
    {2003, "ISO_8859_9_Windows_Latin_5"},
    {2004, "Hp_roman8"},
    {2005, "Adobe_Standard_Encoding"},
    {2006, "Ventura_US"},
    {2007, "Ventura_International"},
    {2008, "DEC_S"},
    {2009, "IBM850"},
    {2012, "PC8_Danish_Norwegian"},
    {2013, "IBM862"},
    {2014, "PC8_Turkish"},
    {2015, "IBM_Symbols"},
    {2016, "IBM_Thai"},
    {2017, "HP_Legal"},
    {2018, "HP_Pi_font"},
    {2019, "HP_Math8"},
    {2020, "Adobe_Symbol_Encoding"},
    {2021, "HP_DeskTop"},
    {2022, "Ventura_Math"},
    {2023, "Microsoft_Publishing"},
    {2024, "Windows_31J"},
    {2025, "GB2312"},
    {2026, "BIG5"},
    {2027, "Macintosh"},
    {2028, "IBM037"},
    {2029, "IBM038"},
    {2030, "IBM273"},
    {2031, "IBM274"},
    {2032, "IBM275"},
    {2033, "IBM277"},
    {2034, "IBM278"},
    {2035, "IBM280"},
    {2036, "IBM281"},
    {2037, "IBM284"},
    {2038, "IBM285"},
    {2039, "IBM290"},
    {2040, "IBM297"},
    {2041, "IBM420"},
    {2042, "IBM423"},
    {2043, "IBM424"},
    {2011, "IBM437"},
    {2044, "IBM500"},
    {2045, "IBM851"},
    {2010, "IBM852"},
    {2046, "IBM855"},
    {2047, "IBM857"},
    {2048, "IBM860"},
    {2049, "IBM861"},
    {2050, "IBM863"},
    {2051, "IBM864"},
    {2052, "IBM865"},
    {2053, "IBM868"},
    {2054, "IBM869"},
    {2055, "IBM870"},
    {2056, "IBM871"},
    {2057, "IBM880"},
    {2058, "IBM891"},
    {2059, "IBM903"},
    {2060, "IBM904"},
    {2061, "IBM905"},
    {2062, "IBM918"},
    {2063, "IBM1026"},
    {2064, "EBCDIC_AT_DE"},
    {2065, "EBCDIC_AT_DE_A"},
    {2066, "EBCDIC_CA_FR"},
    {2067, "EBCDIC_DK_NO"},
    {2068, "EBCDIC_DK_NO_A"},
    {2069, "EBCDIC_FI_SE"},
    {2070, "EBCDIC_FI_SE_A"},
    {2071, "EBCDIC_FR"},
    {2072, "EBCDIC_IT"},
    {2073, "EBCDIC_PT"},
    {2074, "EBCDIC_ES"},
    {2075, "EBCDIC_ES_A"},
    {2076, "EBCDIC_ES_S"},
    {2077, "EBCDIC_UK"},
    {2078, "EBCDIC_US"},
    {2079, "UNKNOWN_8BIT"},
    {2080, "MNEMONIC"},
    {2081, "MNEM"},
    {2082, "VISCII"},
    {2083, "VIQR"},
    {2084, "KOI8_R"},
    {2085, "HZ_GB_2312"},
    {2086, "IBM866"},
    {2087, "IBM775"},
    {2088, "KOI8_U"},
    {2089, "IBM00858"},
    {2090, "IBM00924"},
    {2091, "IBM01140"},
    {2092, "IBM01141"},
    {2093, "IBM01142"},
    {2094, "IBM01143"},
    {2095, "IBM01144"},
    {2096, "IBM01145"},
    {2097, "IBM01146"},
    {2098, "IBM01147"},
    {2099, "IBM01148"},
    {2100, "IBM01149"},
    {2101, "Big5_HKSCS"},
    {2102, "IBM1047"},
    {2103, "PTCP154"},
    {2104, "Amiga_1251"},
    {2105, "KOI7_switched"},
    {2106, "BRF"},
    {2107, "TSCII"},
    {2250, "Windows_1250"},
    {2251, "Windows_1251"},
    {2252, "Windows_1252"},
    {2253, "Windows_1253"},
    {2254, "Windows_1254"},
    {2255, "Windows_1255"},
    {2256, "Windows_1256"},
    {2257, "Windows_1257"},
    {2258, "Windows_1258"},
    {2259, "TIS_620"},
};

constexpr size_t kMibTableSize = 2260;

static_assert(std::size(kMibRows) == 254, "the MIB name table has 254 rows");

// The names indexed directly by MIB number, built on first use.
const std::array<const char*, kMibTableSize>& mibNameTable() {
  static const std::array<const char*, kMibTableSize> table = [] {
    std::array<const char*, kMibTableSize> names{};
    for (const MibRow& row : kMibRows) names[static_cast<size_t>(row.value)] = row.name;
    return names;
  }();
  return table;
}

bool isUsableName(CharsetName name) {
  return name.text != nullptr && *name.text != '\0';
}

size_t byteLength(const char* in, int inLen) {
  return inLen < 0 ? strlen(in) : static_cast<size_t>(inLen);
}

// The common body of the conversions to 8-bit text: on success the rest of `out` is zero-filled.
int convertToBytes(CharsetName to, CharsetName from, char* out, int outSize, const void* in,
                   size_t inBytes) {
  if (!isUsableName(to) || !isUsableName(from) || out == nullptr || outSize <= 0) return 0;
  const size_t capacity = static_cast<size_t>(outSize);
  const ConvertResult result = convertText(to, from, in, inBytes, out, capacity);
  if (!result.ok) return 0;
  memset(out + result.written, 0, capacity - result.written);
  return static_cast<int>(result.written);
}

// AnyToAny.
int bytesToBytes(CharsetName to, CharsetName from, char* out, int outSize, const char* in,
                 int inLen) {
  if (in == nullptr) return 0;
  return convertToBytes(to, from, out, outSize, in, byteLength(in, inLen));
}

// StrUnicodeToAny.
int unicodeToBytes(CharsetName to, char* out, int outSize, const zwchar_t* in) {
  if (in == nullptr || *in == 0) return 0;
  return convertToBytes(to, kUtf16, out, outSize, in, zeb_wcslen(in) * sizeof(zwchar_t));
}

// AnyToUnicode.
int bytesToUnicode(CharsetName from, zwchar_t* out, int outChars, const char* in, int inLen) {
  if (!isUsableName(from) || out == nullptr || outChars <= 0 || in == nullptr) return 0;
  const size_t inBytes = byteLength(in, inLen);
  if (inBytes == 0) {
    out[0] = 0;
    return 0;
  }
  const size_t capacity = static_cast<size_t>(outChars);
  const ConvertResult result =
      convertText(kUtf16, from, in, inBytes, out, capacity * sizeof(zwchar_t));
  if (!result.ok) return 0;
  const size_t units = result.written / sizeof(zwchar_t);
  if (units < capacity) out[units] = 0;
  return static_cast<int>(units);
}

}  // namespace

extern "C" {

const char* MIBCharsetValueToName(int mib) {
  if (mib == MIB_ANSI) return zeb::platform::ansiCodePageCharsetName();
  if (mib < 0 || static_cast<size_t>(mib) >= kMibTableSize) return nullptr;
  return mibNameTable()[static_cast<size_t>(mib)];
}

unsigned zeb_getAnsiCodePage(void) {
  return zeb::platform::ansiCodePage();
}

void zeb_setAnsiCodePage(unsigned codePage) {
  zeb::platform::setAnsiCodePage(codePage);
}

int AnyToAny(const char* to, const char* from, char* out, int outSize, const char* in, int inLen) {
  return bytesToBytes(callerName(to), callerName(from), out, outSize, in, inLen);
}

int StrUTF8ToAny(const char* to, char* out, int outSize, const char* in, int inLen) {
  return bytesToBytes(callerName(to), kUtf8, out, outSize, in, inLen);
}

int StrUTF8ToASCII(char* out, int outSize, const char* in, int inLen) {
  return bytesToBytes(kUsAscii, kUtf8, out, outSize, in, inLen);
}

int StrUTF8ToGB2312(char* out, int outSize, const char* in, int inLen) {
  return bytesToBytes(kGb2312, kUtf8, out, outSize, in, inLen);
}

int StrUTF8ToLatin9(char* out, int outSize, const char* in, int inLen) {
  return bytesToBytes(kLatin9, kUtf8, out, outSize, in, inLen);
}

int StrGB2312ToUTF8(char* out, int outSize, const char* in) {
  return bytesToBytes(kUtf8, kGb2312, out, outSize, in, -1);
}

int StrGB18030ToUTF8(char* out, int outSize, const char* in) {
  return bytesToBytes(kUtf8, kGb18030, out, outSize, in, -1);
}

int StrLatin9ToUTF8(char* out, int outSize, const char* in) {
  return bytesToBytes(kUtf8, kLatin9, out, outSize, in, -1);
}

int StrUnicodeToAny(const char* to, char* out, int outSize, const zwchar_t* in) {
  return unicodeToBytes(callerName(to), out, outSize, in);
}

int StrUnicodeToUtf8(char* out, int outSize, const zwchar_t* in) {
  return unicodeToBytes(kUtf8, out, outSize, in);
}

int StrUnicodeToGB2312(char* out, int outSize, const zwchar_t* in) {
  return unicodeToBytes(kGb2312, out, outSize, in);
}

int StrUnicodeToASCII(char* out, int outSize, const zwchar_t* in) {
  return unicodeToBytes(kUsAscii, out, outSize, in);
}

int StrUnicodeToLatin9(char* out, int outSize, const zwchar_t* in) {
  return unicodeToBytes(kLatin9, out, outSize, in);
}

int StrUnicodeToANSI(char* out, int outSize, const zwchar_t* in) {
  return zeb::platform::wideCharToMultiByte(in, -1, out, outSize);
}

int AnyToUnicode(const char* from, zwchar_t* out, int outChars, const char* in, int inLen) {
  return bytesToUnicode(callerName(from), out, outChars, in, inLen);
}

int StrUtf8ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen) {
  return bytesToUnicode(kUtf8, out, outChars, in, inLen);
}

int StrGB2312ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen) {
  return bytesToUnicode(kGb2312, out, outChars, in, inLen);
}

int StrLatin9ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen) {
  return bytesToUnicode(kLatin9, out, outChars, in, inLen);
}

int Big5CodeToUnicode(zwchar_t* out, int outChars, const char* in, int inLen) {
  return bytesToUnicode(kBig5, out, outChars, in, inLen);
}

int StrASCIIToUnicode(zwchar_t* out, int outChars, const char* in) {
  return bytesToUnicode(kUsAscii, out, outChars, in, -1);
}

int StrANSIToUnicode(zwchar_t* out, int outChars, const char* in) {
  return zeb::platform::multiByteToWideChar(in, -1, out, outChars);
}

}  // extern "C"
