// The entry libFuzzer calls, for the harness named at build time: a fault aborts with its text.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "targets/fuzz_targets.h"

#ifndef DORN_FUZZ_TARGET
#error "DORN_FUZZ_TARGET names the harness"
#endif

namespace {

const FuzzTarget& chosenTarget() {
  for (const FuzzTarget& target : FuzzTargets)
    if (std::string_view(target.name) == DORN_FUZZ_TARGET) return target;
  std::fprintf(stderr, "no harness named %s in fuzz_targets.h\n", DORN_FUZZ_TARGET);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FuzzTarget& target = chosenTarget();
  const std::string fault = target.run(data, size);
  if (!fault.empty()) {
    std::fprintf(stderr, "\nINVARIANT VIOLATED in %s: %s\n", target.name, fault.c_str());
    std::abort();
  }
  return 0;
}
