#pragma once

#include <lwxpanel.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lwhost/Raster.h"

namespace lwhost {

class XPanels;
struct Hint;

// How a value is held, from its data type (matched case-insensitively): "integer"/"axis" an int,
// "integer3" three ints, "float"/"distance"/"percent"/"angle"/"time" a double, "float3"/
// "distance3"/"percent3"/"angle3"/"color" three doubles, "string" text, any "...-env" an LWVParmID.
enum class ValueKind { None, Integer, Integer3, Float, Float3, String, VParm, Unknown };

ValueKind KindOfDataType(const std::string& dataType);
// The kind a control class shows; None for valueless classes ("vButton", "dThumbnail", "vPopCmd").
ValueKind KindOfControlClass(const std::string& controlClass);

// A control's value as the panel reads it. kind None: the plug-in answered NULL (nothing shown).
struct XPValue {
  ValueKind kind = ValueKind::None;
  int integer[3] = {0, 0, 0};
  double number[3] = {0, 0, 0};
  std::string text;
  // "-env" data: the parameter handle, and whether number[] holds its value at time 0 (read
  // through "LWVParmFuncs 2", when the host has that service).
  void* vparm = nullptr;
  bool numbersKnown = false;

  bool isNull() const { return kind == ValueKind::None; }
};

struct XPControl {
  unsigned int cid = 0;
  std::string label;  // XpLABEL's text if one was hinted, else the control table's
  std::string controlClass;
  unsigned int vid = 0;  // the bound data row (same id, or XpVALUE); 0 when there is none
  std::string dataType;  // that row's type; empty without one
  ValueKind kind() const { return KindOfDataType(dataType); }
};

struct ThumbnailSize {
  int width = 0, height = 0;
};

// One panel made through "LWXPanel". The plug-in side (create, describe, hint, ...) arrives
// through XPanels' C table; the rest is the host acting as the user, for tests and tools.
//
// Hints: every tag is read by its arity; these take effect: CHGNOTIFY, DESTROYNOTIFY, BUTNOTIFY,
// DRAWCBFUNC, ZOOMCBFUNC, POPFUNCS, POPCMDFUNC, STRLIST, CTRLCFG, DIVADD, DIVREM, LABEL, VALUE.
// In a list hinted on one control, argument ids of 0 stand for that control.
//
// Thumbnail sizes from the XpCTRLCFG options: height THUM_SNGL 20, THUM_SML 56, THUM_MED 84,
// THUM_LRG 112, THUM_XLG 168 pixels (the largest flag given wins; none means THUM_SML); width
// from the aspect, height x 1 (THUM_SQ), 4/3 (THUM_NTSC = THUM_LAND, the default), 3/2
// (THUM_35MM), 3/4 (THUM_PORT), 16/9 (THUM_WIDE), 2.35 (THUM_ANAW), 5/4 (THUM_EURO); THUM_FULL
// takes the full width of the panel instead.
class XPanel {
 public:
  enum class Kind { View = LWXP_VIEW, Form = LWXP_FORM };

  // Change events of the notification callback (LWXPEventTypes).
  static constexpr int kTrack = LWXPEVENT_TRACK;
  static constexpr int kValue = LWXPEVENT_VALUE;
  static constexpr int kHit = LWXPEVENT_HIT;

  XPanel(XPanels& owner, Kind kind, const LWXPanelControl* controls);
  XPanel(const XPanel&) = delete;
  XPanel& operator=(const XPanel&) = delete;

  LWXPanelID handle() { return this; }
  Kind kind() const { return kind_; }

  // ---- The plug-in's side, as the LWXPanelFuncs entries of the same names.
  void describe(const LWXPanelDataDesc* data, LWXPanelGetFunc* get, LWXPanelSetFunc* set);
  void hint(unsigned int id, const LWXPanelHint* hints);
  void* userData(unsigned int id) const;
  void setUserData(unsigned int id, void* data);
  void* formGet(unsigned int vid);
  void formSet(unsigned int vid, const void* value);
  void setInstance(void* instance) { instance_ = instance; }
  void* instance() const { return instance_; }
  // Re-reads every described value (through get on a view panel).
  void refresh();
  // Headless: nothing to show; the panel counts as opened and accepted.
  int open();
  int post();

  // ---- What the panel was told.
  std::string title() const;
  const std::vector<XPControl>& controls() const { return controls_; }
  const XPControl* control(unsigned int cid) const;
  // A divider follows this id (XpDIVADD); 0 is the top of the panel, 0xFFFFFFFF the bottom.
  bool hasDividerAfter(unsigned int id) const;
  unsigned int thumbnailOptions(unsigned int cid) const;
  ThumbnailSize thumbnailSize(unsigned int cid, int fullWidth) const;
  // A pop-up's entries: XpSTRLIST, or XpPOPFUNCS called with getData(panel, cid).
  std::vector<std::string> popupEntries(unsigned int cid);
  bool hasChangeNotify() const { return changeNotify_ != nullptr; }
  int refreshCount() const { return refreshes_; }
  int openCount() const { return opens_; }
  int postCount() const { return posts_; }
  bool destroyed() const { return destroyed_; }
  // Everything the panel found wrong in what the plug-in gave it, one line each.
  const std::vector<std::string>& problems() const { return problems_; }

  // ---- The host as the user. Each returns false (and notes a problem) when the control does
  // not exist or cannot take the value, or the panel has been destroyed.
  XPValue value(unsigned int cid);
  // The value the last refresh read.
  XPValue shownValue(unsigned int cid) const;
  // Set a value: set callback (view) or the form's store, then change notification with
  // LWXPEVENT_VALUE, then, on a view whose set answered non-zero, a refresh. Numbers convert
  // between int and double data; "-env" data is edited through the parameter's setVal first.
  bool setInteger(unsigned int cid, int value);
  bool setNumber(unsigned int cid, double value);
  bool setVector(unsigned int cid, const double value[3]);
  bool setText(unsigned int cid, const std::string& text);
  // The set callback's answer of the last set on a view panel.
  int lastSetResult() const { return lastSetResult_; }
  // A button: its XpBUTNOTIFY callback (panel, cid), then change notification LWXPEVENT_HIT.
  bool click(unsigned int cid);
  // A pop-up entry by 0-based index: the integer value of a choice, or the XpPOPCMDFUNC
  // callback (then LWXPEVENT_HIT) of a "vPopCmd".
  bool choose(unsigned int cid, int index);
  // Change notification with any event code, e.g. kTrack while a slider moves.
  bool notify(unsigned int cid, int event);
  // A click (clicks 1) or double click (2) at (x, y) in a thumbnail: its XpZOOMCBFUNC callback,
  // given the selection rectangle {x0, y0, x1, y1}, here the point itself.
  bool zoom(unsigned int cid, int x, int y, int clicks);
  // Runs the control's draw callback on a w x h area of LWP_BG.
  Raster drawControl(unsigned int cid, int width, int height);
  Raster drawThumbnail(unsigned int cid, int fullWidth);

 private:
  friend class XPanels;
  struct IdHints {
    std::string label;
    bool hasLabel = false;
    unsigned int vid = 0;  // from XpVALUE
    LWXPanelBtnClickFunc* button = nullptr;
    LWXPanelControlDrawFunc* draw = nullptr;
    LWXPanelControlZoomFunc* zoom = nullptr;
    LWXPanelPopCntFunc* popCount = nullptr;
    LWXPanelPopNameFunc* popName = nullptr;
    LWXPanelPopCmdFunc* popCmd = nullptr;
    const char* const* strings = nullptr;
    unsigned int options = 0;
    bool divider = false;
  };
  struct DataRow {
    unsigned int vid = 0;
    std::string name;
    std::string type;
  };
  // A form's value store for one data row; formGet hands out pointers into it.
  struct FormSlot {
    bool set = false;
    int integer[3] = {0, 0, 0};
    double number[3] = {0, 0, 0};
    std::string text;
    void* vparm = nullptr;
  };
  // Counts the panel's callbacks in progress, so that a destroy from inside one waits.
  struct Busy {
    explicit Busy(XPanel& p) : panel(p) { ++panel.busy_; }
    ~Busy() { --panel.busy_; }
    XPanel& panel;
  };

  void applyHint(const Hint& hint);
  void bindControls();
  void problem(std::string text);
  // False, with a problem noted, once the panel has been destroyed.
  bool usable(const char* what);
  const DataRow* dataRow(unsigned int vid) const;
  XPValue read(const XPControl& control);
  XPValue readVid(unsigned int vid, ValueKind kind);
  void readVParm(XPValue& v) const;
  // The common tail of every set: store or call set, notify, refresh.
  bool commit(const XPControl& control, void* value, const char* what);
  const XPControl* valueControl(unsigned int cid, const char* what);
  void changeNotify(unsigned int cid, unsigned int vid, int event);

  XPanels& owner_;
  Kind kind_;
  std::vector<XPControl> controls_;
  std::vector<DataRow> data_;
  LWXPanelGetFunc* get_ = nullptr;
  LWXPanelSetFunc* set_ = nullptr;
  void* instance_ = nullptr;
  std::map<unsigned int, void*> userData_;
  std::map<unsigned int, IdHints> hints_;
  std::map<unsigned int, FormSlot> form_;
  std::map<unsigned int, XPValue> shown_;
  LWXPanelChangeNotifyFunc* changeNotify_ = nullptr;
  LWXPanelDestroyNotifyFunc* destroyNotify_ = nullptr;
  std::vector<std::string> problems_;
  int refreshes_ = 0, opens_ = 0, posts_ = 0;
  int lastSetResult_ = 0;
  int busy_ = 0;
  bool destroyed_ = false;
};

}  // namespace lwhost
