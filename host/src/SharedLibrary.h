#pragma once

#include <string>

// The system's loader, one implementation per system (posix/, windows/).
namespace lwhost::library {

// The loaded library, or null with `error` saying why in a few words.
void* Open(const std::string& path, std::string& error);
void* Symbol(void* library, const char* name);
void Close(void* library);

}  // namespace lwhost::library
