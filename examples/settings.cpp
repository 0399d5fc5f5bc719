// settings: keeps its settings in the registry under HKEY_CURRENT_USER\SOFTWARE\zebworks\demo.
// A run reads what the previous run stored (a run counter, the time of the last run, and a window
// layout packed with the data stream writer into one binary value), says so, and stores its own.
// Run it twice: the second run reads the first one's settings back.
#include <stdio.h>

#include "zeb/data/mdatastream.h"
#include "zeb/datetime/mdatetime.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/zeb_regkey.h"

namespace {

struct Layout {
  unsigned short x, y, width, height;
};

RegValue packLayout(const Layout& layout) {
  tdatastreamWriter out;
  out.writeUInt16(layout.x);
  out.writeUInt16(layout.y);
  out.writeUInt16(layout.width);
  out.writeUInt16(layout.height);
  return RegValue(static_cast<unsigned long>(out.memData().size()), out.memData().p());
}

bool unpackLayout(const RegValue& value, Layout& layout) {
  tdatastream in(static_cast<const void*>(value.Pointer()), static_cast<int>(value.Size()));
  return in.readUInt16(layout.x) && in.readUInt16(layout.y) && in.readUInt16(layout.width) &&
         in.readUInt16(layout.height);
}

}  // namespace

int main() {
  TRegKey key(HKEY_CURRENT_USER);
  const long status = key.Create(ZW("SOFTWARE\\zebworks\\demo"));
  if (status != ERROR_SUCCESS) {
    printf("cannot open the settings key: status %ld\n", status);
    return 1;
  }
  RegValue runs, lastRun, layoutValue;
  const bool known = key.QueryValue(ZW("runs"), runs) == ERROR_SUCCESS;
  Layout layout = {100, 80, 640, 480};
  if (!known) {
    printf("No settings yet: this is the first run.\n");
  } else {
    key.QueryValue(ZW("last run"), lastRun);
    key.QueryValue(ZW("layout"), layoutValue);
    printf("Read back the settings of run %d, stored at %s.\n", runs.asInt32Def(0),
           TWideString(lastRun.asStringDef(ZW("?"))).utf8().p());
    if (unpackLayout(layoutValue, layout)) {
      printf("Window layout read back: %u,%u %ux%u.\n", layout.x, layout.y, layout.width,
             layout.height);
    }
    layout.x = static_cast<unsigned short>(layout.x + 20);
    layout.y = static_cast<unsigned short>(layout.y + 20);
  }

  const unsigned long thisRun = static_cast<unsigned long>(runs.asInt32Def(0)) + 1;
  TDateTime now;
  now.loadcurrentlocal();
  const TWideString stamp(now.asDateTimeString(0).p(), MIB_UTF8);
  key[ZW("runs")] = RegValue(thisRun);
  key[ZW("last run")] = RegValue(stamp.p());
  key[ZW("layout")] = packLayout(layout);
  printf("Stored the settings of run %lu (window at %u,%u).\n", thisRun, layout.x, layout.y);
  return 0;
}
