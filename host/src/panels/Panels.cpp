// The Panels component: serves "LWPanelServices" and lets the host act as the user.
#include "lwhost/Panels.h"

#include "Registry.h"
#include "lwhost/Host.h"

namespace lwhost {

using panels::Registry;

Panels::Panels(Host& host) : host_(host), registry_(std::make_unique<Registry>(*this)) {
  host_.globals().provide(LWPANELFUNCS_GLOBAL, &registry_->table);
  host_.attach<Panels>(this);
}

Panels::~Panels() {
  host_.detach<Panels>(this);
  // The table dies with this component; a later look-up must not find it.
  host_.globals().provide(LWPANELFUNCS_GLOBAL, nullptr);
}

LWPanelFuncs* Panels::table() { return &registry_->table; }

std::vector<LWPanelID> Panels::panels() const {
  std::vector<LWPanelID> ids;
  for (const auto& p : registry_->panels()) ids.push_back(p.get());
  return ids;
}

LWPanelID Panels::findPanel(const std::string& title) const {
  const auto& all = registry_->panels();
  for (auto it = all.rbegin(); it != all.rend(); ++it)
    if ((*it)->title == title) return it->get();
  return nullptr;
}

PanelInfo Panels::panel(LWPanelID panel) const { return registry_->requirePanel(panel).info(); }

std::vector<ControlInfo> Panels::controls(LWPanelID panel) const {
  std::vector<ControlInfo> infos;
  for (const auto& c : registry_->requirePanel(panel).controls) infos.push_back(c->info());
  return infos;
}

ControlInfo Panels::control(LWControlID control) const { return registry_->requireControl(control).info(); }

LWControlID Panels::findControl(LWPanelID panel, const std::string& label) const {
  for (const auto& c : registry_->requirePanel(panel).controls)
    if (c->label == label) return &c->record;
  return nullptr;
}

std::vector<std::string> Panels::listRows(LWControlID listBox) {
  Registry::Entry entry(*registry_);
  return registry_->listRows(registry_->requireControl(listBox));
}

int Panels::intValue(LWControlID control) const { return registry_->requireControl(control).intValue(); }

std::string Panels::stringValue(LWControlID control) const { return registry_->requireControl(control).stringValue(); }

Raster Panels::renderPanel(LWPanelID panel) {
  Registry::Entry entry(*registry_);
  return registry_->render(registry_->requirePanel(panel));
}

void Panels::script(std::vector<UserAction> session) { registry_->sessions.push_back(std::move(session)); }

size_t Panels::pendingSessions() const { return registry_->sessions.size(); }

void Panels::selectRow(LWControlID listBox, int row) {
  Registry::Entry entry(*registry_);
  registry_->selectRow(registry_->requireControl(listBox), row);
}

void Panels::press(LWControlID button) {
  Registry::Entry entry(*registry_);
  registry_->press(registry_->requireControl(button));
}

void Panels::chooseFile(LWControlID fileButton, const std::string& fileName) {
  Registry::Entry entry(*registry_);
  registry_->chooseFile(registry_->requireControl(fileButton), fileName);
}

void Panels::userClose(LWPanelID panel, bool ok) {
  Registry::Entry entry(*registry_);
  registry_->userClose(registry_->requirePanel(panel), ok);
}

void Panels::perform(LWPanelID panel, const UserAction& action) {
  Registry::Entry entry(*registry_);
  registry_->perform(registry_->requirePanel(panel), action);
}

std::vector<std::string> Panels::problems() const { return registry_->log.entries(); }

void Panels::clearProblems() { registry_->log.clear(); }

}  // namespace lwhost
