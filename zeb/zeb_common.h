// zeb_common.h: every public header of zeb_common in one include.
#ifndef ZEB_ZEB_COMMON_H
#define ZEB_ZEB_COMMON_H

#include "zeb/zeb_api.h"
#include "zeb/charset/zeb_charset.h"
#include "zeb/data/binary_hex.h"
#include "zeb/data/tbytesdata.h"
#include "zeb/datetime/mdatetime.h"
#include "zeb/formats/TPinyinWrapper.h"
#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/wintypes.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/filename.h"
#include "zeb/strings/wildcard.h"
#include "zeb/strings/zeb_cstr.h"
#include "zeb/thread/ttaskThread.h"
#include "zeb/thread/zeb_Thread.h"
#include "zeb/utils/mfile.h"

#endif  // ZEB_ZEB_COMMON_H
