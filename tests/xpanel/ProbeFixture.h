#pragma once

// The panel probe module loaded into a host with form panels and a stand-in parameter service.
#include <gtest/gtest.h>
#include <lwvparm.h>

#include <string>
#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/XPanels.h"
#include "xpanel/PanelProbe.h"

// A minimal "LWVParmFuncs 2": parameters are three doubles from a fixed pool.
struct FakeParameters {
  struct Parameter {
    double value[3];
  };
  static inline Parameter pool[4];
  static inline int used = 0;
  static inline int setVals = 0;

  static LWVParmID Create(int type, int) {
    if (used == 4) return nullptr;
    Parameter& p = pool[used++];
    // Recognisable starting values: 75 % opacity, an orange tint.
    if (type == LWVP_COLOR)
      p = {{1.0, 0.5, 0.0}};
    else
      p = {{0.75, 0.75, 0.75}};
    return &p;
  }
  static double GetVal(LWVParmID vp, LWTime, LWMicropolID, double* result) {
    auto* p = static_cast<Parameter*>(vp);
    for (int i = 0; i < 3; ++i) result[i] = p->value[i];
    return 0.0;
  }
  static int SetVal(LWVParmID vp, double* value) {
    auto* p = static_cast<Parameter*>(vp);
    for (int i = 0; i < 3; ++i) p->value[i] = value[i];
    ++setVals;
    return 3;
  }
  static LWVParmFuncs Table() {
    LWVParmFuncs t{};
    t.create = &Create;
    t.getVal = &GetVal;
    t.setVal = &SetVal;
    return t;
  }
};

class ProbeFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    FakeParameters::used = 0;
    FakeParameters::setVals = 0;
    host.globals().provide(LWVPARMFUNCS_GLOBAL, &parameters);
    PanelProbeRequest request = run("build");
    ASSERT_EQ(request.result, 1);
    panel = xpanels.find(request.panel);
    ASSERT_NE(panel, nullptr);
    state = request.state;
    events.clear();
  }

  PanelProbeRequest run(const char* op) {
    PanelProbeRequest request{op, &Record, this, nullptr, nullptr, -1};
    const ServerRecord& record = module.require(PANEL_PROBE_CLASS, PANEL_PROBE_NAME);
    EXPECT_EQ(module.activate(record, 1, &request), AFUNC_OK) << op;
    return request;
  }

  // The get calls a full refresh makes, in data-table order.
  static std::vector<std::string> RefreshGets() {
    return {"get 0x9000", "get 0x9001", "get 0x9002", "get 0x9003", "get 0x9004",
            "get 0x9007", "get 0x9008", "get 0x9009", "get 0x900A"};
  }

  static std::string Joined(const std::vector<std::string>& lines) {
    std::string all;
    for (const std::string& l : lines) all += l + "\n";
    return all;
  }

  static void Record(void* context, const char* event) { static_cast<ProbeFixture*>(context)->events.push_back(event); }

  LWVParmFuncs parameters = FakeParameters::Table();
  lwhost::Host host;
  lwhost::XPanels xpanels{host};
  lwhost::ModuleFile module{PANEL_PROBE_MODULE_PATH};
  std::vector<std::string> events;
  lwhost::XPanel* panel = nullptr;
  PanelProbeState* state = nullptr;
};
