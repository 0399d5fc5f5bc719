// tvcard.cpp: the vCard card model, the reader (unfolding, encodings, charsets) and the writer.

#include "zeb/formats/tvcard.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "zeb/charset/zeb_charset.h"
#include "zeb/data/tbase64codec.h"
#include "zeb/data/tqpcodec.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/internal/units.h"
#include "zeb/strings/zeb_cstr.h"
#include "zeb/utils/mfile.h"

namespace {

using zeb::internal::foldUpper;
using zeb::internal::isHexDigitUnit;

struct Property {
  std::string group;
  std::string name;
  std::vector<std::pair<std::string, std::string>> params;
  std::string value;  // escaped UTF-8 text, or the bytes of a binary value
  bool binary = false;
};

// ---- small text helpers -------------------------------------------------------------------------

std::string upperText(std::string s) {
  for (char& c : s) c = foldUpper(c);
  return s;
}

// Texts reaching here hold no NUL: names, parameters and values read are cut at the text's first
// NUL, and names added come as C strings.
bool sameText(const std::string& a, const char* b) {
  return b != nullptr && zeb_stricmp_impl(a.c_str(), b) == 0;
}

std::string trimmed(const std::string& s) {
  const size_t first = s.find_first_not_of(" \t");
  if (first == std::string::npos) return std::string();
  return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

// `value` cut at unescaped `separator`s; piece `index`, still escaped ("" past the end).
std::string piece(const std::string& value, char separator, int index) {
  size_t start = 0;
  for (size_t i = 0; i <= value.size(); ++i) {
    if (i < value.size() && value[i] == '\\') {
      ++i;
    } else if (i == value.size() || value[i] == separator) {
      if (index-- == 0) return value.substr(start, i - start);
      start = i + 1;
    }
  }
  return std::string();
}

std::string unescaped(const std::string& value) {
  std::string out;
  out.reserve(value.size());
  for (size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      out += value[i];
      continue;
    }
    const char next = value[++i];
    if (next == 'n' || next == 'N') {
      out += '\n';
    } else if (next == ',' || next == ';' || next == '\\' || next == ':') {
      out += next;
    } else {
      out += '\\';
      out += next;
    }
  }
  return out;
}

std::string escaped(const char* text) {
  std::string out;
  for (const char* p = text; p != nullptr && *p != 0; ++p) {
    if (*p == '\\' || *p == ';' || *p == ',') out += '\\';
    if (*p == '\r') continue;
    if (*p == '\n') {
      out += "\\n";
    } else {
      out += *p;
    }
  }
  return out;
}

// Real line breaks (LF or CR LF) in text become the "\n" escape.
std::string escapedLineBreaks(const std::string& text) {
  if (text.find('\n') == std::string::npos) return text;
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\n') {
      out += "\\n";
    } else {
      out += text[i];
    }
  }
  return out;
}

TAnsiString toAnsi(const std::string& s) { return TAnsiString(s.data(), static_cast<int>(s.size())); }

}  // namespace

struct tvcardState {
  std::vector<Property> properties;
  std::string version;
  tvcard::tstatus status = tvcard::Ok;
  std::string error;

  const Property* at(int i) const {
    return i >= 0 && i < static_cast<int>(properties.size()) ? &properties[i] : nullptr;
  }
  void fail(tvcard::tstatus why, const std::string& text, int line) {
    if (status != tvcard::Ok) return;
    status = why;
    error = text + " (line " + std::to_string(line) + ")";
    if (ZEB_LOG_ENABLED(MLOG_WARNING)) {
      mlogWithLevel(MLOG_WARNING, "zeb.vcard", "card failed: %s", error.c_str());
    }
  }
};

// ---- tvcard -------------------------------------------------------------------------------------

tvcard::tvcard() : state(new tvcardState) {}
tvcard::tvcard(const tvcard& other) : state(new tvcardState(*other.state)) {}
tvcard& tvcard::operator=(const tvcard& other) {
  if (this != &other) *state = *other.state;
  return *this;
}
tvcard::~tvcard() { delete state; }

tvcard::tstatus tvcard::status() const { return state->status; }
const char* tvcard::errorText() const { return state->error.c_str(); }
const char* tvcard::version() const { return state->version.c_str(); }
int tvcard::propertyCount() const { return static_cast<int>(state->properties.size()); }

int tvcard::findProperty(const char* name, int from) const {
  for (int i = from < 0 ? 0 : from; i < propertyCount(); ++i) {
    if (sameText(state->properties[i].name, name)) return i;
  }
  return -1;
}

const char* tvcard::propertyName(int i) const {
  const Property* p = state->at(i);
  return p ? p->name.c_str() : nullptr;
}
const char* tvcard::propertyGroup(int i) const {
  const Property* p = state->at(i);
  return p ? p->group.c_str() : nullptr;
}
int tvcard::paramCount(int i) const {
  const Property* p = state->at(i);
  return p ? static_cast<int>(p->params.size()) : 0;
}
const char* tvcard::paramName(int i, int n) const {
  const Property* p = state->at(i);
  return p && n >= 0 && n < paramCount(i) ? p->params[n].first.c_str() : nullptr;
}
const char* tvcard::paramValue(int i, int n) const {
  const Property* p = state->at(i);
  return p && n >= 0 && n < paramCount(i) ? p->params[n].second.c_str() : nullptr;
}
const char* tvcard::param(int i, const char* name) const {
  const Property* p = state->at(i);
  if (p == nullptr) return nullptr;
  for (const auto& [key, value] : p->params) {
    if (sameText(key, name)) return value.c_str();
  }
  return nullptr;
}
bool tvcard::isBinary(int i) const {
  const Property* p = state->at(i);
  return p && p->binary;
}
const char* tvcard::rawValue(int i) const {
  const Property* p = state->at(i);
  return p ? p->value.c_str() : nullptr;
}
TAnsiString tvcard::text(int i) const {
  const Property* p = state->at(i);
  return p ? toAnsi(p->binary ? p->value : unescaped(p->value)) : TAnsiString();
}
TAnsiString tvcard::component(int i, int part) const {
  const Property* p = state->at(i);
  return p && !p->binary ? toAnsi(unescaped(piece(p->value, ';', part))) : TAnsiString();
}
TAnsiString tvcard::listItem(int i, int item) const {
  const Property* p = state->at(i);
  return p && !p->binary ? toAnsi(unescaped(piece(p->value, ',', item))) : TAnsiString();
}
tbytesdata tvcard::bytes(int i) const {
  const Property* p = state->at(i);
  return p ? tbytesdata(p->value.data(), static_cast<int>(p->value.size())) : tbytesdata();
}

namespace {
int nthProperty(const tvcard& card, const char* name, int nth) {
  int i = card.findProperty(name);
  while (i >= 0 && nth-- > 0) i = card.findProperty(name, i + 1);
  return nth < 0 ? i : -1;
}
}  // namespace

TAnsiString tvcard::fn() const { return text(findProperty("FN")); }
TAnsiString tvcard::n(int part) const { return component(findProperty("N"), part); }
TAnsiString tvcard::nickname() const { return text(findProperty("NICKNAME")); }
TAnsiString tvcard::tel(int nth) const { return text(nthProperty(*this, "TEL", nth)); }
TAnsiString tvcard::email(int nth) const { return text(nthProperty(*this, "EMAIL", nth)); }
TAnsiString tvcard::adr(int nth, int part) const {
  return component(nthProperty(*this, "ADR", nth), part);
}
TAnsiString tvcard::org() const { return component(findProperty("ORG"), 0); }
TAnsiString tvcard::title() const { return text(findProperty("TITLE")); }
TAnsiString tvcard::bday() const { return text(findProperty("BDAY")); }
TAnsiString tvcard::note() const { return text(findProperty("NOTE")); }
TAnsiString tvcard::url(int nth) const { return text(nthProperty(*this, "URL", nth)); }
tbytesdata tvcard::photo() const {
  const int i = findProperty("PHOTO");
  return isBinary(i) ? bytes(i) : tbytesdata();
}
int tvcard::count(const char* name) const {
  int n = 0;
  for (int i = findProperty(name); i >= 0; i = findProperty(name, i + 1)) ++n;
  return n;
}

int tvcard::addProperty(const char* group, const char* name, const char* escapedValue) {
  if (name == nullptr || *name == 0) return -1;
  Property p;
  p.group = group ? group : "";
  p.name = upperText(name);
  p.value = escapedValue ? escapedValue : "";
  state->properties.push_back(std::move(p));
  return propertyCount() - 1;
}
int tvcard::addText(const char* name, const char* text) {
  return addProperty(nullptr, name, escaped(text).c_str());
}
int tvcard::addBinary(const char* group, const char* name, const void* data, int size) {
  const int i = addProperty(group, name, nullptr);
  if (i < 0) return i;
  if (data != nullptr && size > 0) state->properties[i].value.assign(static_cast<const char*>(data), size);
  state->properties[i].binary = true;
  return i;
}
bool tvcard::addParam(int i, const char* name, const char* value) {
  if (state->at(i) == nullptr || name == nullptr || *name == 0) return false;
  state->properties[i].params.emplace_back(upperText(name), value ? value : "");
  return true;
}

// ---- reading ------------------------------------------------------------------------------------

struct tcards {
  std::vector<tvcard> list;
};

namespace {

// The text split into logical lines: folded lines joined, quoted-printable soft breaks joined.
class LineReader {
 public:
  LineReader(const char* text, size_t length) : text_(text), length_(length) {}

  // The next logical line into `line`; false at the end. `tooLong` tells when it was cut at
  // `limit` bytes (the rest of it is skipped).
  bool next(std::string& line, size_t limit, bool& tooLong) {
    line.clear();
    tooLong = false;
    if (pos_ >= length_) return false;
    firstLine_ = lineNumber_;
    appendPhysical(line, limit, tooLong);
    for (;;) {
      if (endsWithSoftBreak(line)) {
        line.pop_back();
      } else if (pos_ < length_ && (text_[pos_] == ' ' || text_[pos_] == '\t')) {
        ++pos_;
      } else {
        break;
      }
      if (pos_ >= length_) break;
      appendPhysical(line, limit, tooLong);
    }
    appendBase64Lines(line, limit, tooLong);
    return true;
  }
  int lineNumber() const { return firstLine_; }

 private:
  void appendPhysical(std::string& line, size_t limit, bool& tooLong) {
    const char* start = text_ + pos_;
    const void* found = std::memchr(start, '\n', length_ - pos_);
    size_t end = found ? static_cast<const char*>(found) - text_ : length_;
    pos_ = found ? end + 1 : length_;
    ++lineNumber_;
    if (end > 0 && text_[end - 1] == '\r' && text_ + end - 1 >= start) --end;
    const size_t count = text_ + end - start;
    if (line.size() + count > limit) {
      tooLong = true;
      return;
    }
    line.append(start, count);
  }
  // Whether the parameters before the line's first ':' name `encoding` (bare or ENCODING=).
  static bool hasEncoding(const std::string& line, const std::string& encoding) {
    const size_t colon = line.find(':');
    if (colon == std::string::npos) return false;
    size_t start = line.find(';');
    while (start < colon) {
      const size_t end = std::min(line.find(';', start + 1), colon);
      const std::string param = upperText(trimmed(line.substr(start + 1, end - start - 1)));
      if (param == encoding || param == "ENCODING=" + encoding) return true;
      start = end;
    }
    return false;
  }
  // A quoted-printable property whose line ends in '=' goes on with the next line.
  static bool endsWithSoftBreak(const std::string& line) {
    return !line.empty() && line.back() == '=' && hasEncoding(line, "QUOTED-PRINTABLE");
  }
  // A 2.1 BASE64 value may go on in lines that are not indented, up to an empty line; such a
  // line holds no ':'.
  void appendBase64Lines(std::string& line, size_t limit, bool& tooLong) {
    if (!hasEncoding(line, "BASE64")) return;
    while (pos_ < length_) {
      const void* found = std::memchr(text_ + pos_, '\n', length_ - pos_);
      const size_t end = found ? static_cast<const char*>(found) - text_ : length_;
      const std::string next(text_ + pos_, end - pos_);
      if (next.find(':') != std::string::npos) return;
      if (trimmed(next).empty() || trimmed(next) == "\r") {
        pos_ = found ? end + 1 : length_;
        ++lineNumber_;
        return;
      }
      appendPhysical(line, limit, tooLong);
    }
  }

  const char* text_;
  size_t length_;
  size_t pos_ = 0;
  int lineNumber_ = 0;
  int firstLine_ = 0;
};

bool isBase64Text(const std::string& s) {
  for (char c : s) {
    const bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                    c == '+' || c == '/' || c == '=' || c == ' ' || c == '\t';
    if (!ok) return false;
  }
  return true;
}

std::string decodeBase64(const std::string& text) {
  std::string compact;
  for (char c : text) {
    if (c != ' ' && c != '\t') compact += c;
  }
  if (compact.empty()) return compact;
  const tbytesdata bytes = tbase64codec::Decode(compact.data(), static_cast<int>(compact.size()));
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

// Quoted-printable without the header rule that reads '_' as a space; false for a broken '='.
bool decodeQuotedPrintable(const std::string& text, std::string& out) {
  std::string guarded;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '=' &&
        (i + 2 >= text.size() || !isHexDigitUnit(text[i + 1]) || !isHexDigitUnit(text[i + 2]))) {
      return false;
    }
    guarded += text[i] == '_' ? std::string("=5F") : std::string(1, text[i]);
  }
  if (guarded.empty()) {
    out.clear();
    return true;
  }
  TAnsiString decoded;
  const int n = tqpcodec::Decode(guarded.data(), static_cast<int>(guarded.size()), decoded);
  out.assign(decoded.p() ? decoded.p() : "", n > 0 ? n : 0);
  return true;
}

bool convertToUtf8(const std::string& charset, std::string& value) {
  if (value.empty() || sameText(charset, "UTF-8") || sameText(charset, "US-ASCII")) return true;
  std::vector<char> out(value.size() * 4 + 4);
  const int n = AnyToAny("UTF-8", charset.c_str(), out.data(), static_cast<int>(out.size()),
                         value.data(), static_cast<int>(value.size()));
  if (n <= 0) return false;
  value.assign(out.data(), n);
  return true;
}

// Property, group and parameter names: letters, digits and '-'.
bool isName(const std::string& s) {
  if (s.empty()) return false;
  for (char c : s) {
    if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-')) {
      return false;
    }
  }
  return true;
}

// "NAME=value" or a 2.1 bare value ("CELL", "QUOTED-PRINTABLE", "UTF-8").
std::pair<std::string, std::string> parseParam(const std::string& text) {
  const size_t eq = text.find('=');
  if (eq != std::string::npos) {
    std::string value = trimmed(text.substr(eq + 1));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
      value = value.substr(1, value.size() - 2);
    }
    return {upperText(trimmed(text.substr(0, eq))), value};
  }
  const std::string bare = upperText(trimmed(text));
  if (bare == "QUOTED-PRINTABLE" || bare == "BASE64" || bare == "8BIT" || bare == "7BIT" ||
      bare == "B") {
    return {"ENCODING", bare};
  }
  return {"TYPE", bare};
}

// Splits "group.NAME;p=v;p2:value" at the first ':' outside double quotes.
bool splitLine(const std::string& line, Property& p) {
  bool quoted = false;
  size_t colon = std::string::npos;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == ':' && !quoted) {
      colon = i;
      break;
    }
  }
  if (colon == std::string::npos) return false;
  p.value = line.substr(colon + 1);
  std::vector<std::string> parts;
  quoted = false;
  size_t start = 0;
  for (size_t i = 0; i <= colon; ++i) {
    if (i < colon && line[i] == '"') quoted = !quoted;
    if (i == colon || (line[i] == ';' && !quoted)) {
      parts.push_back(line.substr(start, i - start));
      start = i + 1;
    }
  }
  std::string name = trimmed(parts[0]);
  const size_t dot = name.rfind('.');
  if (dot != std::string::npos) {
    p.group = name.substr(0, dot);
    name = name.substr(dot + 1);
  }
  p.name = upperText(name);
  for (size_t i = 1; i < parts.size(); ++i) {
    auto param = parseParam(parts[i]);
    if (isName(param.first)) p.params.push_back(std::move(param));
  }
  return isName(p.name) && (p.group.empty() || isName(p.group));
}

// The value of the first parameter `name`; every parameter of that name leaves the property.
std::string takeParam(Property& p, const char* name) {
  std::string value;
  bool found = false;
  for (auto it = p.params.begin(); it != p.params.end();) {
    if (it->first != name) {
      ++it;
      continue;
    }
    if (!found) value = it->second;
    found = true;
    it = p.params.erase(it);
  }
  return value;
}

// The media type a binary value has without a MEDIATYPE parameter: its TYPE as an image type
// (TYPE=JPEG: image/jpeg), else application/octet-stream.
std::string impliedMediaType(const Property& p) {
  for (const auto& [name, value] : p.params) {
    if (name != "TYPE") continue;
    std::string lower = "image/";
    for (char c : value) lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return lower;
  }
  return "application/octet-stream";
}

// A 4.0 "data:[mediatype];base64,..." value becomes binary with a MEDIATYPE parameter.
bool decodeDataUri(Property& p) {
  const size_t comma = p.value.find(',');
  if (p.value.compare(0, 5, "data:") != 0 || comma == std::string::npos) return true;
  const std::string head = p.value.substr(5, comma - 5);
  const size_t marker = head.find(";base64");
  if (marker == std::string::npos) return true;
  const std::string data = p.value.substr(comma + 1);
  if (!isBase64Text(data)) return false;
  const std::string media = head.substr(0, marker);
  if (!media.empty() && media != impliedMediaType(p)) p.params.emplace_back("MEDIATYPE", media);
  p.value = decodeBase64(data);
  p.binary = true;
  return true;
}

// Decodes the value of a property as its ENCODING and CHARSET parameters say.
tvcard::tstatus decodeValue(Property& p) {
  const std::string encoding = upperText(takeParam(p, "ENCODING"));
  const std::string charset = takeParam(p, "CHARSET");
  if (encoding == "B" || encoding == "BASE64") {
    if (!isBase64Text(p.value)) return tvcard::BadEncoding;
    p.value = decodeBase64(p.value);
    p.binary = true;
    return tvcard::Ok;
  }
  if (encoding == "QUOTED-PRINTABLE") {
    std::string decoded;
    if (!decodeQuotedPrintable(p.value, decoded)) return tvcard::BadEncoding;
    p.value = decoded;
  } else if (!encoding.empty() && encoding != "8BIT" && encoding != "7BIT") {
    return tvcard::BadEncoding;
  }
  if (!charset.empty() && !convertToUtf8(charset, p.value)) return tvcard::BadCharset;
  if (p.value.find('\0') != std::string::npos) return tvcard::BadEncoding;  // text holds no NUL
  p.value = escapedLineBreaks(p.value);
  return decodeDataUri(p) ? tvcard::Ok : tvcard::BadEncoding;
}

bool isCardMark(const Property& p, const char* mark) {
  return p.name == mark && sameText(trimmed(p.value), "VCARD");
}

}  // namespace

tvcardfile::tvcardfile() : maxLineLength(8 << 20), cards(new tcards) {}
tvcardfile::tvcardfile(const tvcardfile& other)
    : maxLineLength(other.maxLineLength), cards(new tcards(*other.cards)) {}
tvcardfile& tvcardfile::operator=(const tvcardfile& other) {
  if (this != &other) {
    *cards = *other.cards;
    maxLineLength = other.maxLineLength;
  }
  return *this;
}
tvcardfile::~tvcardfile() { delete cards; }

namespace {

// The text as UTF-8 up to its first NUL: a UTF-16 text (with its byte-order mark) is converted
// into `converted`, a UTF-8 byte-order mark skipped. Returns the text's start and sets `length`.
const char* utf8Text(const char* text, size_t& length, std::string& converted) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  const bool utf16le = length >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE;
  const bool utf16be = length >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF;
  if (utf16le || utf16be) {
    converted.assign((length - 2) / 2 * 3 + 4, '\0');
    const int n = AnyToAny("UTF-8", utf16le ? "UTF-16LE" : "UTF-16BE", &converted[0],
                           static_cast<int>(converted.size()), text + 2,
                           static_cast<int>(length - 2));
    text = converted.data();
    length = n > 0 ? n : 0;
  } else if (length >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) {
    text += 3;
    length -= 3;
  }
  const void* nul = std::memchr(text, 0, length);
  if (nul != nullptr) length = static_cast<const char*>(nul) - text;
  return text;
}

}  // namespace

int tvcardfile::readText(const char* text, int length) {
  clear();
  if (text == nullptr) return 0;
  size_t size = length < 0 ? std::strlen(text) : static_cast<size_t>(length);
  std::string converted;
  const char* utf8 = utf8Text(text, size, converted);
  LineReader reader(utf8, size);
  std::string line;
  bool tooLong = false;
  tvcardState* open = nullptr;
  const size_t limit = maxLineLength > 0 ? static_cast<size_t>(maxLineLength) : 0;
  while (reader.next(line, limit, tooLong)) {
    Property p;
    if (tooLong) {
      if (open) open->fail(tvcard::LineTooLong, "line too long", reader.lineNumber());
      continue;
    }
    if (!splitLine(line, p)) continue;
    if (isCardMark(p, "BEGIN")) {
      if (open) open->fail(tvcard::Unterminated, "card not ended", reader.lineNumber());
      cards->list.emplace_back();
      open = cards->list.back().state;
    } else if (open == nullptr) {
      continue;
    } else if (isCardMark(p, "END")) {
      open = nullptr;
    } else if (p.name == "BEGIN" || p.name == "END") {
      continue;  // the marks of other objects (a nested calendar) are not properties
    } else if (p.name == "VERSION") {
      open->version = trimmed(p.value);
    } else {
      const tvcard::tstatus decoded = decodeValue(p);
      if (decoded != tvcard::Ok) {
        open->fail(decoded, "cannot decode " + p.name, reader.lineNumber());
      } else if (open->status == tvcard::Ok) {
        open->properties.push_back(std::move(p));
      }
    }
  }
  if (open) open->fail(tvcard::Unterminated, "card not ended", reader.lineNumber());
  return count();
}

int tvcardfile::readFile(const zwchar_t* path) {
  clear();
  void* data = nullptr;
  const int size = mreadFileW(path, &data, true);
  if (size == -2) return 0;
  if (size <= 0) return -1;
  const int n = readText(static_cast<const char*>(data), size);
  zeb_deleteMem(data);
  return n;
}

int tvcardfile::count() const { return static_cast<int>(cards->list.size()); }
int tvcardfile::failedCount() const {
  int n = 0;
  for (const tvcard& c : cards->list) n += c.status() != tvcard::Ok;
  return n;
}
const tvcard& tvcardfile::card(int i) const {
  static const tvcard empty;
  return i >= 0 && i < count() ? cards->list[i] : empty;
}
void tvcardfile::add(const tvcard& card) { cards->list.push_back(card); }
void tvcardfile::clear() { cards->list.clear(); }

// ---- writing ------------------------------------------------------------------------------------

namespace {

// Appends one logical line folded at 75 octets, never inside a UTF-8 sequence.
void appendFolded(std::string& out, const std::string& line) {
  size_t start = 0;
  size_t room = 75;
  while (line.size() - start > room) {
    size_t cut = start + room;
    while (cut > start + 1 && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) --cut;
    out.append(line, start, cut - start);
    out += "\r\n ";
    start = cut;
    room = 74;
  }
  out.append(line, start, std::string::npos);
  out += "\r\n";
}

std::string base64Of(const std::string& bytes) {
  TAnsiString text;
  const int n = tbase64codec::Encode(bytes.data(), static_cast<int>(bytes.size()), text);
  std::string out;
  for (int i = 0; i < n; ++i) {
    if (text.p()[i] != '\r' && text.p()[i] != '\n') out += text.p()[i];
  }
  return out;
}

bool needsQuotes(const std::string& value) {
  return value.find_first_of(":;,") != std::string::npos;
}

std::string propertyLine(Property p, bool v4) {
  std::string value = escapedLineBreaks(p.value);
  if (p.binary) {
    if (v4) {
      const std::string media = takeParam(p, "MEDIATYPE");
      value = "data:" + (media.empty() ? impliedMediaType(p) : media) + ";base64," +
              base64Of(p.value);
    } else {
      p.params.emplace_back("ENCODING", "b");
      value = base64Of(p.value);
    }
  }
  std::string line = p.group.empty() ? p.name : p.group + "." + p.name;
  for (auto [name, paramValue] : p.params) {
    // A parameter value cannot hold a double quote.
    paramValue.erase(std::remove(paramValue.begin(), paramValue.end(), '"'), paramValue.end());
    line += ";" + name + "=" + (needsQuotes(paramValue) ? "\"" + paramValue + "\"" : paramValue);
  }
  return line + ":" + value;
}

}  // namespace

TAnsiString tvcardfile::writeText(int version) const {
  const bool v4 = version != 30;
  std::string out;
  for (const tvcard& card : cards->list) {
    out += "BEGIN:VCARD\r\n";
    out += v4 ? "VERSION:4.0\r\n" : "VERSION:3.0\r\n";
    for (const Property& p : card.state->properties) appendFolded(out, propertyLine(p, v4));
    out += "END:VCARD\r\n";
  }
  return toAnsi(out);
}

bool tvcardfile::writeFile(const zwchar_t* path, int version) const {
  const TAnsiString text = writeText(version);
  const int length = text.length();
  return mwriteFileW(path, text.p(), static_cast<unsigned>(length)) == length;
}
