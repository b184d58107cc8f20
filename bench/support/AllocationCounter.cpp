// The global allocation functions, replaced by counting ones. A module loaded later binds its
// operator new to these too, because the executable's definitions come first in symbol lookup.
#include "support/AllocationCounter.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#if defined(_WIN32)
#include <malloc.h>
#endif

namespace {

std::atomic<std::uint64_t> allocations{0};

void* TryAllocate(std::size_t size, std::size_t alignment) noexcept {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (size == 0) size = 1;
  if (alignment == 0) return std::malloc(size);
#if defined(_WIN32)
  return _aligned_malloc(size, alignment);
#else
  void* p = nullptr;
  return posix_memalign(&p, alignment < sizeof(void*) ? sizeof(void*) : alignment, size) == 0 ? p : nullptr;
#endif
}

// Over-aligned blocks need their own release on Windows.
void ReleaseAligned(void* p) noexcept {
#if defined(_WIN32)
  _aligned_free(p);
#else
  std::free(p);
#endif
}

void* Allocate(std::size_t size, std::size_t alignment) {
  for (;;) {
    if (void* p = TryAllocate(size, alignment)) return p;
    std::new_handler handler = std::get_new_handler();
    if (!handler) throw std::bad_alloc();
    handler();
  }
}

}  // namespace

namespace bench {
std::uint64_t AllocationCount() noexcept { return allocations.load(std::memory_order_relaxed); }
}  // namespace bench

void* operator new(std::size_t size) { return Allocate(size, 0); }
void* operator new[](std::size_t size) { return Allocate(size, 0); }
void* operator new(std::size_t size, std::align_val_t a) { return Allocate(size, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t size, std::align_val_t a) { return Allocate(size, static_cast<std::size_t>(a)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return TryAllocate(size, 0); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return TryAllocate(size, 0); }
void* operator new(std::size_t size, std::align_val_t a, const std::nothrow_t&) noexcept {
  return TryAllocate(size, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t size, std::align_val_t a, const std::nothrow_t&) noexcept {
  return TryAllocate(size, static_cast<std::size_t>(a));
}

void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { ReleaseAligned(p); }
void operator delete[](void* p, std::align_val_t) noexcept { ReleaseAligned(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { ReleaseAligned(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { ReleaseAligned(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { ReleaseAligned(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept { ReleaseAligned(p); }
