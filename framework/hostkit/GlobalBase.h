#pragma once

#include <lwserver.h>

#include <type_traits>

namespace hostkit {

// The host's name for a service type; each wrapper's header specialises it.
template <class T>
struct GlobalName;

namespace detail {
// Look-ups through the latest lookup function; null when the host never activated us.
void* AcquireGlobal(const char* name);
void ReleaseGlobal(const char* name);

// Some services are functions rather than tables.
template <class T>
T* FromHost(void* p) {
  if constexpr (std::is_function_v<T>)
    return reinterpret_cast<T*>(p);
  else
    return static_cast<T*>(p);
}
}  // namespace detail

class genericGlobal {
 public:
  // Plug-in objects hold services as bases and may throw from their destructors (the host's
  // destroy call is guarded), so no holder promises not to.
  virtual ~genericGlobal() noexcept(false) {}
};

// A counted holder of one host service. All holders of one service type share the pointer and
// the count; the service is released to the host when the last holder goes.
template <class T>
class GlobalBase : public genericGlobal {
 public:
  GlobalBase() : counted_(true) {
    globPtr = detail::FromHost<T>(detail::AcquireGlobal(m_globalName));
    if (globPtr) ++usage_count;
  }
  ~GlobalBase() noexcept(false) override {
    if (counted_ && --usage_count == 0) detail::ReleaseGlobal(m_globalName);
  }
  GlobalBase(const GlobalBase&) = delete;
  GlobalBase& operator=(const GlobalBase&) { return *this; }  // holders never change service

  virtual bool available() const { return globPtr != nullptr; }
  virtual T* getGlobal() const { return globPtr; }

  static constexpr const char* m_globalName = GlobalName<T>::value;
  static inline T* globPtr = nullptr;
  static inline int usage_count = 0;

 protected:
  // For holders that bring their own name and count (nGlobalBase).
  struct Uncounted {};
  explicit GlobalBase(Uncounted) : counted_(false) {}

 private:
  bool counted_;
};

// The same holder with the service named by a template argument, so that two versions of one
// service type can be held at once behind one base type.
template <class T, const char* name>
class nGlobalBase : public GlobalBase<T> {
 public:
  nGlobalBase() : GlobalBase<T>(typename GlobalBase<T>::Uncounted{}) {
    globPtr = detail::FromHost<T>(detail::AcquireGlobal(name));
    if (globPtr) ++usage_count;
  }
  ~nGlobalBase() noexcept(false) override {
    if (--usage_count == 0) detail::ReleaseGlobal(name);
  }

  bool available() const override { return globPtr != nullptr; }
  T* getGlobal() const override { return globPtr; }

  static constexpr const char* m_globalName = name;
  static inline T* globPtr = nullptr;
  static inline int usage_count = 0;
};

}  // namespace hostkit
