#include "platform/CoreFoundation.h"

#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MacRoman.h"

namespace platform::cf {

enum class Kind { String, Number, Array, Dictionary };

// Every counted object is on one list, so that what is left at unload can be freed.
struct Object {
  explicit Object(Kind k);
  virtual ~Object();
  Kind kind;
  CFIndex count = 1;
  bool constant = false;
  Object* prev = nullptr;
  Object* next = nullptr;
};

namespace {

struct Zone {
  Object* first = nullptr;
  std::size_t live = 0;
  std::map<std::string, std::unique_ptr<Object>> constants;
  bool closing = false;
  ~Zone() {
    // Contents were counted by their containers; free them without calling back.
    closing = true;
    while (first) delete first;
  }
};

Zone& TheZone() {
  static Zone zone;
  return zone;
}

}  // namespace

Object::Object(Kind k) : kind(k) {}
Object::~Object() {
  if (constant) return;
  Zone& zone = TheZone();
  (prev ? prev->next : zone.first) = next;
  if (next) next->prev = prev;
  --zone.live;
}

bool TheZoneClosing();

Object* Counted(Object* object) {
  Zone& zone = TheZone();
  object->next = zone.first;
  if (zone.first) zone.first->prev = object;
  zone.first = object;
  ++zone.live;
  return object;
}

std::size_t LiveObjects() { return TheZone().live; }
bool TheZoneClosing() { return TheZone().closing; }

}  // namespace platform::cf

using platform::cf::Kind;
using platform::cf::Object;

struct __CFString : Object {
  __CFString() : Object(Kind::String) {}
  std::string utf8;
};

struct __CFNumber : Object {
  __CFNumber() : Object(Kind::Number) {}
  long long value = 0;
};

// The callbacks a container was made with; null members mean the values are not counted.
struct Counting {
  CFArrayRetainCallBack retain = nullptr;
  CFArrayReleaseCallBack release = nullptr;
  const void* keep(const void* value) const { return retain && value ? retain(nullptr, value) : value; }
  void drop(const void* value) const {
    if (release && value && !platform::cf::TheZoneClosing()) release(nullptr, value);
  }
};

struct __CFArray : Object {
  __CFArray() : Object(Kind::Array) {}
  ~__CFArray() override {
    for (const void* v : values) counting.drop(v);
  }
  std::vector<const void*> values;
  Counting counting;
};

struct __CFDictionary : Object {
  __CFDictionary() : Object(Kind::Dictionary) {}
  ~__CFDictionary() override {
    for (auto& [k, v] : entries) {
      keys.drop(k);
      values.drop(v);
    }
  }
  std::vector<std::pair<const void*, const void*>> entries;
  Counting keys, values;
};

namespace {

const Object* Of(CFTypeRef object) { return static_cast<const Object*>(object); }

const void* RetainValue(CFAllocatorRef, const void* value) { return CFRetain(value); }
void ReleaseValue(CFAllocatorRef, const void* value) { CFRelease(value); }

template <class Callbacks>
Counting CountingOf(const Callbacks* callbacks) {
  Counting c;
  if (callbacks) {
    c.retain = callbacks->retain;
    c.release = callbacks->release;
  }
  return c;
}

}  // namespace

const CFArrayCallBacks kCFTypeArrayCallBacks = {0, RetainValue, ReleaseValue, nullptr, CFEqual};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {0, RetainValue, ReleaseValue, nullptr, CFEqual, nullptr};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0, RetainValue, ReleaseValue, nullptr, CFEqual};

CFTypeRef CFRetain(CFTypeRef object) {
  if (object && !Of(object)->constant) ++const_cast<Object*>(Of(object))->count;
  return object;
}

void CFRelease(CFTypeRef object) {
  if (!object || Of(object)->constant) return;
  Object* o = const_cast<Object*>(Of(object));
  if (--o->count == 0) delete o;
}

CFIndex CFGetRetainCount(CFTypeRef object) { return object ? Of(object)->count : 0; }

Boolean CFEqual(CFTypeRef a, CFTypeRef b) {
  if (a == b) return true;
  if (!a || !b || Of(a)->kind != Of(b)->kind) return false;
  switch (Of(a)->kind) {
    case Kind::String: return static_cast<CFStringRef>(a)->utf8 == static_cast<CFStringRef>(b)->utf8;
    case Kind::Number: return static_cast<CFNumberRef>(a)->value == static_cast<CFNumberRef>(b)->value;
    default: return false;
  }
}

CFStringRef __CFStringMakeConstantString(const char* text) {
  auto& constants = platform::cf::TheZone().constants;
  auto it = constants.find(text);
  if (it == constants.end()) {
    auto string = std::make_unique<__CFString>();
    string->constant = true;
    string->utf8 = platform::MacRomanToUtf8(text);
    it = constants.emplace(text, std::move(string)).first;
  }
  return static_cast<CFStringRef>(it->second.get());
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex) {
  return static_cast<CFMutableStringRef>(platform::cf::Counted(new __CFString));
}

void CFStringAppendCString(CFMutableStringRef string, const char* cString, CFStringEncoding encoding) {
  if (!string || !cString || encoding != kCFStringEncodingMacRoman) return;
  string->utf8 += platform::MacRomanToUtf8(cString);
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* valuePtr) {
  if (type != kCFNumberIntType || !valuePtr) return nullptr;
  auto* number = new __CFNumber;
  number->value = *static_cast<const int*>(valuePtr);
  return static_cast<CFNumberRef>(platform::cf::Counted(number));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* valuePtr) {
  if (!number || type != kCFNumberIntType || !valuePtr) return false;
  *static_cast<int*>(valuePtr) = static_cast<int>(number->value);
  return true;
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const CFArrayCallBacks* callBacks) {
  if (count < 0 || (count > 0 && !values)) return nullptr;
  auto* array = new __CFArray;
  array->counting = CountingOf(callBacks);
  for (CFIndex i = 0; i < count; ++i) array->values.push_back(array->counting.keep(values[i]));
  return static_cast<CFArrayRef>(platform::cf::Counted(array));
}

CFIndex CFArrayGetCount(CFArrayRef array) { return array ? static_cast<CFIndex>(array->values.size()) : 0; }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return array && index >= 0 && index < CFArrayGetCount(array) ? array->values[index] : nullptr;
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex, const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  auto* dictionary = new __CFDictionary;
  dictionary->keys = CountingOf(keyCallBacks);
  dictionary->values = CountingOf(valueCallBacks);
  return static_cast<CFMutableDictionaryRef>(platform::cf::Counted(dictionary));
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  if (!dictionary || !key) return;
  // Keep the new value before dropping the old one: they may be the same object.
  const void* kept = dictionary->values.keep(value);
  for (auto& [k, v] : dictionary->entries) {
    if (!CFEqual(k, key)) continue;
    dictionary->values.drop(v);
    v = kept;
    return;
  }
  dictionary->entries.emplace_back(dictionary->keys.keep(key), kept);
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  if (!dictionary) return nullptr;
  for (const auto& [k, v] : dictionary->entries)
    if (CFEqual(k, key)) return v;
  return nullptr;
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return dictionary ? static_cast<CFIndex>(dictionary->entries.size()) : 0;
}

const char* platform::cf::Utf8(CFStringRef string) { return string ? string->utf8.c_str() : ""; }
