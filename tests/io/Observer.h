// The observer record from the SDK's file I/O reference: a plug-in's data with five leaf blocks
// and one nested block, saved and loaded the way a plug-in does, through the state's functions.
#pragma once

#include <lwio.h>

#include <string>
#include <vector>

namespace iotest {

struct Observer {
  float timezone = 0;
  char tzname[4] = {};
  int ltim[6] = {};  // yr mon day hr min sec
  float location[2] = {};
  int horizon_type = 0;
  float temperature = 0;
  float pressure = 0;
  float elevation = 0;
  float epoch = 0;
};

constexpr LWID ID_TZON = LWID_('T', 'Z', 'O', 'N');
constexpr LWID ID_TZNM = LWID_('T', 'Z', 'N', 'M');
constexpr LWID ID_LTIM = LWID_('L', 'T', 'I', 'M');
constexpr LWID ID_LOCA = LWID_('L', 'O', 'C', 'A');
constexpr LWID ID_EPOC = LWID_('E', 'P', 'O', 'C');
constexpr LWID ID_HRZN = LWID_('H', 'R', 'Z', 'N');
constexpr LWID ID_TYPE = LWID_('T', 'Y', 'P', 'E');
constexpr LWID ID_TEMP = LWID_('T', 'E', 'M', 'P');
constexpr LWID ID_PRES = LWID_('P', 'R', 'E', 'S');
constexpr LWID ID_ELEV = LWID_('E', 'L', 'E', 'V');

inline const LWBlockIdent kRoot[] = {{ID_TZON, "TimeZone"}, {ID_TZNM, "TimeZoneName"}, {ID_LTIM, "LocalTime"},
                                     {ID_LOCA, "Location"}, {ID_EPOC, "Epoch"},        {ID_HRZN, "Horizon"},
                                     {0, nullptr}};
inline const LWBlockIdent kHorizon[] = {
    {ID_TYPE, "Type"}, {ID_TEMP, "Temperature"}, {ID_PRES, "Pressure"}, {ID_ELEV, "Elevation"}, {0, nullptr}};

// The values of the reference's example.
Observer ReferenceObserver();

// Writes the record; the orders list root blocks (0..5) and horizon blocks (0..3) by index.
void WriteObserver(const LWSaveState* save, const Observer& obs,
                   const std::vector<int>& rootOrder = {0, 1, 2, 3, 4, 5},
                   const std::vector<int>& horizonOrder = {0, 1, 2, 3});

// The reference's read loop: find a listed block, read it, end it; a nested loop for Horizon.
void ReadObserver(const LWLoadState* load, Observer* obs);

// Compares field by field, naming the first difference (empty when equal).
std::string Difference(const Observer& expected, const Observer& actual);

// The reference's output in both forms.
extern const char kObserverText[];
std::string ObserverBinary();

}  // namespace iotest
