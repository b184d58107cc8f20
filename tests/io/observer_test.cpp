// The SDK reference's worked example (an observer record: five leaf blocks and a nested one),
// saved and loaded in both forms as a plug-in does it, through the state's functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using lwhost::BlockReader;
using lwhost::BlockWriter;
using lwhost::IOMode;

struct Observer {
  float timezone = 0;
  char tzname[4] = {};
  int ltim[6] = {};  // yr mon day hr min sec
  float location[2] = {};
  int horizon_type = 0;
  float temperature = 0, pressure = 0, elevation = 0, epoch = 0;
};
static_assert(sizeof(Observer) == 60, "no padding: compared byte for byte");
bool operator==(const Observer& a, const Observer& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

const Observer kReference{4.0f, "EDT", {2000, 4, 24, 2, 5, 30}, {37.75f, -122.55f}, 1, 40, 30, 100, 2000};

const LWBlockIdent kRoot[] = {{LWID_('T', 'Z', 'O', 'N'), "TimeZone"}, {LWID_('T', 'Z', 'N', 'M'), "TimeZoneName"},
                              {LWID_('L', 'T', 'I', 'M'), "LocalTime"}, {LWID_('L', 'O', 'C', 'A'), "Location"},
                              {LWID_('E', 'P', 'O', 'C'), "Epoch"},     {LWID_('H', 'R', 'Z', 'N'), "Horizon"},
                              {0, nullptr}};
const LWBlockIdent kHorizon[] = {{LWID_('T', 'Y', 'P', 'E'), "Type"},     {LWID_('T', 'E', 'M', 'P'), "Temperature"},
                                 {LWID_('P', 'R', 'E', 'S'), "Pressure"}, {LWID_('E', 'L', 'E', 'V'), "Elevation"},
                                 {0, nullptr}};

const char kText[] =
    "TimeZone 4\n"
    "TimeZoneName \"EDT\"\n"
    "LocalTime 2000 4 24 2 5 30\n"
    "Location 37.75 -122.55\n"
    "Epoch 2000\n"
    "{ Horizon\n"
    "  Type 1\n"
    "  Temperature 40\n"
    "  Pressure 30\n"
    "  Elevation 100\n"
    "}\n";
const std::string kBinary(
    "TZON\0\4\x40\x80\0\0" "TZNM\0\4EDT\0" "LTIM\0\x18\0\0\x07\xD0\0\0\0\4\0\0\0\x18\0\0\0\2\0\0\0\5\0\0\0\x1E"
    "LOCA\0\x08\x42\x17\0\0\xC2\xF5\x19\x9A" "EPOC\0\4\x44\xFA\0\0" "HRZN\0\x28" "TYPE\0\4\0\0\0\1"
    "TEMP\0\4\x42\x20\0\0" "PRES\0\4\x41\xF0\0\0" "ELEV\0\4\x42\xC8\0\0",
    120);

int IndexOf(const LWBlockIdent* list, LWID id) {
  int i = 0;
  while (list[i].id && list[i].id != id) ++i;
  return i;
}

// Root blocks (0..5) and horizon blocks (0..3) go out in the orders given.
void WriteObserver(const LWSaveState* s, const Observer& o, const std::vector<int>& root = {0, 1, 2, 3, 4, 5},
                   const std::vector<int>& horizon = {0, 1, 2, 3}) {
  const float* floats[] = {nullptr, &o.temperature, &o.pressure, &o.elevation};
  for (int b : root) {
    LWSAVE_BEGIN(s, &kRoot[b], b != 5);
    switch (b) {
      case 0: LWSAVE_FP(s, &o.timezone, 1); break;
      case 1: LWSAVE_STR(s, o.tzname); break;
      case 2: LWSAVE_I4(s, o.ltim, 6); break;
      case 3: LWSAVE_FP(s, o.location, 2); break;
      case 4: LWSAVE_FP(s, &o.epoch, 1); break;
      case 5:
        for (int h : horizon) {
          LWSAVE_BEGIN(s, &kHorizon[h], 1);
          h ? LWSAVE_FP(s, floats[h], 1) : LWSAVE_I4(s, &o.horizon_type, 1);
          LWSAVE_END(s);
        }
    }
    LWSAVE_END(s);
  }
}

// The reference's read loop: find a listed block, read it, end it; a nested loop for Horizon.
void ReadObserver(const LWLoadState* l, Observer* o) {
  float* floats[] = {nullptr, &o->temperature, &o->pressure, &o->elevation};
  while (LWID id = LWLOAD_FIND(l, kRoot)) {
    switch (IndexOf(kRoot, id)) {
      case 0: LWLOAD_FP(l, &o->timezone, 1); break;
      case 1: LWLOAD_STR(l, o->tzname, 4); break;
      case 2: LWLOAD_I4(l, o->ltim, 6); break;
      case 3: LWLOAD_FP(l, o->location, 2); break;
      case 4: LWLOAD_FP(l, &o->epoch, 1); break;
      case 5:
        while (LWID sub = LWLOAD_FIND(l, kHorizon)) {
          const int h = IndexOf(kHorizon, sub);
          if (h == 0) LWLOAD_I4(l, &o->horizon_type, 1);
          else if (h < 4) LWLOAD_FP(l, floats[h], 1);
          LWLOAD_END(l);
        }
    }
    LWLOAD_END(l);
  }
}

TEST(ObserverExample, SavesTheReferenceBytesAndLoadsThemInAnyBlockOrder) {
  const std::vector<int> orders[][2] = {{{5, 4, 3, 2, 1, 0}, {3, 2, 1, 0}}, {{2, 5, 0, 4, 1, 3}, {1, 3, 0, 2}}};
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    BlockWriter writer(mode);
    EXPECT_EQ(writer.state()->ioMode, static_cast<int>(mode));
    WriteObserver(writer.state(), kReference);
    const std::string reference = mode == IOMode::Ascii ? std::string(kText) : kBinary;
    EXPECT_EQ(writer.data(), reference);
    EXPECT_TRUE(writer.problems().empty());

    // The reference data itself, not only what our writer makes of it, then shuffled blocks.
    std::vector<std::string> inputs = {reference};
    for (const auto& order : orders) {
      BlockWriter shuffled(mode);
      WriteObserver(shuffled.state(), kReference, order[0], order[1]);
      inputs.push_back(shuffled.data());
    }
    for (const std::string& data : inputs) {
      BlockReader reader(mode, data);
      EXPECT_EQ(reader.state()->ioMode, static_cast<int>(mode));
      Observer obs;
      ReadObserver(reader.state(), &obs);
      EXPECT_EQ(obs, kReference);
      EXPECT_EQ(reader.depth(), 0);
      EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
    }
  }
}

// Every cut of the data: what a cut leaves whole still loads, anything else is reported. Under
// AddressSanitizer this also proves that no cut makes the reader leave the data.
TEST(ObserverExample, TruncatedDataIsReportedAndNeverReadPast) {
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    const bool text = mode == IOMode::Ascii;
    const std::string full = text ? std::string(kText) : kBinary;
    // Where each of timezone, tzname, ltim, location, epoch and horizon_type is complete, in
    // whole lines or bytes; the first five are the root blocks' ends.
    const std::size_t complete[2][6] = {{10, 20, 50, 64, 74, 90}, {1, 2, 3, 4, 5, 7}};
    const std::size_t horizonStart = full.find("{ Horizon");
    for (std::size_t cut = 0; cut < full.size(); ++cut) {
      SCOPED_TRACE((text ? "text cut " : "binary cut ") + std::to_string(cut));
      BlockReader reader(mode, full.substr(0, cut), "obs");
      Observer obs;
      ReadObserver(reader.state(), &obs);
      EXPECT_EQ(reader.depth(), 0);

      const bool wholeLines = !text || cut == 0 || full[cut - 1] == '\n';
      const std::size_t done = text ? std::count(full.begin(), full.begin() + cut, '\n') : cut;
      const std::size_t* ends = complete[text];
      if (wholeLines && (done == 0 || std::count(ends, ends + 5, done))) {
        EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
      } else {
        ASSERT_FALSE(reader.problems().empty());
        for (const std::string& p : reader.problems())
          EXPECT_EQ(p.rfind(text ? "obs: line " : "obs: offset ", 0), 0u) << p;
      }
      if (text && wholeLines && cut > horizonStart) {
        EXPECT_NE(reader.problems().back().find("block Horizon is never closed (missing '}')"), std::string::npos);
      }

      const bool loaded[] = {obs.timezone == kReference.timezone, std::strcmp(obs.tzname, "EDT") == 0,
                             obs.ltim[5] == kReference.ltim[5],   obs.location[1] == kReference.location[1],
                             obs.epoch == kReference.epoch,       obs.horizon_type == kReference.horizon_type};
      for (int i = 0; i < 6; ++i) EXPECT_TRUE(done < ends[i] || loaded[i]) << "field " << i;
    }
  }
}

// In a scene, the host writes "Plugin ..." and "EndPlugin"; the plug-in's data sits one level in
// while the plug-in still sees depth 0.
TEST(ObserverExample, SceneEmbeddingIndentsThePluginData) {
  BlockWriter writer(IOMode::Ascii, 1);
  EXPECT_EQ(LWSAVE_DEPTH(writer.state()), 0);
  WriteObserver(writer.state(), kReference);
  std::string indented;
  std::istringstream lines(kText);
  for (std::string line; std::getline(lines, line);) indented += "  " + line + "\n";
  EXPECT_EQ(writer.data(), indented);
}

}  // namespace
