// The module's own CoreFoundation subset, which the notifier's records are built from on
// systems without the framework: counts balance and Mac Roman text arrives as Unicode.
#include <gtest/gtest.h>

#include "platform/CoreFoundation.h"

TEST(CoreFoundationSubset, CountsBalanceAndMacRomanBecomesUnicode) {
  const std::size_t before = platform::cf::LiveObjects();
  CFMutableStringRef text = CFStringCreateMutable(kCFAllocatorDefault, 0);
  CFStringAppendCString(text, "A\x80\xA5", kCFStringEncodingMacRoman);
  CFStringAppendCString(text, "\xDB\xF0\xFF", kCFStringEncodingMacRoman);
  EXPECT_STREQ(platform::cf::Utf8(text), "AÄ•€\uF8FFˇ");

  const void* values[] = {text, CFSTR("x")};
  CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, values, 2, &kCFTypeArrayCallBacks);
  EXPECT_EQ(CFGetRetainCount(text), 2);
  CFMutableDictionaryRef ticket = CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks);
  CFDictionarySetValue(ticket, CFSTR("All"), array);
  CFDictionarySetValue(ticket, CFSTR("Default"), array);
  EXPECT_EQ(CFGetRetainCount(array), 3);
  // The same value again, while the dictionary holds its only count.
  const int one = 1;
  CFNumberRef version = CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &one);
  CFDictionarySetValue(ticket, CFSTR("Version"), version);
  CFRelease(version);
  CFDictionarySetValue(ticket, CFSTR("Version"), version);
  EXPECT_EQ(platform::cf::LiveObjects(), before + 4);
  EXPECT_EQ(CFDictionaryGetCount(ticket), 3);
  EXPECT_EQ(CFDictionaryGetValue(ticket, CFSTR("Default")), array);
  CFRelease(array);
  CFRelease(text);
  EXPECT_EQ(platform::cf::LiveObjects(), before + 4);
  CFRelease(ticket);
  EXPECT_EQ(platform::cf::LiveObjects(), before);
}
