#pragma once

// The controls a classic panel holds, one class per kind the host simulates (Controls.cpp).

#include <lwpanel.h>

#include <array>
#include <memory>
#include <string>

#include "Drawing.h"
#include "ProblemLog.h"
#include "lwhost/PanelInfo.h"
#include "lwhost/Raster.h"

namespace lwhost::panels {

class Panel;

// One control. Plug-ins hold the address of `record`; `record.priv_data` points back here, but
// the host never trusts it: every id is looked up in the registry first.
class Control {
 public:
  Control(Panel& owner, std::string className, std::string label);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  LWControl record{};
  Panel& panel;
  const std::string className;
  std::string label;
  PanelRect rect;  // label included
  int labelWidth = 0;
  int flags = 0;
  int rangeMin = 0, rangeMax = 0;
  void* userData = nullptr;
  bool userDataSet = false;
  LWCtlEventHook event = nullptr;
  LWCtlDrawHook userDraw = nullptr;
  int drawRequests = 0;

  PanelRect hot() const { return {rect.x + labelWidth, rect.y, rect.w - labelWidth, rect.h}; }
  bool visible() const { return !(flags & CTLF_INVISIBLE); }
  bool ghosted() const { return (flags & CTLF_DISABLE) != 0; }
  // `"Clear" (ButtonControl) on panel "Stats"`, for messages.
  std::string describe() const;
  ControlInfo info() const;
  // A new label keeps the hot area and moves the label's edge.
  void relabel(std::string text);

  // False for classes this host only shows as a plain box.
  virtual bool simulated() const { return true; }
  // Buttons carry their label on the face; other controls put it to the left.
  virtual bool labelInside() const { return false; }
  // CTL_VALUE in the plug-in's record; null on success, else why nothing was exchanged.
  virtual const char* getValue(LWValue& value) const = 0;
  virtual const char* setValue(const LWValue& value) = 0;
  virtual int intValue() const { return 0; }
  virtual std::string stringValue() const { return {}; }
  // Draws the control at its rectangle; failures of plug-in callbacks go to `log`.
  virtual void paint(Raster& canvas, ProblemLog& log) const = 0;
};

// "ListBoxControl": rows from the plug-in's callbacks, the value is the selected row.
class ListBox final : public Control {
 public:
  ListBox(Panel& owner, std::string label, const ControlDesc* desc, ProblemLog& log);

  int count(ProblemLog& log) const;
  std::string name(ProblemLog& log, int index) const;
  // Selects a row and scrolls it into view.
  void select(int row);

  const char* getValue(LWValue& value) const override;
  const char* setValue(const LWValue& value) override;
  int intValue() const override { return selected_; }
  void paint(Raster& canvas, ProblemLog& log) const override;

 private:
  int (*countFn_)(void*) = nullptr;
  char* (*nameFn_)(void*, int) = nullptr;
  int visibleRows_ = 1;
  int top_ = 0;
  int selected_ = -1;  // none
};

// "ButtonControl": a label in a box that calls the event hook when pressed; its value is 0.
class Button final : public Control {
 public:
  Button(Panel& owner, std::string label, const ControlDesc* desc);
  bool labelInside() const override { return true; }
  const char* getValue(LWValue& value) const override;
  const char* setValue(const LWValue& value) override;
  void paint(Raster& canvas, ProblemLog& log) const override;
};

// "SaveButtonControl" and its load/file/directory siblings: a button whose dialog picks a file
// name, which becomes the control's string value.
class FileButton final : public Control {
 public:
  FileButton(Panel& owner, std::string className, std::string label, const ControlDesc* desc);
  bool labelInside() const override { return true; }
  void choose(std::string fileName) { value_ = std::move(fileName); }
  const char* getValue(LWValue& value) const override;
  const char* setValue(const LWValue& value) override;
  std::string stringValue() const override { return value_; }
  void paint(Raster& canvas, ProblemLog& log) const override;

 private:
  std::string value_;
};

// Any other class: a labelled box that keeps whatever value it is given, by the value's type.
class PlainBox final : public Control {
 public:
  PlainBox(Panel& owner, std::string className, std::string label);
  bool simulated() const override { return false; }
  const char* getValue(LWValue& value) const override;
  const char* setValue(const LWValue& value) override;
  int intValue() const override { return int_; }
  std::string stringValue() const override { return string_; }
  void paint(Raster& canvas, ProblemLog& log) const override;

 private:
  int int_ = 0;
  double float_ = 0;
  std::array<int, 3> ivec_{};
  std::array<double, 3> fvec_{};
  std::array<int, 4> custom_{};
  void* pointer_ = nullptr;
  std::string string_;
};

// Makes the control a class name stands for; unknown classes become plain boxes (noted).
std::unique_ptr<Control> MakeControl(Panel& owner, const std::string& className, const ControlDesc* desc,
                                     std::string label, ProblemLog& log);

// String values travel through the plug-in's buffer; these never write past bufLen.
const char* CopyOut(const std::string& text, LWValString& value);
std::string CopyIn(const LWValString& value);

// Gives a control record the functions every control shares (PanelServices.cpp).
void InstallControlFunctions(LWControl& record);

}  // namespace lwhost::panels
