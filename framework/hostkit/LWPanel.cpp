#include "hostkit/LWPanel.h"

namespace hostkit {

LWPanel::~LWPanel() noexcept(false) {
  if (owned && panel && available()) getGlobal()->destroy(panel);
}

bool LWPanel::Create(const std::string& panelTitle) {
  if (!available()) return false;
  if (owned && panel) getGlobal()->destroy(panel);  // never leak the panel held before
  title = panelTitle;
  panel = getGlobal()->create(&title[0], nullptr);
  owned = panel != nullptr;
  return owned;
}

LWControl* LWPanel::AddControl(const char* className, LWPanControlDesc* desc, const char* label) const {
  std::string cls = className, text = label ? label : "";
  return getGlobal()->addControl(panel, &cls[0], desc, &text[0]);
}

}  // namespace hostkit
