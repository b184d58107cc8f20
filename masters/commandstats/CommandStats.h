#pragma once

#include <lwmaster.h>

#include <map>
#include <string>
#include <vector>

#include "hostkit/LWPanelMasterHandler.h"
#include "hostkit/PanelControl.h"

namespace vorn {

// Counts the commands issued in Layout by name, keeps the counts in "CommandStats.txt" in the
// host's settings directory from one run to the next, and lists them, most used first, in a
// classic panel from which they can be cleared or saved to a file of the user's choice.
class CommandStats : public hostkit::LWPanelMasterHandler, public hostkit::PanelControlHandler {
 public:
  CommandStats(void* priv, void* context, LWError* err);
  ~CommandStats() noexcept(false) override;
  CommandStats& operator=(const CommandStats& other);

  double Event(const LWMasterAccess* access) override;
  unsigned int Flags() override { return LWMASTF_LAYOUT; }
  void Options() override;

  void controlEvent(hostkit::PanelControl& control) override;
  int controlCount(hostkit::PanelControl& control) override;
  const char* controlName(hostkit::PanelControl& control, int index) override;

  // Rebuilds `sorted` from `counts`; equal counts stand in ascending name order.
  void sort();
  // Writes the counts to `fileName` (CSV when it ends in ".csv"); a file that cannot be opened
  // is ignored.
  void saveList(const std::string& fileName);

  std::map<std::string, int> counts;
  std::multimap<int, std::string> sorted;
  std::vector<std::string> rows;  // the list box's lines, as of the last Options()
  hostkit::PanelControl list, clearButton, saveButton;

 private:
  std::string statisticsFile_;  // empty when the host names no settings directory
};

}  // namespace vorn
