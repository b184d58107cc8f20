#pragma once

namespace hostkit {

// A source of pop-up entries; the host's pop-up functions get the object as user data.
class PopUpCallback {
 public:
  virtual ~PopUpCallback() noexcept(false) {}  // sources hold host services
  virtual int popCount() = 0;
  virtual const char* popName(int index) = 0;

  static int PopCount(void* data) { return data ? static_cast<PopUpCallback*>(data)->popCount() : 0; }
  static const char* PopName(void* data, int index) {
    return data ? static_cast<PopUpCallback*>(data)->popName(index) : "";
  }
};

}  // namespace hostkit
