// temp_dir.h: a fresh, empty folder for one test, removed with everything in it when the object
// goes out of scope.
//
//   zeb::testing::TempDir dir;
//   dir.writeFile("in.txt", "hello\n");
//   std::string back = dir.readFile("in.txt");
#ifndef ZEB_TESTING_TEMP_DIR_H
#define ZEB_TESTING_TEMP_DIR_H

#include <string>

namespace zeb {
namespace testing {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // The folder, without a trailing separator.
  const std::string& path() const { return path_; }
  // path() + "/" + name.
  std::string filePath(const std::string& name) const;
  // Writes `content` to path()/name, creating the file or replacing it.
  void writeFile(const std::string& name, const std::string& content) const;
  // The whole content of path()/name, or "" when it cannot be read.
  std::string readFile(const std::string& name) const;

 private:
  std::string path_;
};

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_TEMP_DIR_H
