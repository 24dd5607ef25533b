#include "bench/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

// Of each thread its own, because counting must cost next to nothing: times are measured beside it.
constinit thread_local ovinta::bench::Allocations counted;

void* allocate(std::size_t size) noexcept {
  ++counted.count;
  counted.bytes += size;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* const memory = allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

ovinta::bench::Allocations ovinta::bench::allocations() { return counted; }
