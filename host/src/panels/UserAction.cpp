#include "lwhost/UserAction.h"

namespace lwhost {

UserAction UserAction::selectRow(std::string label, int row) {
  UserAction a;
  a.kind = Kind::SelectRow;
  a.label = std::move(label);
  a.row = row;
  return a;
}

UserAction UserAction::press(std::string label) {
  UserAction a;
  a.kind = Kind::Press;
  a.label = std::move(label);
  return a;
}

UserAction UserAction::chooseFile(std::string label, std::string fileName) {
  UserAction a;
  a.kind = Kind::ChooseFile;
  a.label = std::move(label);
  a.fileName = std::move(fileName);
  return a;
}

UserAction UserAction::close() { return UserAction{}; }

UserAction UserAction::cancel() {
  UserAction a;
  a.kind = Kind::Cancel;
  return a;
}

UserAction UserAction::inspect(std::function<void(Panels&, LWPanelID)> inspector) {
  UserAction a;
  a.kind = Kind::Inspect;
  a.inspector = std::move(inspector);
  return a;
}

std::string UserAction::describe() const {
  switch (kind) {
    case Kind::SelectRow:
      return "select row " + std::to_string(row) + " of \"" + label + "\"";
    case Kind::Press:
      return "press \"" + label + "\"";
    case Kind::ChooseFile:
      return "choose \"" + fileName + "\" with \"" + label + "\"";
    case Kind::Close:
      return "close with Continue";
    case Kind::Cancel:
      return "close with Cancel";
    case Kind::Inspect:
      return "inspect the panel";
  }
  return "unknown action";
}

}  // namespace lwhost
