// lunar: prints today's date in the Chinese lunar calendar (converted from the library's GB2312
// texts to UTF-8), the year's stem and branch with its animal, and the next solar term.
#include <stdio.h>

#include "zeb/charset/zeb_charset.h"
#include "zeb/datetime/mdatetime.h"
#include "zeb/datetime/tpdate.h"

namespace {

// The 24 solar terms in the order of the library's table, from the one near January 6.
const char* const kTermNames[24] = {"小寒", "大寒", "立春", "雨水", "惊蛰", "春分",
                                    "清明", "谷雨", "立夏", "小满", "芒种", "夏至",
                                    "小暑", "大暑", "立秋", "处暑", "白露", "秋分",
                                    "寒露", "霜降", "立冬", "小雪", "大雪", "冬至"};

const char* utf8(const TAnsiString& gb2312, char* out, int size) {
  if (StrGB2312ToUTF8(out, size, gb2312.isEmpty() ? "" : gb2312.p()) <= 0) out[0] = '\0';
  return out;
}

}  // namespace

int main() {
  TDateTime now;
  now.loadcurrentlocal();
  tpdate lunar;
  if (lunar.fromGDate(now.year(), now.month(), now.day()) != 1) {
    printf("%s is outside the lunar calendar's years\n", now.asDateString(0).p());
    return 1;
  }
  TAnsiString text;
  char a[64], b[64], c[64];
  pdate2text(lunar, text, 3);
  utf8(text, a, sizeof a);
  pdate2TianGanDiZhi(lunar, text);
  utf8(text, b, sizeof b);
  pdate2Animal_signs(lunar, text);
  utf8(text, c, sizeof c);
  printf("today %s: lunar %d %s, year %s (%s)\n", now.asDateString(0).p(), lunar.year, a, b, c);

  const long long today = EncodeDate(now.year(), now.month(), now.day());
  for (int year = now.year(); year <= now.year() + 1; ++year) {
    for (int term = 0; term < 24; ++term) {
      const TDateTime date = getLunarTermDay(year, term);
      if (date.isNull() || EncodeDate(date.year(), date.month(), date.day()) < today) continue;
      printf("next solar term: %s on %s\n", kTermNames[term], date.asDateString(0).p());
      return 0;
    }
  }
  return 0;
}
