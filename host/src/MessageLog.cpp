#include "lwhost/MessageLog.h"

#include "lwhost/Host.h"

namespace lwhost {

std::vector<Message> MessageLog::errors() const {
  std::vector<Message> out;
  for (const Message& m : messages_)
    if (m.kind == "error") out.push_back(m);
  return out;
}

void MessageLog::clear() {
  std::lock_guard<std::mutex> lock(mutex_);
  messages_.clear();
}

void MessageLog::record(const char* kind, const char* first, const char* second) {
  std::lock_guard<std::mutex> lock(mutex_);
  messages_.push_back(Message{kind, first ? first : "", second ? second : "", second != nullptr});
}

namespace {
MessageLog* Log() {
  Host* host = Host::current();
  return host ? &host->messages() : nullptr;
}

void Note(const char* kind, const char* a, const char* b) {
  if (MessageLog* log = Log()) log->record(kind, a, b);
}

int Ask(const char* kind, const char* title, const char* a, const char* b) {
  MessageLog* log = Log();
  if (!log) return 0;
  log->record(kind, title, a);
  (void)b;
  return log->questionAnswer;
}

void Info(const char* a, const char* b) { Note("info", a, b); }
void Error(const char* a, const char* b) { Note("error", a, b); }
void Warning(const char* a, const char* b) { Note("warning", a, b); }
int OkCancel(const char* t, const char* a, const char* b) { return Ask("okCancel", t, a, b); }
int YesNo(const char* t, const char* a, const char* b) { return Ask("yesNo", t, a, b); }
int YesNoCan(const char* t, const char* a, const char* b) { return Ask("yesNoCan", t, a, b); }
int YesNoAll(const char* t, const char* a, const char* b) { return Ask("yesNoAll", t, a, b); }
}  // namespace

st_LWMessageFuncs* MessageLog::Table() {
  static st_LWMessageFuncs table = {Info, Error, Warning, OkCancel, YesNo, YesNoCan, YesNoAll};
  return &table;
}

}  // namespace lwhost
