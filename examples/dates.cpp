// dates: prints the current local date and time in every text form of TDateTime, one per line
// with the style number.
#include <stdio.h>

#include "zeb/datetime/mdatetime.h"

int main() {
  TDateTime now;
  now.loadcurrentlocal();
  for (int style = 0; style <= 8; ++style) {
    printf("asDateTimeString(%d): %s\n", style, now.asDateTimeString(style).p());
  }
  for (int style = 0; style <= 1; ++style) {
    printf("asDateString(%d):     %s\n", style, now.asDateString(style).p());
  }
  for (int style = 0; style <= 3; ++style) {
    printf("asTimeString(%d):     %s\n", style, now.asTimeString(style).p());
  }
  return 0;
}
