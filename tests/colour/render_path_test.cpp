// The per-sample path of the corrector, host side included, allocates nothing: every operator
// new of the process is counted while samples are evaluated.
#include <atomic>
#include <cstdlib>
#include <new>

#include "colour/CorrectorSession.h"

namespace {

std::atomic<bool> g_counting{false};
std::atomic<long> g_allocations{0};

void* Counted(std::size_t size) noexcept {
  if (g_counting.load(std::memory_order_relaxed)) g_allocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size ? size : 1);
}
void* Allocate(std::size_t size) {
  if (void* p = Counted(size)) return p;
  throw std::bad_alloc();
}

}  // namespace

// The module calls operator new through the process's dynamic symbols, so these replace its
// allocations too. Every form is replaced, so that sanitizers see matching pairs.
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Counted(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Counted(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace colourtest {
namespace {

TEST_F(CorrectorTest, EvaluatingSamplesAllocatesNothing) {
  Corrector c = addCorrector();
  apply(c, {1.5, 1, 0, 1, 2.0, false});
  sample(c);
  Colour colour{};
  double scalar = 0;
  const auto allocationsDuring = [&](auto&& body) {
    g_allocations = 0;
    g_counting = true;
    body();
    g_counting = false;
    return g_allocations.load();
  };
  const auto evaluate = [&] {
    for (int i = 0; i < 100; ++i) {
      editor.evaluate(c.node, "Colour", access, colour.data(), NOT_COLOR);
      editor.evaluate(c.node, "Scalar", access, &scalar, NOT_SCALAR);
    }
  };
  // The counter works (a direct call: new-expressions may be elided).
  EXPECT_EQ(allocationsDuring([] { ::operator delete(::operator new(64)); }), 1);
  EXPECT_EQ(allocationsDuring(evaluate), 0) << "unconnected";

  // Every input connected, with conversions (vector to scalar) on the way.
  editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", c.node, "Colour");
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Scalar");
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Brightness");
  editor.connect(editor.addScalar(0.9), "Scalar", c.node, "Contrast");
  editor.connect(editor.addScalar(0.5), "Scalar", c.node, "Hue");
  editor.connect(editor.addScalar(0.7), "Scalar", c.node, "Saturation");
  editor.connect(editor.addScalar(1.2), "Scalar", c.node, "Gamma");
  editor.connect(editor.addInteger(1), "Integer", c.node, "Invert");
  const double spot[3] = {1, 2, 3}, up[3] = {0, 0, 1};
  access = lwhost::MakeNodalAccess(spot, up);
  EXPECT_EQ(allocationsDuring(evaluate), 0) << "connected";
  // The samples were really computed: B = 2 from the spot, inverted.
  EXPECT_NE(colour, (Colour{0, 0, 0}));
  EXPECT_LT(scalar, 0.0);
}

}  // namespace
}  // namespace colourtest
