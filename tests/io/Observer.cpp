#include "io/Observer.h"

#include <cstring>
#include <sstream>

namespace iotest {

Observer ReferenceObserver() {
  Observer o;
  o.timezone = 4.0f;
  std::strcpy(o.tzname, "EDT");
  const int ltim[6] = {2000, 4, 24, 2, 5, 30};
  std::memcpy(o.ltim, ltim, sizeof ltim);
  o.location[0] = 37.75f;
  o.location[1] = -122.55f;
  o.horizon_type = 1;
  o.temperature = 40;
  o.pressure = 30;
  o.elevation = 100;
  o.epoch = 2000;
  return o;
}

void WriteObserver(const LWSaveState* save, const Observer& obs, const std::vector<int>& rootOrder,
                   const std::vector<int>& horizonOrder) {
  for (int block : rootOrder) {
    LWSAVE_BEGIN(save, &kRoot[block], block != 5);
    switch (block) {
      case 0: LWSAVE_FP(save, &obs.timezone, 1); break;
      case 1: LWSAVE_STR(save, obs.tzname); break;
      case 2: LWSAVE_I4(save, obs.ltim, 6); break;
      case 3: LWSAVE_FP(save, obs.location, 2); break;
      case 4: LWSAVE_FP(save, &obs.epoch, 1); break;
      case 5:
        for (int sub : horizonOrder) {
          LWSAVE_BEGIN(save, &kHorizon[sub], 1);
          switch (sub) {
            case 0: LWSAVE_I4(save, &obs.horizon_type, 1); break;
            case 1: LWSAVE_FP(save, &obs.temperature, 1); break;
            case 2: LWSAVE_FP(save, &obs.pressure, 1); break;
            case 3: LWSAVE_FP(save, &obs.elevation, 1); break;
          }
          LWSAVE_END(save);
        }
        break;
    }
    LWSAVE_END(save);
  }
}

void ReadObserver(const LWLoadState* load, Observer* obs) {
  while (LWID id = LWLOAD_FIND(load, kRoot)) {
    switch (id) {
      case ID_TZON: LWLOAD_FP(load, &obs->timezone, 1); break;
      case ID_TZNM: LWLOAD_STR(load, obs->tzname, 4); break;
      case ID_LTIM: LWLOAD_I4(load, obs->ltim, 6); break;
      case ID_LOCA: LWLOAD_FP(load, obs->location, 2); break;
      case ID_EPOC: LWLOAD_FP(load, &obs->epoch, 1); break;
      case ID_HRZN:
        while (LWID sub = LWLOAD_FIND(load, kHorizon)) {
          switch (sub) {
            case ID_TYPE: LWLOAD_I4(load, &obs->horizon_type, 1); break;
            case ID_TEMP: LWLOAD_FP(load, &obs->temperature, 1); break;
            case ID_PRES: LWLOAD_FP(load, &obs->pressure, 1); break;
            case ID_ELEV: LWLOAD_FP(load, &obs->elevation, 1); break;
          }
          LWLOAD_END(load);
        }
        break;
    }
    LWLOAD_END(load);
  }
}

std::string Difference(const Observer& e, const Observer& a) {
  std::ostringstream out;
  auto field = [&](const char* name, double expected, double actual) {
    if (out.tellp() == 0 && expected != actual)
      out << name << ": expected " << expected << ", got " << actual;
  };
  field("timezone", e.timezone, a.timezone);
  if (out.tellp() == 0 && std::memcmp(e.tzname, a.tzname, sizeof e.tzname) != 0)
    out << "tzname: expected \"" << std::string(e.tzname, strnlen(e.tzname, 4)) << "\", got \""
        << std::string(a.tzname, strnlen(a.tzname, 4)) << "\"";
  for (int i = 0; i < 6; ++i) field("ltim", e.ltim[i], a.ltim[i]);
  field("latitude", e.location[0], a.location[0]);
  field("longitude", e.location[1], a.location[1]);
  field("horizon_type", e.horizon_type, a.horizon_type);
  field("temperature", e.temperature, a.temperature);
  field("pressure", e.pressure, a.pressure);
  field("elevation", e.elevation, a.elevation);
  field("epoch", e.epoch, a.epoch);
  return out.str();
}

const char kObserverText[] =
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

std::string ObserverBinary() {
  static const unsigned char bytes[] = {
      0x54, 0x5A, 0x4F, 0x4E, 0x00, 0x04, 0x40, 0x80, 0x00, 0x00,  // TZON 4.0
      0x54, 0x5A, 0x4E, 0x4D, 0x00, 0x04, 0x45, 0x44, 0x54, 0x00,  // TZNM "EDT"
      0x4C, 0x54, 0x49, 0x4D, 0x00, 0x18,                          // LTIM 24
      0x00, 0x00, 0x07, 0xD0, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x18, 0x00,
      0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x1E, 0x4C, 0x4F,
      0x43, 0x41, 0x00, 0x08, 0x42, 0x17, 0x00, 0x00, 0xC2, 0xF5, 0x19, 0x9A,  // LOCA
      0x45, 0x50, 0x4F, 0x43, 0x00, 0x04, 0x44, 0xFA, 0x00, 0x00,              // EPOC 2000.0
      0x48, 0x52, 0x5A, 0x4E, 0x00, 0x28,                                      // HRZN 40
      0x54, 0x59, 0x50, 0x45, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01,              // TYPE 1
      0x54, 0x45, 0x4D, 0x50, 0x00, 0x04, 0x42, 0x20, 0x00, 0x00,              // TEMP 40.0
      0x50, 0x52, 0x45, 0x53, 0x00, 0x04, 0x41, 0xF0, 0x00, 0x00,              // PRES 30.0
      0x45, 0x4C, 0x45, 0x56, 0x00, 0x04, 0x42, 0xC8, 0x00, 0x00,              // ELEV 100.0
  };
  static_assert(sizeof bytes == 120);
  return std::string(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

}  // namespace iotest
