// Uses the installed library through its public headers only; exits 0 when the calls behave.
#include <cstdio>

#include <zeb/zeb_common.h>

int main() {
  TAnsiString name("report");
  name += ".csv";
  name.insert("2024-", 0);
  const bool ok = name == "2024-report.csv" && wildcardMatch(name.p(), "*-report.c?v") &&
                  name.hashValue() != 0 && TAnsiString::strtoint("  -12x") == -12;
  std::printf("consumer: %s %s\n", name.p(), ok ? "ok" : "FAILED");
  return ok ? 0 : 1;
}
