#pragma once

// The lwhost commands. Each takes the words after its name and returns the exit status; they
// report failures by throwing, and main prints the one line.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lwhost {
class Host;
class Raster;
}  // namespace lwhost

namespace lwhost::tools {

// The command line asks for something the command does not take (exit status 2).
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The request was understood but cannot be carried out (exit status 1).
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

int ServersCommand(const std::vector<std::string>& args);
int PanelCommand(const std::vector<std::string>& args);
int RenderCommand(const std::vector<std::string>& args);
int SessionCommand(const std::vector<std::string>& args);
int ValidateCommand(const std::vector<std::string>& args);

// Writes the picture and says so on stdout ("wrote FILE (WxH)"); a CommandError when the file
// cannot be written.
void WritePicture(const Raster& picture, const std::string& path);

// Prints what the plug-ins reported as errors through "Info Messages 2", one stderr line each,
// so that a picture made despite them does not hide them.
void ReportPluginErrors(Host& host);

// Walks a command's words: positional arguments in order, options anywhere.
class Arguments {
 public:
  Arguments(std::string command, const std::vector<std::string>& words) : command_(std::move(command)), words_(words) {}

  bool done() const { return at_ >= words_.size(); }
  // The next word is an option ("-o", "--size").
  bool atOption() const { return !done() && words_[at_].size() > 1 && words_[at_][0] == '-'; }
  std::string next() { return words_[at_++]; }
  // The value after an option; a UsageError if there is none.
  std::string valueOf(const std::string& option) {
    if (done()) throw UsageError(option + " needs a value");
    return next();
  }
  [[noreturn]] void unknown(const std::string& word) const {
    throw UsageError("unknown " + std::string(word[0] == '-' ? "option " : "argument ") + word + " for " + command_);
  }
  [[noreturn]] void missing(const std::string& what) const { throw UsageError(command_ + " needs " + what); }

 private:
  std::string command_;
  const std::vector<std::string>& words_;
  std::size_t at_ = 0;
};

}  // namespace lwhost::tools
