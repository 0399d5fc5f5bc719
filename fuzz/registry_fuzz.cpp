// Registry round trips from arbitrary input: value names (any UTF-16 units but NUL), type codes and
// bytes are stored through TRegKey and must come back exactly, by name and by enumeration, with
// names that differ only in ASCII case naming the same value (the first spelling kept) and values
// enumerated in the order they were first set. Subkey names from the input must be found again.
// The store lives in a temporary folder; every input starts from an empty key.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/utils/zeb_regkey.h"

namespace {

const zwchar_t* const kRoot = ZW("SOFTWARE\\zebworks\\fuzz");

class Input : public FuzzInput {
 public:
  using FuzzInput::FuzzInput;
  // 1 to 8 units, never NUL; some ASCII letters so that case matters.
  std::u16string name() {
    const int n = byte() % 8 + 1;
    std::u16string s;
    for (int i = 0; i < n; ++i) {
      const unsigned char kind = byte();
      char16_t u = kind < 128 ? static_cast<char16_t>('A' + kind % 4 + (kind & 32))
                              : static_cast<char16_t>(byte() | (kind << 8));
      s.push_back(u == 0 ? u'0' : u);
    }
    return s;
  }
  std::string bytes() {
    const size_t n = byte() % 40;
    std::string s;
    for (size_t i = 0; i < n; ++i) s.push_back(static_cast<char>(byte()));
    return s;
  }
};

std::u16string folded(const std::u16string& s) {
  std::u16string f = s;
  for (char16_t& u : f) {
    if (u >= 'a' && u <= 'z') u = static_cast<char16_t>(u - 32);
  }
  return f;
}

struct Stored {
  std::u16string name;
  unsigned long type;
  std::string bytes;
};

bool same(const RegValue& value, const Stored& expected) {
  return value.getType() == expected.type && value.Size() == expected.bytes.size() &&
         (expected.bytes.empty() ||
          memcmp(value.Pointer(), expected.bytes.data(), expected.bytes.size()) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  static char folder[] = "/tmp/zeb_registry_fuzz_XXXXXX";
  if (mkdtemp(folder) == nullptr) abort();
  setenv("ZEB_REGISTRY_DIR", folder, 1);
  atexit([] { std::filesystem::remove_all(folder); });
  // The store stays open while a handle does: keep one, so inputs do not reopen it each time.
  static TRegKey software(HKEY_CURRENT_USER);
  if (software.Create(ZW("SOFTWARE")) != ERROR_SUCCESS) abort();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  TRegKey key(HKEY_CURRENT_USER);
  FUZZ_CHECK(key.Create(kRoot) == ERROR_SUCCESS);
  std::vector<Stored> model;
  std::vector<std::u16string> subkeys;
  while (!input.done() && model.size() < 32) {
    const std::u16string name = input.name();
    if (input.byte() % 8 == 0) {
      TRegKey sub(HKEY_CURRENT_USER);
      const std::u16string path = std::u16string(kRoot) + u"\\" + name;
      const long status = sub.Create(path.c_str());
      // '\\' in a name makes a path; each of its parts is a key of its own.
      FUZZ_CHECK(status == ERROR_SUCCESS);
      if (name.find(u'\\') == std::u16string::npos) subkeys.push_back(folded(name));
      continue;
    }
    const unsigned long type = input.byte() % 12;
    const std::string bytes = input.bytes();
    unsigned char* p = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
    RegValue value(static_cast<unsigned long>(bytes.size()), p);
    value.getTypeWriter() = type;
    FUZZ_CHECK(key.SetValue(name.c_str(), value) == ERROR_SUCCESS);
    Stored* slot = nullptr;
    for (Stored& s : model) {
      if (folded(s.name) == folded(name)) slot = &s;
    }
    if (slot == nullptr) {
      model.push_back({name, type, bytes});
    } else {
      slot->type = type;
      slot->bytes = bytes;
    }
  }
  for (const Stored& s : model) {
    RegValue back;
    FUZZ_CHECK(key.QueryValue(folded(s.name).c_str(), back) == ERROR_SUCCESS);
    FUZZ_CHECK(same(back, s));
  }
  for (unsigned long i = 0; i <= model.size(); ++i) {
    zwchar_t name[16];
    unsigned long length = 16;
    RegValue back;
    const long status = key.EnumValue(i, name, &length, back);
    if (i == model.size()) {
      FUZZ_CHECK(status == ERROR_NO_MORE_ITEMS);
      break;
    }
    FUZZ_CHECK(status == ERROR_SUCCESS);
    FUZZ_CHECK(std::u16string(name, length) == model[i].name);
    FUZZ_CHECK(same(back, model[i]));
  }
  for (const std::u16string& sub : subkeys) {
    TRegKey again(HKEY_CURRENT_USER);
    FUZZ_CHECK(again.Open((std::u16string(kRoot) + u"\\" + sub).c_str()) == ERROR_SUCCESS);
  }
  FUZZ_CHECK(key.DeleteTree() == ERROR_SUCCESS);
  return 0;
}
