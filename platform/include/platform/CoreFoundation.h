#pragma once

// The part of CoreFoundation the notifier builds its Growl records from: counted strings,
// numbers, arrays and dictionaries, with Apple's names and calling conventions. On systems
// without the framework the module carries this small implementation of its own.
//
// Objects are counted as in CoreFoundation: Create gives a count of 1, CFRetain adds one,
// CFRelease removes one and frees the object at 0. Constant strings (CFSTR) are never freed.
// Strings hold Unicode; text comes in through CFStringAppendCString in Mac Roman.
// Objects still alive when the module is unloaded are freed then. Not thread-safe: the
// notifier works on the host's interface thread.

#include <cstddef>

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFData* CFDataRef;
typedef long CFIndex;
typedef unsigned char Boolean;
typedef unsigned int CFStringEncoding;
typedef CFIndex CFNumberType;

enum : CFStringEncoding { kCFStringEncodingMacRoman = 0 };
enum : CFNumberType { kCFNumberIntType = 9 };

#define kCFAllocatorDefault (static_cast<CFAllocatorRef>(nullptr))

typedef const void* (*CFArrayRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFArrayReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef struct {
  CFIndex version;
  CFArrayRetainCallBack retain;
  CFArrayReleaseCallBack release;
  CFStringRef (*copyDescription)(const void* value);
  Boolean (*equal)(const void* value1, const void* value2);
} CFArrayCallBacks;

typedef struct {
  CFIndex version;
  CFArrayRetainCallBack retain;
  CFArrayReleaseCallBack release;
  CFStringRef (*copyDescription)(const void* value);
  Boolean (*equal)(const void* value1, const void* value2);
  unsigned long (*hash)(const void* value);
} CFDictionaryKeyCallBacks;
typedef CFArrayCallBacks CFDictionaryValueCallBacks;

extern const CFArrayCallBacks kCFTypeArrayCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFIndex CFGetRetainCount(CFTypeRef object);
Boolean CFEqual(CFTypeRef a, CFTypeRef b);

// A constant string, the same object for the same text for the module's life.
CFStringRef __CFStringMakeConstantString(const char* text);
#define CFSTR(text) __CFStringMakeConstantString("" text "")

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef allocator, CFIndex maxLength);
// Every byte is a character in Mac Roman; other encodings append nothing.
void CFStringAppendCString(CFMutableStringRef string, const char* cString, CFStringEncoding encoding);

CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* valuePtr);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* valuePtr);

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count, const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
// Keys are compared with CFEqual; setting an existing key replaces its value.
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);

namespace platform::cf {
// The text of a string in UTF-8 ("" for null).
const char* Utf8(CFStringRef string);
// Counted objects alive now (constants not included).
std::size_t LiveObjects();
}  // namespace platform::cf
