// Differential fuzzing of tdatabundle and tsdatabundle against std::map and std::vector models.
//
// The input is a program: each step reads an operation byte and its operands (keys of one to
// three letters from a four-letter alphabet, so keys collide often; small integers; texts and
// bytes straight from the input). Two keyed bundles and two sequences are driven side by side
// with their models; after every step each bundle must hold exactly its model's items (nested
// bundles included), equality must agree with the models' equality, and the read cursor of a
// sequence must read what the model says. Leaks and bad frees are left to the sanitizers.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/data/tdatabundle.h"

namespace {

class Input : public zeb::fuzz::FuzzInput {
 public:
  using FuzzInput::FuzzInput;
  int smallInt() { return static_cast<int>(byte() % 16) - 2; }
  std::string key() {
    std::string k(1 + byte() % 3, 'a');
    for (char& c : k) c = static_cast<char>('a' + byte() % 4);
    return k;
  }
  // Up to 15 bytes of input, NULs included.
  std::string block() { return take(byte() % 16); }
};

struct Model;

struct Value {
  udatatype type = tbundleitem::dtEmpty;
  unsigned long long number = 0;
  std::string text;  // texts and bytes
  std::shared_ptr<const Model> nested;
};

struct Model {
  std::map<std::string, Value> items;
  size_t nodes() const {
    size_t n = items.size();
    for (const auto& entry : items) n += entry.second.nested ? entry.second.nested->nodes() : 0;
    return n;
  }
};

bool sameValue(const Value& a, const Value& b);

bool sameModel(const Model& a, const Model& b) {
  if (a.items.size() != b.items.size()) return false;
  for (const auto& entry : a.items) {
    const auto it = b.items.find(entry.first);
    if (it == b.items.end() || !sameValue(entry.second, it->second)) return false;
  }
  return true;
}

bool sameValue(const Value& a, const Value& b) {
  if (a.type != b.type) return false;
  switch (a.type) {
    case tbundleitem::dtString:
    case tbundleitem::dtBytesData:
      return a.text == b.text;
    case tbundleitem::dtDataBundle:
      return sameModel(*a.nested, *b.nested);
    default:
      return a.number == b.number;
  }
}

void checkItem(const tbundleitem& item, const Value& value);

void checkBundle(tdatabundle& bundle, const Model& model) {
  FUZZ_CHECK(bundle.itemsCount() == static_cast<int>(model.items.size()));
  for (const auto& entry : model.items) {
    FUZZ_CHECK(bundle.has(entry.first.c_str()));
    checkItem(bundle[entry.first.c_str()], entry.second);
  }
  size_t walked = 0;
  for (const tdatabundleItemData* item = bundle.firstItem(); item != nullptr;
       item = bundle.nextItem()) {
    FUZZ_CHECK(model.items.count(item->name) == 1);
    ++walked;
  }
  FUZZ_CHECK(walked == model.items.size());
}

void checkItem(const tbundleitem& item, const Value& value) {
  FUZZ_CHECK(item.type() == value.type);
  switch (value.type) {
    case tbundleitem::dtString:
      FUZZ_CHECK(std::string(item.asString() != nullptr ? item.asString() : "") == value.text);
      break;
    case tbundleitem::dtBytesData:
      FUZZ_CHECK(item.asBytesData() ==
            tbytesdata(value.text.data(), static_cast<int>(value.text.size())));
      break;
    case tbundleitem::dtDataBundle: {
      tdatabundle nested = item.asDataBundle();
      checkBundle(nested, *value.nested);
      break;
    }
    default:
      FUZZ_CHECK(item.value() == value.number);
  }
}

Value numberValue(udatatype type, long long n) {
  Value v;
  v.type = type;
  v.number = static_cast<unsigned long long>(n);
  return v;
}

Value textValue(udatatype type, std::string text) {
  Value v;
  v.type = type;
  v.text = std::move(text);
  return v;
}

// A string item keeps its text up to the first NUL.
std::string cText(const std::string& s) {
  return std::string(s.c_str());
}

struct Keyed {
  tdatabundle bundle;
  Model model;
};

void stepKeyed(Input& in, Keyed& self, Keyed& other) {
  const std::string key = in.key();
  const char* k = key.c_str();
  const bool fresh = self.model.items.count(key) == 0;
  switch (in.byte() % 12) {
    case 0: {
      const int n = in.smallInt();
      FUZZ_CHECK(self.bundle.putInt32(k, n) == fresh);
      if (fresh) self.model.items[key] = numberValue(tbundleitem::dtInt32, n);
      break;
    }
    case 1: {
      const std::string text = cText(in.block());
      FUZZ_CHECK(self.bundle.putString(k, text.c_str()) == fresh);
      if (fresh) self.model.items[key] = textValue(tbundleitem::dtString, text);
      break;
    }
    case 2: {
      const std::string bytes = in.block();
      FUZZ_CHECK(self.bundle.putBytesData(k, tbytesdata(bytes.data(), static_cast<int>(bytes.size()))) ==
            fresh);
      if (fresh) self.model.items[key] = textValue(tbundleitem::dtBytesData, bytes);
      break;
    }
    case 3: {
      if (self.model.nodes() > 200) break;
      Value v;
      v.type = tbundleitem::dtDataBundle;
      v.nested = std::make_shared<const Model>(self.model);
      FUZZ_CHECK(self.bundle.putDataBundle(k, self.bundle) == fresh);
      if (fresh) self.model.items[key] = v;
      break;
    }
    case 4: {
      const long long n = in.smallInt();
      self.bundle[k] = n;
      self.model.items[key] = numberValue(tbundleitem::dtInt64, n);
      break;
    }
    case 5: {
      const std::string text = cText(in.block());
      self.bundle[k] = text.c_str();
      self.model.items[key] = textValue(tbundleitem::dtString, text);
      break;
    }
    case 6:
      FUZZ_CHECK(self.bundle.remove(k) == !fresh);
      self.model.items.erase(key);
      break;
    case 7:
      self.bundle = other.bundle;
      self.model = other.model;
      break;
    case 8:
      FUZZ_CHECK((self.bundle == other.bundle) == sameModel(self.model, other.model));
      break;
    case 9:
      self.bundle.putDatas(other.bundle);
      self.model.items.insert(other.model.items.begin(), other.model.items.end());
      break;
    case 10: {
      zeb::PassRefPtr<idatabundle> view = other.bundle.wrapAsInterface();
      self.bundle.putDatas(view.get());
      self.model.items.insert(other.model.items.begin(), other.model.items.end());
      break;
    }
    default: {
      tdatabundle moved(std::move(self.bundle));
      FUZZ_CHECK(self.bundle.itemsCount() == 0);  // NOLINT(bugprone-use-after-move)
      self.bundle = std::move(moved);
    }
  }
}

struct Sequence {
  tsdatabundle bundle;
  std::vector<Value> model;
  int cursor = 0;
};

void checkSequence(const Sequence& s) {
  FUZZ_CHECK(s.bundle.itemsCount() == static_cast<int>(s.model.size()));
  for (size_t i = 0; i < s.model.size(); ++i) checkItem(s.bundle[static_cast<int>(i)], s.model[i]);
}

void stepSequence(Input& in, Sequence& self, Sequence& other) {
  switch (in.byte() % 8) {
    case 0: {
      const int n = in.smallInt();
      self.bundle.putInt32(n);
      self.model.push_back(numberValue(tbundleitem::dtInt32, n));
      break;
    }
    case 1: {
      const std::string text = cText(in.block());
      self.bundle.putString(text.c_str());
      self.model.push_back(textValue(tbundleitem::dtString, text));
      break;
    }
    case 2: {
      const int index = in.smallInt();
      const bool inside = index >= 0 && index < static_cast<int>(self.model.size());
      FUZZ_CHECK(self.bundle.remove(index) == inside);
      if (inside) self.model.erase(self.model.begin() + index);
      break;
    }
    case 3: {
      const int index = in.smallInt();
      const int at = index == -1 ? self.cursor : index;
      const bool inside = at >= 0 && at < static_cast<int>(self.model.size());
      const unsigned long long read = self.bundle.getItem(index);
      if (inside) {
        ++self.cursor;
        const Value& v = self.model[static_cast<size_t>(at)];
        if (v.type != tbundleitem::dtString) FUZZ_CHECK(read == v.number);
      } else {
        FUZZ_CHECK(read == 0);
      }
      break;
    }
    case 4:
      self.bundle.resetPos();
      self.cursor = 0;
      break;
    case 5:
      self.bundle = other.bundle;  // the cursor comes along
      self.model = other.model;
      self.cursor = other.cursor;
      break;
    case 6:
      FUZZ_CHECK((self.bundle == other.bundle) ==
            (self.model.size() == other.model.size() &&
             std::equal(self.model.begin(), self.model.end(), other.model.begin(), sameValue)));
      break;
    default: {
      const std::vector<Value> added = other.model;
      self.bundle.putDatas(other.bundle);
      self.model.insert(self.model.end(), added.begin(), added.end());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input in(data, size);
  Keyed keyed[2];
  Sequence sequences[2];
  while (!in.done()) {
    const unsigned char target = in.byte();
    const int which = target & 1;
    if ((target & 2) != 0) {
      stepKeyed(in, keyed[which], keyed[1 - which]);
      checkBundle(keyed[which].bundle, keyed[which].model);
    } else {
      if (sequences[which].model.size() > 512) sequences[which] = Sequence();
      stepSequence(in, sequences[which], sequences[1 - which]);
      checkSequence(sequences[which]);
    }
  }
  return 0;
}
