#include "masters/commandstats/CommandStats.h"

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

#include "hostkit/DirInfo.h"
#include "masters/commandstats/StatisticsFile.h"

namespace vorn {

namespace {

constexpr int kListWidth = 200;
constexpr int kListRows = 40;
constexpr int kSaveWidth = 80;
constexpr int kButtonGap = 4;

}  // namespace

CommandStats::CommandStats(void* priv, void* context, LWError* err) : LWPanelMasterHandler(priv, context, err) {
  hostkit::DirInfo directories("Settings");
  const std::string& settings = directories.GetDirectory();
  // Without a settings directory the counts live for this run only, rather than landing in
  // whatever the working directory happens to be.
  if (settings.empty()) return;
  statisticsFile_ = settings + "CommandStats.txt";

  // A pipe or a device in its place is left alone: opening or reading it could block for good.
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(statisticsFile_, error);
  if (!std::filesystem::is_regular_file(status)) {
    if (std::filesystem::exists(status)) statisticsFile_.clear();
    return;
  }
  std::ifstream in(statisticsFile_);
  if (in) ReadStatistics(in, counts);
}

CommandStats::~CommandStats() noexcept(false) {
  if (!statisticsFile_.empty()) saveList(statisticsFile_);
}

CommandStats& CommandStats::operator=(const CommandStats& other) {
  // The panel and its controls belong to the instance that opened them.
  counts = other.counts;
  sorted = other.sorted;
  rows = other.rows;
  return *this;
}

double CommandStats::Event(const LWMasterAccess* access) {
  if (!access || access->eventCode != LWEVNT_COMMAND || !access->eventData) return 0.0;
  std::string name = static_cast<const char*>(access->eventData);
  // A line without a blank hands erase the no-match position, which throws: commands given
  // without arguments are deliberately not counted, and the adaptor's guard reports it.
  name.erase(name.find(' '));
  ++counts[name];
  return 0.0;
}

void CommandStats::sort() {
  sorted.clear();
  for (const auto& [name, count] : counts) sorted.emplace(count, name);
}

void CommandStats::saveList(const std::string& fileName) {
  // The same bytes on every system: Windows would otherwise end each line with CR LF.
  std::ofstream out(fileName, std::ios::out | std::ios::trunc | std::ios::binary);
  if (!out) return;
  sort();
  WriteStatistics(out, sorted, LayoutForFileName(fileName));
}

void CommandStats::Options() {
  using Adaptor = hostkit::PanelControlAdaptor<CommandStats>;
  auto* const onEvent = reinterpret_cast<void*>(Adaptor::cb_Event);

  sort();
  rows.clear();
  for (auto entry = sorted.rbegin(); entry != sorted.rend(); ++entry) {
    std::ostringstream row;
    row << std::setw(5) << entry->first << " - " << entry->second << '\n';
    rows.push_back(row.str());
  }

  if (!lwpanel.Create("Vorn Tools: Command Statistics")) return;
  lwpanel.SetUserData(this);

  LWPanControlDesc desc{};
  desc.listbox.type = LWT_POPUP;
  desc.listbox.width = kListWidth;
  desc.listbox.visItems = kListRows;
  desc.listbox.countFn = Adaptor::cb_Count;
  desc.listbox.nameFn = Adaptor::cb_Name;
  list = hostkit::PanelControl(lwpanel.AddControl("ListBoxControl", &desc, "Command Statistics"));
  // List callbacks receive only this user data; the handler is found through the panel.
  list.SetPointer(CTL_USERDATA, list.control);

  LWPanControlDesc button{};
  button.type = LWT_INTEGER;
  clearButton = hostkit::PanelControl(lwpanel.AddControl("ButtonControl", &button, "Clear"));
  clearButton.SetPointer(CTL_USERDATA, this);
  clearButton.SetPointer(CTL_USEREVENT, onEvent);

  LWPanControlDesc save{};
  save.string.type = LWT_STRING;
  save.string.width = kSaveWidth;
  saveButton = hostkit::PanelControl(lwpanel.AddControl("SaveButtonControl", &save, "Save..."));
  saveButton.SetInt(CTL_X, clearButton.GetInt(CTL_X) + clearButton.GetInt(CTL_W) + kButtonGap);
  saveButton.SetInt(CTL_Y, clearButton.GetInt(CTL_Y));
  saveButton.SetInt(CTL_X, list.GetInt(CTL_X) + list.GetInt(CTL_W) - saveButton.GetInt(CTL_W));
  saveButton.SetPointer(CTL_USERDATA, this);
  saveButton.SetPointer(CTL_USEREVENT, onEvent);

  lwpanel.Open(PANF_BLOCKING | PANF_FRAME);
}

void CommandStats::controlEvent(hostkit::PanelControl& control) {
  if (control.control == saveButton.control) {
    saveList(control.GetString(std::string()));
  } else if (control.control == clearButton.control) {
    // The settings file keeps the old counts until the instance goes, when the empty list
    // is written.
    counts.clear();
    sorted.clear();
    rows.clear();
    lwpanel.Draw(DR_REFRESH);
  }
}

int CommandStats::controlCount(hostkit::PanelControl&) { return static_cast<int>(rows.size()); }

const char* CommandStats::controlName(hostkit::PanelControl&, int index) {
  return rows.at(static_cast<std::vector<std::string>::size_type>(index)).c_str();
}

}  // namespace vorn
