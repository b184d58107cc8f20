#pragma once

#include <lwhost.h>

#include <mutex>
#include <string>
#include <vector>

namespace lwhost {

// One message a plug-in sent through "Info Messages 2".
struct Message {
  std::string kind;  // "info", "error", "warning", "okCancel", "yesNo", "yesNoCan", "yesNoAll"
  std::string first;
  std::string second;
  bool hasSecond = false;  // the second line may be null
};

// Records every message in order; question requesters get a configurable answer.
class MessageLog {
 public:
  const std::vector<Message>& messages() const { return messages_; }
  std::vector<Message> errors() const;
  void clear();
  void record(const char* kind, const char* first, const char* second);

  // The answer given to okCancel/yesNo/... requesters (headless: nobody clicks).
  int questionAnswer = 1;

  // The table served as "Info Messages 2"; it reports to the current host's log.
  static st_LWMessageFuncs* Table();

 private:
  std::mutex mutex_;
  std::vector<Message> messages_;
};

}  // namespace lwhost
