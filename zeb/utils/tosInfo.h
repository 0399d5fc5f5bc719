// tosInfo.h: what the library tells about the machine and the system it runs on: the processors
// the process may use, a quick processor score, administrator rights, and the system's name and
// version.
//
//   int workers = cpuCoreNumber();                        // e.g. 8
//   if (IsAdministrator()) warnAboutElevatedRun();
//   TAnsiString os = zeb::tosInfo::GetFullVersion();     // "Debian GNU/Linux 12 (bookworm);
//                                                        //  Linux 6.1.0-18-amd64 x86_64"
//
// Every function answers at once from the system (cpuCoreNumber from its cache) and never fails:
// what the system does not say reads as false, 0 or "".
#ifndef ZEB_UTILS_TOSINFO_H
#define ZEB_UTILS_TOSINFO_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

namespace zeb {

class ZEB_API tosInfo {
 public:
  // True on Windows XP (major version 5); always false elsewhere.
  static bool IsWinXP();
  // True for a 32-bit process on a 64-bit system (a 32-bit build on an x86_64 kernel).
  static bool IsWow64();
  // The system's major version, and its minor version in *minor when not null: the kernel's
  // "6.1" on POSIX. 0 (and *minor 0) when it cannot be read.
  static int GetSysVersion(int* minor = nullptr);
  // The system's own name from os-release, "; ", then the kernel's name, release and machine:
  // "Debian GNU/Linux 12 (bookworm); Linux 6.1.0-18-amd64 x86_64". Either half alone when the
  // other is unknown; "" when both are.
  static TAnsiString GetFullVersion();
};

}  // namespace zeb

extern "C" {

// 1 when the process runs with administrator rights (POSIX: effective user id 0), else 0.
ZEB_API int IsAdministrator();

// The processors this process may be scheduled on (its affinity at the first call), at least 1.
// Read once and cached: later changes of the affinity are not seen.
ZEB_API int cpuCoreNumber();

// Runs a fixed integer workload (4,194,304 rounds of a dependent multiply, shift and xor chain,
// a few milliseconds) three times on the calling thread and returns the best run's score: rounds
// per microsecond times 10. Higher is faster; a core of a current x86-64 server scores about 2800.
// At least 1.
ZEB_API int benchmarkCpu();

}  // extern "C"

#endif  // ZEB_UTILS_TOSINFO_H
