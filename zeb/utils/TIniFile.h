// TIniFile.h: INI files of sections and key=value lines, read into memory, looked up, changed and
// written back whole, with their comments.
//
// Text is taken as bytes (no charset conversion; bytes of 0x80 and above stay as they are) and
// lines may have any length. Every comment line is attached to the entry or section header that
// follows it and is written back above it; a comment after the last entry is lost. Comment
// flags (by default "#" then ";") start comment lines and also cut a line: `url=a#b` is the value
// `a` with the comment `#b`. Keys and values keep the spaces around '=' (`a = b` is the key `a `
// and the value ` b`). Keys may repeat within a section; a repeated section header fails the load.
//
//   zeb::TIniFile ini;
//   if (ini.load("settings.ini")) {
//     int found = 0;
//     int width = ini.getIntValue("window", "width", found) const;
//     ini.setValue("window", "width", "1024", "pixels");   // writes "#pixels" above the entry
//     ini.save();
//   }
//
// Sections are kept in byte order of their names, so saving writes the entries before the first
// header (the section with the empty name) first, then the sections sorted. Saving writes the new
// content into a temporary file beside the target and renames it over the target (keeping the old
// file's permissions), so the old file stays whole until the new one is complete; when the target
// cannot be written nothing is written at all.
//
// Choices: lines after a header with an empty name (`[]`) up to the next valid header are
// ignored. An object serves one thread at a time.
#ifndef ZEB_UTILS_TINIFILE_H
#define ZEB_UTILS_TINIFILE_H

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "zeb/zeb_api.h"

namespace zeb {

// One key=value line with the comment lines above it (joined with "\n", flags included).
struct IniItem {
  std::string key;
  std::string value;
  std::string comment;
};

// One section; the entries before the first header form the section with the empty name.
struct IniSection {
  std::string name;
  std::string comment;
  std::vector<IniItem> items;
};

class ZEB_API TIniFile {
 public:
  using Sections = std::map<std::string, IniSection*>;

  TIniFile();
  TIniFile(const TIniFile& other);
  TIniFile& operator=(const TIniFile& other);
  ~TIniFile();

  // Empties the object, remembers `fileName` for save() and reads the file. False when it cannot
  // be opened, on a header without ']' and on a repeated header (what was read before stays).
  bool load(const std::string& fileName);
  // saveas(the name given to the last load). Always 0.
  int save();
  // Writes the whole content to `fileName` (see above). Always 0; the stored name is unchanged.
  int saveas(const std::string& fileName);

  // The first entry of `key` in `section`; false (outputs untouched) when there is none.
  bool getValue(const std::string& section, const std::string& key, std::string& value) const;
  bool getValue(const std::string& section, const std::string& key, std::string& value,
                std::string& comment) const;
  // The first entry's value ("" when missing), as atoi / atof (0 when missing); `found` 1 or 0.
  std::string getStringValue(const std::string& section, const std::string& key, int& found) const;
  int getIntValue(const std::string& section, const std::string& key, int& found) const;
  double getDoubleValue(const std::string& section, const std::string& key, int& found) const;
  // Every entry of `key` in file order (both lists cleared first); true when there was one.
  bool getValues(const std::string& section, const std::string& key,
                 std::vector<std::string>& values) const;
  bool getValues(const std::string& section, const std::string& key,
                 std::vector<std::string>& values, std::vector<std::string>& comments) const;
  bool hasSection(const std::string& section) const;
  bool hasKey(const std::string& section, const std::string& key) const;
  // The section's comment ("" and false when the section is missing).
  bool getSectionComment(const std::string& section, std::string& comment) const;
  // Replaces the comment of an existing section verbatim; false for a missing section.
  bool setSectionComment(const std::string& section, const std::string& comment);
  // Sets the first entry of `key` (appending one when there is none, creating the section when
  // missing). A non-empty comment gets the first comment flag in front, whatever it starts with;
  // an empty one clears the entry's comment. Always true.
  bool setValue(const std::string& section, const std::string& key, const std::string& value,
                const std::string& comment);
  void getCommentFlags(std::vector<std::string>& flags) const;
  // The first flag is the one setValue puts in front of comments.
  void setCommentFlags(const std::vector<std::string>& flags);
  void deleteSection(const std::string& section);
  // Removes the first entry of `key` only.
  void deleteKey(const std::string& section, const std::string& key);

  // The (name, section) pairs in name order; valid until the section is deleted, the next load or
  // the end of the object.
  Sections::iterator begin();
  Sections::iterator end();

  static void trimleft(std::string& s, char c);
  static void trimright(std::string& s, char c);
  // Removes leading and trailing space, tab, LF, VT, FF and CR.
  static void trim(std::string& s);

 private:
  void release();
  bool isComment(const std::string& line) const;
  bool parse(const std::string& line, std::string& key, std::string& value, char sep) const;
  unsigned getline(std::string& line, std::FILE* file);
  void print() const;

  struct Data;
  Data* d;
};

}  // namespace zeb

#endif  // ZEB_UTILS_TINIFILE_H
