#pragma once

#include <exception>

namespace hostkit {

// Reports a caught exception through the host's message service: the operation's fixed text as
// the first line, the exception's own text as the second.
void ReportException(const char* operation, const std::exception& e);

// Runs `call` for the host. A standard exception is reported and `neutral` returned instead;
// anything else is left to pass on, as the host expects of these calls.
template <class R, class F>
R Guarded(const char* operation, R neutral, F&& call) {
  try {
    return call();
  } catch (const std::exception& e) {
    ReportException(operation, e);
    return neutral;
  }
}

template <class F>
void Guarded(const char* operation, F&& call) {
  try {
    call();
  } catch (const std::exception& e) {
    ReportException(operation, e);
  }
}

// The fixed texts, spelled as the host's users have always seen them.
namespace guard {
inline constexpr char InstanceDestroy[] = "An exception occured in Instance::Destroy():";
inline constexpr char ItemUseItems[] = "An exception occured in Item::UseItems():";
inline constexpr char ItemChangeID[] = "An exception occured in Item::ChangeID():";
inline constexpr char RenderCleanup[] = "An exception occured in Render::Cleanup():";
inline constexpr char NodeActivate[] = "An exception occured in NodeHandler::Activate():";
inline constexpr char NodeEvaluate[] = "An exception occured in NodeHandler::evaluate():";
inline constexpr char NodeCustomPreview[] = "An exception occured in NodeHandler::customPreview():";
inline constexpr char NodeFlags[] = "An exception occured in NodeHandler::Flags():";
inline constexpr char MasterActivate[] = "An exception occured in MasterAdaptor::Activate():";
inline constexpr char MasterEvent[] = "An exception occured in MasterAdaptor::Event():";
inline constexpr char MasterFlags[] = "An exception occured in MasterAdaptor::Flags():";
inline constexpr char XPanelInterface[] = "An exception occured in Xpanel::Interface():";
inline constexpr char LWPanelActivate[] = "An exception occured in LWPanel::Activate():";
}  // namespace guard

}  // namespace hostkit
