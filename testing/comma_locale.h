// comma_locale.h: switches LC_NUMERIC to an installed locale whose decimal point is ',' for the
// life of the object, so a test can prove that number text does not follow the process locale.
// scripts/test.sh generates de_DE.UTF-8 under LOCPATH; without one, active() is false and the
// test skips.
//
//   zeb::testing::CommaDecimalLocale comma;
//   if (!comma.active()) GTEST_SKIP() << "no locale with a ',' decimal point";
#ifndef ZEB_TESTING_COMMA_LOCALE_H
#define ZEB_TESTING_COMMA_LOCALE_H

#include <string>

namespace zeb {
namespace testing {

class CommaDecimalLocale {
 public:
  CommaDecimalLocale();
  ~CommaDecimalLocale();
  CommaDecimalLocale(const CommaDecimalLocale&) = delete;
  CommaDecimalLocale& operator=(const CommaDecimalLocale&) = delete;

  bool active() const { return active_; }

 private:
  std::string saved_;
  bool active_ = false;
};

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_COMMA_LOCALE_H
