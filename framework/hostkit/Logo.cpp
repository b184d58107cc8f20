#include "hostkit/Logo.h"

#include <string>

#include "hostkit/LogoBitmap.h"
#include "hostkit/XPanelFuncs.h"
#include "platform/WebPage.h"

#ifndef VORN_VERSION_TEXT
#error "VORN_VERSION_TEXT names the module's version"
#endif

namespace hostkit {

namespace {

// Deliberately the platform actually built for, not one fixed name.
constexpr const char* Platform() {
#if defined(__APPLE__)
  return "OSX";
#elif defined(_WIN32)
  return "Windows";
#elif defined(__linux__)
  return "Linux";
#else
  return "Unix";
#endif
}

constexpr const char* Processor() {
#if defined(__x86_64__) || defined(_M_X64)
  return "x86_64";
#elif defined(__aarch64__) || defined(_M_ARM64)
  return "arm64";
#elif defined(__i386__) || defined(_M_IX86)
  return "x86";
#elif defined(__powerpc__) || defined(__ppc__)
  return "PPC";
#else
  return "unknown";
#endif
}

constexpr int kTextColour = 0x1029;  // the panel palette's text colour

}  // namespace

const char* LogoVersionText() {
  static const std::string text = std::string("V") + VORN_VERSION_TEXT + " (" + Platform() + "-" + Processor() + ")";
  return text.c_str();
}

void drawLogo(LWXPanelID panel, unsigned int cid, LWXPDrAreaID region, int w, int h) {
  if (!panel || cid != kLogo) return;
  XPanelFuncs xpanel;
  if (!xpanel.available()) return;
  LWXPDrawFuncs* draw = xpanel.getGlobal()->drawf;

  draw->drawRGBBox(region, 255, 255, 255, 0, 0, w, h);
  // The vertical centring offset places the logo horizontally as well.
  const int off = (h - kLogoHeight) / 2;
  const auto& bits = LogoBitmap();
  for (int k = 0; k < kLogoHeight; ++k) {
    for (int c = 0; c < kLogoWidth; ++c) {
      const unsigned char* p = &bits[k * kLogoRowBytes + c * 3];
      draw->drawRGBPixel(region, p[2], p[1], p[0], off + c, off + kLogoHeight - k);
    }
  }

  std::string version = LogoVersionText();
  std::string date = kReleaseDate;
  draw->drawText(region, &version[0], kTextColour, w - draw->textWidth(region, &version[0]) - 4, 4);
  draw->drawText(region, &date[0], kTextColour, w - draw->textWidth(region, &date[0]) - 4,
                 draw->textHeight(region, &date[0]) + 8);
}

void clickURL(LWXPanelID, int) { platform::OpenWebPage(kMakerPage); }

LWXPanelHint* LogoHints() {
  static LWXPanelHint hints[] = {XpBUTNOTIFY(HintWord(kWebButton), clickURL), XpDRAWCBFUNC(HintWord(kLogo), drawLogo),
                                 XpDIVADD(HintWord(kWebButton)),
                                 // full width, no border, small height
                                 XpCTRLCFG(HintWord(kLogo), HintWord(0x80000601u)), XpEND};
  return hints;
}

}  // namespace hostkit
