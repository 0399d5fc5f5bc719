#include "testing/comma_locale.h"

#include <clocale>
#include <cstring>

namespace zeb {
namespace testing {

CommaDecimalLocale::CommaDecimalLocale() : saved_(std::setlocale(LC_NUMERIC, nullptr)) {
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE"}) {
    if (std::setlocale(LC_NUMERIC, name) != nullptr &&
        std::strcmp(std::localeconv()->decimal_point, ",") == 0) {
      active_ = true;
      return;
    }
  }
  std::setlocale(LC_NUMERIC, saved_.c_str());
}

CommaDecimalLocale::~CommaDecimalLocale() { std::setlocale(LC_NUMERIC, saved_.c_str()); }

}  // namespace testing
}  // namespace zeb
