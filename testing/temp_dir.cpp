#include "testing/temp_dir.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace zeb {
namespace testing {

namespace {

std::string uniqueFolderName() {
  std::random_device seed;
  std::mt19937_64 random(seed());
  std::ostringstream name;
  name << "zeb_test_" << std::hex << random();
  return name.str();
}

}  // namespace

TempDir::TempDir() {
  for (int attempt = 0; attempt < 100; ++attempt) {
    fs::path candidate = fs::temp_directory_path() / uniqueFolderName();
    if (fs::create_directory(candidate)) {
      path_ = candidate.string();
      return;
    }
  }
  throw std::runtime_error("TempDir: cannot create a temporary folder");
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TempDir::filePath(const std::string& name) const { return path_ + "/" + name; }

void TempDir::writeFile(const std::string& name, const std::string& content) const {
  std::ofstream out(filePath(name), std::ios::binary | std::ios::trunc);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

std::string TempDir::readFile(const std::string& name) const {
  std::ifstream in(filePath(name), std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace testing
}  // namespace zeb
