// reg_command.cpp: `zeb reg get|set|del|list|tree KEY [NAME [VALUE --type TYPE]]`, the registry
// store of the library. KEY is spelled as Windows' reg spells it: a hive (HKCU, HKLM, HKCR, HKU,
// HKCC or their long names such as HKEY_CURRENT_USER), '\', then the path. NAME "" is the
// key's default value. ZEB_REGISTRY_DIR chooses the store, as it does for the library.
//
//   zeb reg set KEY NAME VALUE [--type sz|expand_sz|dword|qword|binary|multi]   (sz by default)
//   zeb reg get KEY NAME         the data: text, a decimal number, hex bytes, or one string a line
//   zeb reg del KEY [NAME]       removes the value, or the key with everything under it
//   zeb reg list KEY             "NAME<tab>TYPE<tab>DATA" per value, then the subkeys' paths
//   zeb reg tree KEY             the subkeys under KEY, indented by depth
//
// dword and qword take a decimal number or one written 0x...; binary takes hex digits; multi takes
// its strings separated by the two characters \0, as reg does.
#include <cstdlib>
#include <map>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct RegOptions {
  std::string action;
  std::string key;
  std::string name;
  std::string value;
  std::string type = "sz";
  bool hasName = false;
  bool hasValue = false;
};

// The longest name the store hands out, in UTF-16 units with the NUL.
const unsigned long kNameUnits = 16384;

const std::map<std::string, HKEY> kHives = {
    {"HKCU", HKEY_CURRENT_USER},   {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKLM", HKEY_LOCAL_MACHINE},  {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKCR", HKEY_CLASSES_ROOT},   {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {"HKU", HKEY_USERS},           {"HKEY_USERS", HKEY_USERS},
    {"HKCC", HKEY_CURRENT_CONFIG}, {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
};

const std::map<unsigned long, const char*> kTypeNames = {
    {REG_NONE, "REG_NONE"},     {REG_SZ, "REG_SZ"},       {REG_EXPAND_SZ, "REG_EXPAND_SZ"},
    {REG_BINARY, "REG_BINARY"}, {REG_DWORD, "REG_DWORD"}, {REG_MULTI_SZ, "REG_MULTI_SZ"},
    {REG_QWORD, "REG_QWORD"},
};

TWideString wide(const std::string& utf8) {
  return TWideString(utf8.c_str(), MIB_UTF8);
}

std::string utf8(const zwchar_t* text) {
  TAnsiString out;
  out.fromWideString(text, MIB_UTF8);
  return out.isEmpty() ? "" : out.p();
}

// KEY split into its hive and path; false for an unknown hive.
bool splitKey(const std::string& key, HKEY& hive, std::string& path) {
  const size_t separator = key.find('\\');
  const std::string hiveName = key.substr(0, separator);
  const auto found = kHives.find(TAnsiString(hiveName.c_str()).toUpper().p());
  if (found == kHives.end()) return false;
  hive = found->second;
  path = separator == std::string::npos ? "" : key.substr(separator + 1);
  return true;
}

std::string statusText(long status) {
  switch (status) {
    case ERROR_FILE_NOT_FOUND: return "not found";
    case ERROR_ACCESS_DENIED: return "access denied";
    case ERROR_KEY_DELETED: return "the key was deleted";
    default: return "registry error " + std::to_string(status);
  }
}

// Reports a failed registry call on `what`; returns kFailure.
int failed(const std::string& what, long status) {
  reportError(what + ": " + statusText(status));
  return kFailure;
}

// Lower-case digits, two per byte. A value holds at most INT_MAX bytes; the buffer has the room
// the writer asks for, of which the digits use the first two units per byte.
std::string hexOf(const unsigned char* bytes, unsigned long size) {
  std::string hex(3 * size + 2, '\0');
  BinaryToHexNoTagA(bytes, static_cast<int>(size), &hex[0], true, 0);
  hex.resize(2 * size);
  return hex;
}

// The strings of a REG_MULTI_SZ value: each ended by a NUL unit, the list by an empty string
// (or the end of the data).
std::vector<std::string> stringsOf(const RegValue& value) {
  std::vector<std::string> strings;
  std::basic_string<zwchar_t> current;
  for (unsigned long i = 0; i + 1 < value.Size(); i += 2) {
    const zwchar_t unit = static_cast<zwchar_t>(value.getData(i) | (value.getData(i + 1) << 8));
    if (unit != 0) {
      current += unit;
      continue;
    }
    if (current.empty()) break;
    strings.push_back(utf8(current.c_str()));
    current.clear();
  }
  if (!current.empty()) strings.push_back(utf8(current.c_str()));
  return strings;
}

// The data of a value as text; multi-strings joined by `separator`.
std::string dataOf(const RegValue& value, const std::string& separator) {
  switch (value.getType()) {
    case REG_SZ:
    case REG_EXPAND_SZ: return utf8(value);
    case REG_DWORD: return std::to_string(static_cast<unsigned long>(value));
    case REG_QWORD: return std::to_string(static_cast<unsigned long long>(value));
    case REG_MULTI_SZ: {
      std::string joined;
      for (const std::string& text : stringsOf(value)) {
        joined += (joined.empty() ? "" : separator) + text;
      }
      return joined;
    }
    default: return hexOf(value.Pointer(), value.Size());
  }
}

bool parseNumber(const std::string& text, unsigned long long limit, unsigned long long& number) {
  if (text.empty() || text[0] == '-') return false;
  char* end = nullptr;
  number = std::strtoull(text.c_str(), &end, 0);
  return *end == '\0' && number <= limit;
}

bool parseHex(const std::string& text, std::vector<unsigned char>& bytes) {
  if (text.size() % 2 != 0) return false;
  for (size_t i = 0; i < text.size(); i += 2) {
    char* end = nullptr;
    const std::string pair = text.substr(i, 2);
    const unsigned long byte = std::strtoul(pair.c_str(), &end, 16);
    if (*end != '\0' || pair[0] == '-' || pair[0] == '+' || pair[0] == ' ') return false;
    bytes.push_back(static_cast<unsigned char>(byte));
  }
  return true;
}

// VALUE as a value of TYPE; false when it does not read as one.
bool valueOf(const RegOptions& options, RegValue& value) {
  const std::string& text = options.value;
  unsigned long long number = 0;
  if (options.type == "dword") {
    if (!parseNumber(text, 0xFFFFFFFFull, number)) return false;
    value = RegValue(static_cast<unsigned long>(number));
  } else if (options.type == "qword") {
    if (!parseNumber(text, ~0ull, number)) return false;
    value = RegValue(number);
  } else if (options.type == "binary") {
    std::vector<unsigned char> bytes;
    if (!parseHex(text, bytes)) return false;
    value = RegValue(static_cast<unsigned long>(bytes.size()), bytes.data());
  } else if (options.type == "multi") {
    std::vector<TWideString> parts;
    for (size_t start = 0;;) {
      const size_t end = text.find("\\0", start);
      parts.push_back(wide(text.substr(start, end - start)));
      if (end == std::string::npos) break;
      start = end + 2;
    }
    std::vector<const zwchar_t*> strings;
    for (const TWideString& part : parts) strings.push_back(part.p());
    value = RegValue(static_cast<unsigned short>(strings.size()), strings.data());
  } else {
    value = RegValue(wide(text).p(), options.type == "expand_sz");
  }
  return true;
}

// The subkey names of an open key.
std::vector<std::string> subkeysOf(TRegKey& key) {
  std::vector<std::string> names;
  std::vector<zwchar_t> name(kNameUnits);
  for (unsigned long index = 0;; ++index) {
    unsigned long length = kNameUnits;
    if (key.EnumKey(index, name.data(), &length) != ERROR_SUCCESS) break;
    names.push_back(utf8(name.data()));
  }
  return names;
}

std::string listing(TRegKey& key, const std::string& keyText) {
  std::string lines;
  std::vector<zwchar_t> name(kNameUnits);
  for (unsigned long index = 0;; ++index) {
    unsigned long length = kNameUnits;
    RegValue value;
    if (key.EnumValue(index, name.data(), &length, value) != ERROR_SUCCESS) break;
    const std::string valueName = length == 0 ? "(default)" : utf8(name.data());
    const auto type = kTypeNames.find(value.getType());
    lines += valueName + "\t" + (type != kTypeNames.end() ? type->second : "REG_?") + "\t" +
             dataOf(value, "\\0") + "\n";
  }
  for (const std::string& subkey : subkeysOf(key)) lines += keyText + "\\" + subkey + "\n";
  return lines;
}

void appendTree(HKEY hive, const std::string& path, int depth, std::string& lines) {
  TRegKey key(hive);
  if (key.Open(wide(path).p(), KEY_READ) != ERROR_SUCCESS) return;
  for (const std::string& subkey : subkeysOf(key)) {
    lines += std::string(2 * depth, ' ') + subkey + "\n";
    appendTree(hive, path.empty() ? subkey : path + "\\" + subkey, depth + 1, lines);
  }
}

int runGet(TRegKey& key, const RegOptions& options) {
  RegValue value;
  const long status = key.QueryValue(wide(options.name).p(), value);
  if (status != ERROR_SUCCESS) return failed(options.key + "\\" + options.name, status);
  return writeOutput(dataOf(value, "\n") + "\n") ? kSuccess : kFailure;
}

int runSet(TRegKey& key, const RegOptions& options) {
  RegValue value;
  if (!valueOf(options, value)) {
    throw CLI::ValidationError("VALUE", "'" + options.value + "' is not " + options.type + " data");
  }
  const long status = key.SetValue(wide(options.name).p(), value);
  return status == ERROR_SUCCESS ? kSuccess : failed(options.key, status);
}

int runDelete(TRegKey& key, const RegOptions& options) {
  const long status =
      options.hasName ? key.DeleteValue(wide(options.name).p()) : key.DeleteTree();
  return status == ERROR_SUCCESS ? kSuccess
                                 : failed(options.key + (options.hasName ? "\\" + options.name
                                                                          : ""),
                                          status);
}

void checkArguments(const RegOptions& options) {
  const bool needsName = options.action == "get" || options.action == "set";
  if (needsName && !options.hasName) {
    throw CLI::ValidationError("reg " + options.action, "NAME is needed");
  }
  if (options.action == "set" && !options.hasValue) {
    throw CLI::ValidationError("reg set", "VALUE is needed");
  }
}

int runReg(const RegOptions& options) {
  checkArguments(options);
  HKEY hive = nullptr;
  std::string path;
  if (!splitKey(options.key, hive, path)) {
    throw CLI::ValidationError("KEY", "'" + options.key + "' does not start with a hive (HKCU, "
                                      "HKEY_CURRENT_USER, ...)");
  }
  if (options.action == "tree") {
    std::string lines;
    appendTree(hive, path, 0, lines);
    return writeOutput(lines) ? kSuccess : kFailure;
  }
  TRegKey key(hive);
  const long status = options.action == "set" ? key.Create(wide(path).p(), KEY_ALL_ACCESS)
                                              : key.Open(wide(path).p(), KEY_ALL_ACCESS);
  if (status != ERROR_SUCCESS) return failed(options.key, status);
  if (options.action == "get") return runGet(key, options);
  if (options.action == "set") return runSet(key, options);
  if (options.action == "del") return runDelete(key, options);
  return writeOutput(listing(key, options.key)) ? kSuccess : kFailure;
}

}  // namespace

void addRegCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<RegOptions>();
  CLI::App* command = app.add_subcommand(
      "reg", "The registry store: get KEY NAME, set KEY NAME VALUE [--type T], del KEY [NAME], "
             "list KEY, tree KEY. KEY as HKCU\\Software\\... or HKEY_CURRENT_USER\\Software\\...");
  command->add_option("action", options->action, "get, set, del, list or tree")
      ->required()
      ->check(CLI::IsMember({"get", "set", "del", "list", "tree"}));
  command->add_option("key", options->key, "the key")->required();
  CLI::Option* name = command->add_option("name", options->name, "the value's name");
  CLI::Option* value = command->add_option("value", options->value, "the data to set");
  command->add_option("--type", options->type, "the type of the data set (sz by default)")
      ->check(CLI::IsMember({"sz", "expand_sz", "dword", "qword", "binary", "multi"}));
  command->callback([options, name, value, &run] {
    options->hasName = name->count() > 0;
    options->hasValue = value->count() > 0;
    run.status = runReg(*options);
  });
}

}  // namespace zebtool
