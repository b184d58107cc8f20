#pragma once

namespace platform {

// Opens `address` in the user's browser without waiting for it. Returns false when no browser
// could be started; callers treat that as nothing to report.
bool OpenWebPage(const char* address);

}  // namespace platform
