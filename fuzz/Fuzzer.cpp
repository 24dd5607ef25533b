#include <cstddef>
#include <cstdint>

#include "fuzz/Target.h"

// What libFuzzer calls; its program has one target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ovinta::fuzz::targets().front()->run({reinterpret_cast<const char*>(data), size});
  return 0;
}
