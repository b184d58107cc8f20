#pragma once

#include <lwpanel.h>

#include <functional>
#include <string>

namespace lwhost {

class Panels;

// One thing the (scripted) user does on an open classic panel. Controls are named by label;
// the first control with that label is meant.
struct UserAction {
  enum class Kind {
    SelectRow,   // click a list-box row
    Press,       // click a button
    ChooseFile,  // click a file button and pick a name in its dialog
    Close,       // Continue: a blocking open returns 1
    Cancel,      // Cancel: a blocking open returns 0
    Inspect,     // let the caller look at the panel while it is up (render it, read values)
  };

  Kind kind = Kind::Close;
  std::string label;
  int row = -1;
  std::string fileName;
  std::function<void(Panels&, LWPanelID)> inspector;

  static UserAction selectRow(std::string label, int row);
  static UserAction press(std::string label);
  static UserAction chooseFile(std::string label, std::string fileName);
  static UserAction close();
  static UserAction cancel();
  static UserAction inspect(std::function<void(Panels&, LWPanelID)> inspector);

  // One line for messages, e.g. `select row 2 of "Statistics"`.
  std::string describe() const;
};

}  // namespace lwhost
