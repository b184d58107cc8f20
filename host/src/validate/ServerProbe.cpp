#include "ServerProbe.h"

#include <lwpanel.h>
#include <lwxpanel.h>

#include <cmath>
#include <limits>
#include <random>

#include "lwhost/NodalAccess.h"

namespace lwhost::validate {

bool IsDrivenClass(const std::string& className) {
  return className == LWNODE_HCLASS || className == LWMASTER_HCLASS;
}

ServerProbe::ServerProbe(const Target& target, const std::function<void(Host&)>& prepare) : target_(target) {
  if (prepare) prepare(session_.host());
  module_ = &session_.load(target.module);
}

ServerProbe::~ServerProbe() {
  masters_.clear();
  for (PluginNode* node : nodes_) session_.nodes().removeNode(*node);
}

HandlerInstance& ServerProbe::create() {
  if (target_.className == LWNODE_HCLASS) {
    PluginNode& node = session_.nodes().addPluginNode(*module_, target_.name);
    nodes_.push_back(&node);
    return node.instance();
  }
  const ServerRecord& record = module_->require(LWMASTER_HCLASS, target_.name);
  auto inst = std::make_unique<LWInstanceFuncs>();
  auto item = std::make_unique<LWItemFuncs>();
  LWMasterHandler handler{};
  handler.inst = inst.get();
  handler.item = session_.host().isModeler() ? nullptr : item.get();
  int result = 0;
  if (!module_->activateFirst(record, {LWMASTER_VERSION}, &handler, &result))
    throw CreationError("activation answered " + std::to_string(result));
  masters_.push_back(std::make_unique<HandlerInstance>(*module_, *inst, handler.item, nullptr, target_.name));
  instTables_.push_back(std::move(inst));
  itemTables_.push_back(std::move(item));
  return *masters_.back();
}

PluginNode* ServerProbe::nodeOf(const HandlerInstance& instance) const {
  for (PluginNode* node : nodes_)
    if (&node->instance() == &instance) return node;
  return nullptr;
}

void EvaluateOutput(NodeEditor& editor, NodeOutput& output, LWNodalAccess& access) {
  union {
    double vector[3];
    int integer;
    LWNodalMaterial material;
  } value{};
  editor.evaluate(output, access, &value, output.type());
}

void ServerProbe::render(int samples) {
  for (PluginNode* node : nodes_) {
    node->init(LWINIT_RENDER);
    node->newTime(0, 0.0);
  }
  for (int i = 0; i < samples; ++i) {
    const double angle = i * 0.7;
    const double position[3] = {std::cos(angle), std::sin(angle), 0.25 * i};
    LWNodalAccess access = MakeNodalAccess(position, position);
    for (PluginNode* node : nodes_)
      for (const auto& output : node->outputs()) EvaluateOutput(session_.nodes(), *output, access);
  }
  for (PluginNode* node : nodes_) node->cleanup();
}

namespace {

const ServerRecord* InterfaceRecord(const ModuleFile& module, const Target& target) {
  return module.find(target.className == LWNODE_HCLASS ? LWNODE_ICLASS : LWMASTER_ICLASS, target.name);
}

// Values a user could type, and values no panel should trust.
double PanelNumber(std::mt19937& random) {
  static const double kChoices[] = {0.0, 0.5, 1.0, -1.0, 100.0, -1e9, 1e9, 1e300, -1e300};
  std::uniform_int_distribution<int> pick(0, sizeof kChoices / sizeof kChoices[0]);
  const int i = pick(random);
  return i < static_cast<int>(sizeof kChoices / sizeof kChoices[0]) ? kChoices[i]
                                                                     : std::uniform_real_distribution<double>(-10, 10)(random);
}

int PanelInteger(std::mt19937& random, int entries) {
  static const int kChoices[] = {0, 1, -1, 255, 256, 1 << 20, std::numeric_limits<int>::max(),
                                 std::numeric_limits<int>::min()};
  std::uniform_int_distribution<int> pick(0, sizeof kChoices / sizeof kChoices[0]);
  const int i = pick(random);
  if (i < static_cast<int>(sizeof kChoices / sizeof kChoices[0])) return kChoices[i];
  return entries > 0 ? entries : 2;  // one past the last entry of a pop-up
}

std::string ExerciseForm(XPanel& panel, std::mt19937& random) {
  for (const XPControl& control : panel.controls()) panel.value(control.cid);
  for (int round = 0; round < 3; ++round) {
    for (const XPControl& control : panel.controls()) {
      switch (control.kind()) {
        case ValueKind::Integer:
        case ValueKind::Integer3: {
          const int entries = static_cast<int>(panel.popupEntries(control.cid).size());
          if (entries > 0 && round == 0) panel.choose(control.cid, entries - 1);
          panel.setInteger(control.cid, PanelInteger(random, entries));
          break;
        }
        case ValueKind::Float:
        case ValueKind::VParm:
          panel.setNumber(control.cid, PanelNumber(random));
          break;
        case ValueKind::Float3: {
          const double v[3] = {PanelNumber(random), PanelNumber(random), PanelNumber(random)};
          panel.setVector(control.cid, v);
          break;
        }
        case ValueKind::String:
          panel.setText(control.cid, round == 0 ? "" : std::string(300, 'x'));
          break;
        default:
          break;  // buttons would start actions outside the host (web pages, files)
      }
    }
    panel.refresh();
    for (const XPControl& control : panel.controls()) panel.value(control.cid);
  }
  return "";
}

}  // namespace

std::string ServerProbe::exercisePanel(HandlerInstance& instance, unsigned long seed) {
  const ServerRecord* face = InterfaceRecord(*module_, target_);
  if (!face) return "";
  const InterfaceActivation activation = instance.activateInterface(*face);
  if (activation.result != AFUNC_OK) return "";  // a plug-in may decline a panel (no service, no program)
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  if (activation.local.panel) {
    XPanel* panel = session_.xpanels().find(activation.local.panel);
    if (!panel) return "the interface handed back a panel the host did not make";
    return ExerciseForm(*panel, random);
  }
  if (activation.local.options) {
    session_.panels().script({UserAction::close()});
    const LWError error = activation.local.options(instance.get());
    (void)error;  // an options window may refuse; only its conduct is judged
  }
  return "";
}

}  // namespace lwhost::validate
