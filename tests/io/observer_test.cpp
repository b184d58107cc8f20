// The SDK reference's worked example, saved and loaded in both forms as a plug-in does it.
#include "io/Observer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using lwhost::BlockReader;
using lwhost::BlockWriter;
using lwhost::IOMode;
using namespace iotest;

std::string Hex(const std::string& bytes) {
  static const char digits[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : bytes) {
    if (!out.empty()) out += ' ';
    out += digits[c >> 4];
    out += digits[c & 15];
  }
  return out;
}

TEST(ObserverExample, SavesTheReferenceOutputByteForByte) {
  const Observer obs = ReferenceObserver();

  BlockWriter text(IOMode::Ascii);
  ASSERT_EQ(text.state()->ioMode, LWIO_ASCII);
  WriteObserver(text.state(), obs);
  EXPECT_EQ(text.data(), kObserverText);
  EXPECT_EQ(std::count(text.data().begin(), text.data().end(), '\n'), 11);
  EXPECT_EQ(text.depth(), 0);
  EXPECT_TRUE(text.problems().empty());

  BlockWriter binary(IOMode::Binary);
  ASSERT_EQ(binary.state()->ioMode, LWIO_BINARY);
  WriteObserver(binary.state(), obs);
  EXPECT_EQ(Hex(binary.data()), Hex(ObserverBinary()));
  EXPECT_EQ(binary.data().size(), 120u);
  EXPECT_EQ(binary.depth(), 0);
  EXPECT_TRUE(binary.problems().empty());
}

TEST(ObserverExample, LoadsEveryValueWithBlocksInAnyOrder) {
  const Observer expected = ReferenceObserver();

  // The reference data itself, not only what our writer makes of it.
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    BlockReader reader(mode, mode == IOMode::Ascii ? std::string(kObserverText) : ObserverBinary(),
                       "reference");
    ASSERT_EQ(reader.state()->ioMode, static_cast<int>(mode));
    Observer obs;
    ReadObserver(reader.state(), &obs);
    EXPECT_EQ(Difference(expected, obs), "") << "mode " << static_cast<int>(mode);
    EXPECT_EQ(reader.depth(), 0);
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }

  // Every order of the root blocks, with the horizon's blocks in a different order each time.
  std::vector<int> root(6), horizon(4);
  std::iota(root.begin(), root.end(), 0);
  std::iota(horizon.begin(), horizon.end(), 0);
  int orders = 0;
  do {
    std::next_permutation(horizon.begin(), horizon.end());
    for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
      BlockWriter writer(mode);
      WriteObserver(writer.state(), expected, root, horizon);
      BlockReader reader(mode, writer.data());
      Observer obs;
      ReadObserver(reader.state(), &obs);
      ASSERT_EQ(Difference(expected, obs), "") << "mode " << static_cast<int>(mode) << ", order " << orders;
      ASSERT_TRUE(reader.problems().empty()) << reader.problems().front();
    }
    ++orders;
  } while (std::next_permutation(root.begin(), root.end()));
  EXPECT_EQ(orders, 720);
}

// The root blocks a cut leaves intact must still load; a cut anywhere else must be reported.
// Run under AddressSanitizer, this also proves that no cut makes the reader leave the data.
TEST(ObserverExample, TruncatedBinaryIsReportedAndNeverReadPast) {
  const std::string full = ObserverBinary();
  const Observer reference = ReferenceObserver();
  const std::size_t rootEnds[] = {10, 20, 50, 64, 74, 120};

  for (std::size_t cut = 0; cut < full.size(); ++cut) {
    BlockReader reader(IOMode::Binary, full.substr(0, cut), "obs.lwo");
    Observer obs;
    ReadObserver(reader.state(), &obs);
    EXPECT_EQ(reader.depth(), 0) << "cut " << cut;

    const bool atBoundary = std::count(std::begin(rootEnds), std::end(rootEnds), cut) || cut == 0;
    if (atBoundary) {
      EXPECT_TRUE(reader.problems().empty()) << "cut " << cut << ": " << reader.problems().front();
    } else {
      ASSERT_FALSE(reader.problems().empty()) << "cut " << cut;
      for (const std::string& p : reader.problems()) {
        EXPECT_EQ(p.rfind("obs.lwo: offset ", 0), 0u) << p;
      }
    }

    // Blocks wholly before the cut load whole.
    if (cut >= 10) {
      EXPECT_EQ(obs.timezone, reference.timezone) << "cut " << cut;
    }
    if (cut >= 20) {
      EXPECT_STREQ(obs.tzname, reference.tzname) << "cut " << cut;
    }
    if (cut >= 50) {
      EXPECT_EQ(obs.ltim[5], reference.ltim[5]) << "cut " << cut;
    }
    if (cut >= 64) {
      EXPECT_EQ(obs.location[1], reference.location[1]) << "cut " << cut;
    }
    if (cut >= 74) {
      EXPECT_EQ(obs.epoch, reference.epoch) << "cut " << cut;
    }
    if (cut >= 90) {
      EXPECT_EQ(obs.horizon_type, reference.horizon_type) << "cut " << cut;
    }
  }
}

TEST(ObserverExample, TruncatedTextIsReportedAndNeverReadPast) {
  const std::string full = kObserverText;
  const std::size_t horizonStart = full.find("{ Horizon");
  const Observer reference = ReferenceObserver();

  for (std::size_t cut = 0; cut < full.size(); ++cut) {
    BlockReader reader(IOMode::Ascii, full.substr(0, cut), "obs.lws");
    Observer obs;
    ReadObserver(reader.state(), &obs);
    EXPECT_EQ(reader.depth(), 0) << "cut " << cut;

    // Only a cut between whole lines, before the nested block opens, leaves well-formed data.
    const bool clean = (cut == 0 || full[cut - 1] == '\n') && cut <= horizonStart;
    if (clean) {
      EXPECT_TRUE(reader.problems().empty()) << "cut " << cut << ": " << reader.problems().front();
    } else {
      ASSERT_FALSE(reader.problems().empty()) << "cut " << cut;
      for (const std::string& p : reader.problems()) {
        EXPECT_EQ(p.rfind("obs.lws: line ", 0), 0u) << p;
      }
    }
    if (cut > horizonStart && full[cut - 1] == '\n') {
      EXPECT_NE(reader.problems().back().find("block Horizon is never closed (missing '}')"),
                std::string::npos)
          << "cut " << cut;
    }

    // Lines that survive whole load whole.
    const std::size_t wholeLines = std::count(full.begin(), full.begin() + cut, '\n');
    if (wholeLines >= 1) {
      EXPECT_EQ(obs.timezone, reference.timezone) << "cut " << cut;
    }
    if (wholeLines >= 2) {
      EXPECT_STREQ(obs.tzname, reference.tzname) << "cut " << cut;
    }
    if (wholeLines >= 3) {
      EXPECT_EQ(obs.ltim[5], reference.ltim[5]) << "cut " << cut;
    }
    if (wholeLines >= 4) {
      EXPECT_EQ(obs.location[1], reference.location[1]) << "cut " << cut;
    }
    if (wholeLines >= 5) {
      EXPECT_EQ(obs.epoch, reference.epoch) << "cut " << cut;
    }
    if (wholeLines >= 7) {
      EXPECT_EQ(obs.horizon_type, reference.horizon_type) << "cut " << cut;
    }
  }
}

}  // namespace
