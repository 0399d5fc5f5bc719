#include "zeb/utils/tosInfo.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>

namespace {

TEST(Machine, CoreNumberIsPositiveStableAndWithinTheMachine) {
  const int cores = cpuCoreNumber();
  EXPECT_GE(cores, 1);
  const unsigned hardware = std::thread::hardware_concurrency();
  if (hardware > 0) {
    EXPECT_LE(cores, static_cast<int>(hardware));
  }
  EXPECT_EQ(cpuCoreNumber(), cores);
}

TEST(Machine, BenchmarkScoresAtLeastOne) {
  EXPECT_GE(benchmarkCpu(), 1);
}

TEST(Machine, AdministratorIsTheEffectiveRootUser) {
  EXPECT_EQ(IsAdministrator(), geteuid() == 0 ? 1 : 0);
}

TEST(SystemVersion, MajorAndMinorComeFromTheKernelRelease) {
  struct utsname names;
  ASSERT_EQ(uname(&names), 0);
  int major = -1, minor = -1;
  ASSERT_EQ(std::sscanf(names.release, "%d.%d", &major, &minor), 2);
  int gotMinor = -1;
  EXPECT_EQ(zeb::tosInfo::GetSysVersion(&gotMinor), major);
  EXPECT_EQ(gotMinor, minor);
  EXPECT_EQ(zeb::tosInfo::GetSysVersion(), major);
}

TEST(SystemVersion, FullVersionNamesTheKernelAfterTheSystem) {
  struct utsname names;
  ASSERT_EQ(uname(&names), 0);
  const std::string full = zeb::tosInfo::GetFullVersion().p();
  const std::string kernel =
      std::string(names.sysname) + " " + names.release + " " + names.machine;
  ASSERT_GE(full.size(), kernel.size());
  EXPECT_EQ(full.substr(full.size() - kernel.size()), kernel);
  if (full.size() > kernel.size()) {
    EXPECT_EQ(full.substr(full.size() - kernel.size() - 2, 2), "; ");
  }
}

TEST(SystemVersion, PosixIsNeitherXpNorA64BitHostOfThisWideProcess) {
  EXPECT_FALSE(zeb::tosInfo::IsWinXP());
  if (sizeof(void*) == 8) {
    EXPECT_FALSE(zeb::tosInfo::IsWow64());
  }
}

}  // namespace
