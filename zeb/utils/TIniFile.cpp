// TIniFile.cpp: loading, lookups, changes and saving of INI files.
#include "zeb/utils/TIniFile.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <new>

#include "zeb/platform/file.h"
#include "zeb/strings/internal/units.h"

namespace zeb {

namespace {

const size_t kLineChunk = 2048;

const IniItem* firstItem(const IniSection& section, const std::string& key) {
  for (const IniItem& item : section.items) {
    if (item.key == key) return &item;
  }
  return nullptr;
}

void appendCommented(std::string& out, const std::string& comment) {
  if (comment.empty()) return;
  out += comment;
  out += '\n';
}

}  // namespace

struct TIniFile::Data {
  Sections sections;
  std::string fileName;
  std::vector<std::string> commentFlags{"#", ";"};

  const IniSection* find(const std::string& name) const {
    const auto it = sections.find(name);
    return it == sections.end() ? nullptr : it->second;
  }
  IniSection* find(const std::string& name) {
    const auto it = sections.find(name);
    return it == sections.end() ? nullptr : it->second;
  }
  const IniItem* findItem(const std::string& section, const std::string& key) const {
    const IniSection* s = find(section);
    return s == nullptr ? nullptr : firstItem(*s, key);
  }
  IniSection* add(const std::string& name, const std::string& comment) {
    IniSection* section = new IniSection{name, comment, {}};
    sections.emplace(name, section);
    return section;
  }
  void copySections(const Data& other) {
    for (const auto& [name, section] : other.sections)
      sections.emplace(name, new IniSection(*section));
  }
};

TIniFile::TIniFile() : d(new Data) {}

TIniFile::TIniFile(const TIniFile& other) : d(new Data) {
  *this = other;
}

TIniFile& TIniFile::operator=(const TIniFile& other) {
  if (this != &other) {
    release();
    d->copySections(*other.d);
    d->fileName = other.d->fileName;
    d->commentFlags = other.d->commentFlags;
  }
  return *this;
}

TIniFile::~TIniFile() {
  release();
  delete d;
}

void TIniFile::release() {
  for (auto& pair : d->sections) delete pair.second;
  d->sections.clear();
}

// ---- loading ------------------------------------------------------------------------------------

unsigned TIniFile::getline(std::string& line, std::FILE* file) {
  line.clear();
  char chunk[kLineChunk];
  try {
    while (std::fgets(chunk, sizeof chunk, file) != nullptr) {
      line.append(chunk);
      if (!line.empty() && line.back() == '\n') break;
    }
  } catch (const std::bad_alloc&) {
    std::fputs("no enough memory!exit!\n", stderr);
    line.clear();
  }
  return static_cast<unsigned>(line.size());
}

bool TIniFile::isComment(const std::string& line) const {
  for (const std::string& flag : d->commentFlags) {
    if (!flag.empty() && line.compare(0, flag.size(), flag) == 0) return true;
  }
  return false;
}

bool TIniFile::parse(const std::string& line, std::string& key, std::string& value,
                     char sep) const {
  const size_t at = line.find(sep);
  if (at == std::string::npos) return false;
  key.assign(line, 0, at);
  value.assign(line, at + 1, std::string::npos);
  return true;
}

bool TIniFile::load(const std::string& fileName) {
  release();
  d->fileName = fileName;
  std::FILE* file = std::fopen(fileName.c_str(), "r");
  if (file == nullptr) return false;
  IniSection* current = d->add("", "");
  std::string pending, line, key, value;
  bool ok = true;
  while (getline(line, file) != 0) {
    trimright(line, '\n');
    trimright(line, '\r');
    trim(line);
    const bool comment = isComment(line);
    if (!comment) {
      // Inline comments: the line keeps what stands before the first flag that occurs in it.
      size_t cut = std::string::npos;
      for (const std::string& flag : d->commentFlags) {
        if (!flag.empty()) cut = std::min(cut, line.find(flag));
      }
      if (cut != std::string::npos) {
        pending.append(line, cut, std::string::npos);
        line.erase(cut);
      }
      trim(line);
    }
    if (line.empty()) continue;
    if (line[0] == '[') {
      current = nullptr;
      const size_t close = line.find(']');
      if (close == std::string::npos) {
        ok = false;
        break;
      }
      const std::string name = line.substr(1, close - 1);
      if (name.empty()) continue;
      if (d->find(name) != nullptr) {
        ok = false;
        break;
      }
      current = d->add(name, pending);
      pending.clear();
    } else if (comment) {
      if (!pending.empty()) pending += '\n';
      pending += line;
    } else {
      if (current != nullptr && parse(line, key, value, '=')) {
        current->items.push_back(IniItem{key, value, pending});
      }
      pending.clear();
    }
  }
  std::fclose(file);
  return ok;
}

// ---- lookups ------------------------------------------------------------------------------------

bool TIniFile::getValue(const std::string& section, const std::string& key,
                        std::string& value) const {
  std::string comment;
  return getValue(section, key, value, comment);
}

bool TIniFile::getValue(const std::string& section, const std::string& key, std::string& value,
                        std::string& comment) const {
  const IniItem* item = d->findItem(section, key);
  if (item == nullptr) return false;
  value = item->value;
  comment = item->comment;
  return true;
}

std::string TIniFile::getStringValue(const std::string& section, const std::string& key,
                                     int& found) const {
  const IniItem* item = d->findItem(section, key);
  found = item != nullptr ? 1 : 0;
  return item != nullptr ? item->value : std::string();
}

int TIniFile::getIntValue(const std::string& section, const std::string& key, int& found) const {
  return atoi(getStringValue(section, key, found).c_str());
}

double TIniFile::getDoubleValue(const std::string& section, const std::string& key,
                                int& found) const {
  return atof(getStringValue(section, key, found).c_str());
}

bool TIniFile::getValues(const std::string& section, const std::string& key,
                         std::vector<std::string>& values) const {
  std::vector<std::string> comments;
  return getValues(section, key, values, comments);
}

bool TIniFile::getValues(const std::string& section, const std::string& key,
                         std::vector<std::string>& values,
                         std::vector<std::string>& comments) const {
  values.clear();
  comments.clear();
  const IniSection* s = d->find(section);
  if (s == nullptr) return false;
  for (const IniItem& item : s->items) {
    if (item.key != key) continue;
    values.push_back(item.value);
    comments.push_back(item.comment);
  }
  return !values.empty();
}

bool TIniFile::hasSection(const std::string& section) const {
  return d->find(section) != nullptr;
}

bool TIniFile::hasKey(const std::string& section, const std::string& key) const {
  return d->findItem(section, key) != nullptr;
}

bool TIniFile::getSectionComment(const std::string& section, std::string& comment) const {
  comment.clear();
  const IniSection* s = d->find(section);
  if (s == nullptr) return false;
  comment = s->comment;
  return true;
}

void TIniFile::getCommentFlags(std::vector<std::string>& flags) const {
  flags = d->commentFlags;
}

// ---- changes ------------------------------------------------------------------------------------

bool TIniFile::setSectionComment(const std::string& section, const std::string& comment) {
  IniSection* s = d->find(section);
  if (s == nullptr) return false;
  s->comment = comment;
  return true;
}

bool TIniFile::setValue(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& comment) {
  std::string flagged = comment;
  if (!flagged.empty() && !d->commentFlags.empty()) flagged.insert(0, d->commentFlags.front());
  IniSection* s = d->find(section);
  if (s == nullptr) s = d->add(section, "");
  for (IniItem& item : s->items) {
    if (item.key == key) {
      item.value = value;
      item.comment = flagged;
      return true;
    }
  }
  s->items.push_back(IniItem{key, value, flagged});
  return true;
}

void TIniFile::setCommentFlags(const std::vector<std::string>& flags) {
  d->commentFlags = flags;
}

void TIniFile::deleteSection(const std::string& section) {
  const auto it = d->sections.find(section);
  if (it == d->sections.end()) return;
  delete it->second;
  d->sections.erase(it);
}

void TIniFile::deleteKey(const std::string& section, const std::string& key) {
  IniSection* s = d->find(section);
  if (s == nullptr) return;
  for (auto it = s->items.begin(); it != s->items.end(); ++it) {
    if (it->key == key) {
      s->items.erase(it);
      return;
    }
  }
}

TIniFile::Sections::iterator TIniFile::begin() {
  return d->sections.begin();
}

TIniFile::Sections::iterator TIniFile::end() {
  return d->sections.end();
}

// ---- saving -------------------------------------------------------------------------------------

int TIniFile::save() {
  return saveas(d->fileName);
}

int TIniFile::saveas(const std::string& fileName) {
  std::string text;
  for (const auto& [name, section] : d->sections) {
    appendCommented(text, section->comment);
    if (!name.empty()) {
      text += '[';
      text += name;
      text += "]\n";
    }
    for (const IniItem& item : section->items) {
      appendCommented(text, item.comment);
      text += item.key;
      text += '=';
      text += item.value;
      text += '\n';
    }
  }
  platform::replaceFileContent(fileName.c_str(), text.data(), text.size());
  return 0;
}

void TIniFile::print() const {
  printf("filename:[%s]\n", d->fileName.c_str());
  printf("flags_:[");
  for (const std::string& flag : d->commentFlags) printf(" %s ", flag.c_str());
  printf("]\n");
  for (const auto& [name, section] : d->sections) {
    printf("section:[%s]\n", name.c_str());
    printf("comment:[%s]\n", section->comment.c_str());
    for (const IniItem& item : section->items) {
      printf("    comment:%s\n", item.comment.c_str());
      printf("    parm   :%s=%s\n", item.key.c_str(), item.value.c_str());
    }
  }
}

// ---- trimming -----------------------------------------------------------------------------------

void TIniFile::trimleft(std::string& s, char c) {
  s.erase(0, s.find_first_not_of(c));
}

void TIniFile::trimright(std::string& s, char c) {
  const size_t last = s.find_last_not_of(c);
  s.erase(last == std::string::npos ? 0 : last + 1);
}

void TIniFile::trim(std::string& s) {
  size_t end = s.size();
  while (end > 0 && zeb::internal::isSpaceOrControl(s[end - 1])) --end;
  size_t start = 0;
  while (start < end && zeb::internal::isSpaceOrControl(s[start])) ++start;
  s.erase(end);
  s.erase(0, start);
}

}  // namespace zeb
