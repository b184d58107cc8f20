#pragma once

#include <lwxpanel.h>

#include "hostkit/MakerPage.h"
#include "hostkit/XPanelInterface.h"

namespace hostkit {

// Draws the logo, the module's version and its release date into the logo control.
void drawLogo(LWXPanelID panel, unsigned int cid, LWXPDrAreaID region, int w, int h);
// Opens the maker's web page from the web button.
void clickURL(LWXPanelID panel, int cid);

// "V1.4 (Linux-x86_64)": the version and the platform this file was built for.
const char* LogoVersionText();
// A fixed release date, deliberately not the build date, so rebuilt files draw the same logo.
inline constexpr char kReleaseDate[] = "Nov 21 2026";

// Hints every panel includes: the button's click handler, the logo's drawing function, a
// divider under the button and the logo control's size.
LWXPanelHint* LogoHints();

// The two rows that head every control table.
inline constexpr LWXPanelControl kLogoControl{kLogo, "", "dThumbnail"};
inline constexpr LWXPanelControl kWebButtonControl{kWebButton, kMakerPage, "vButton"};

}  // namespace hostkit
