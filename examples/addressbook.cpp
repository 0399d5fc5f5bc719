// Reads an address book (vCard 2.1, 3.0 or 4.0) and prints every name beside its pinyin sort key,
// sorted by that key: Han names sort by their readings among the Latin ones.
//
//   zeb_addressbook contacts.vcf [out.vcf]     also writes the book back as vCard 4.0
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "zeb/formats/TPinyinWrapper.h"
#include "zeb/formats/tvcard.h"
#include "zeb/strings/TWideString.h"

namespace {

struct Entry {
  std::string key;
  std::string tieBreak;
  std::string name;
  std::string tel;
};

std::string text(const TAnsiString& s) { return s.isEmpty() ? std::string() : s.p(); }

// Lower-case plain pinyin, syllables apart; Latin text stays as it is, lower-cased.
std::string sortKey(const std::string& name, int style) {
  std::string key = text(zeb::TPinyinWrapper::fromUTF8(name.c_str(), -1, style, " "));
  for (char& c : key) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return key;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s contacts.vcf [out.vcf]\n", argv[0]);
    return 2;
  }
  TWideString path;
  path.fromUTF8(argv[1]);
  tvcardfile book;
  if (book.readFile(path.p()) < 0) {
    std::fprintf(stderr, "cannot read %s\n", argv[1]);
    return 1;
  }
  std::vector<Entry> entries;
  for (int i = 0; i < book.count(); ++i) {
    const tvcard& card = book.card(i);
    if (card.status() != tvcard::Ok) {
      std::printf("card %d skipped: %s\n", i + 1, card.errorText());
      continue;
    }
    // Family name first for the key, as Chinese names are written and sorted.
    std::string name = text(card.n(tvcard::NFamily)) + " " + text(card.n(tvcard::NGiven));
    if (name == " ") name = text(card.fn());
    entries.push_back({sortKey(name, zeb::TPinyinWrapper::Plain),
                       sortKey(name, zeb::TPinyinWrapper::ToneNumbers), text(card.fn()),
                       text(card.tel(0))});
  }
  // Same-sounding names go in tone order.
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.key != b.key ? a.key < b.key : a.tieBreak < b.tieBreak;
  });
  for (const Entry& e : entries) {
    std::printf("%-16s  %s  %s\n", e.key.c_str(), e.name.c_str(), e.tel.c_str());
  }
  if (argc > 2) {
    TWideString out;
    out.fromUTF8(argv[2]);
    if (!book.writeFile(out.p(), 40)) return 1;
    std::printf("written as vCard 4.0: %s\n", argv[2]);
  }
  return 0;
}
