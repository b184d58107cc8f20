#pragma once

#include <functional>
#include <string>

namespace lwhost::validate {

enum class Verdict { Pass, Fail, Skip };

// What a check found: its verdict and, for anything but a plain pass, why; or, for the runs
// that gather facts, the facts.
struct Outcome {
  Verdict verdict = Verdict::Pass;
  std::string text;
};

inline Outcome Pass(std::string text = "") { return {Verdict::Pass, std::move(text)}; }
inline Outcome Fail(std::string text) { return {Verdict::Fail, std::move(text)}; }
inline Outcome Skip(std::string text) { return {Verdict::Skip, std::move(text)}; }

// Runs `body`, turning an exception that leaves it into a failure.
Outcome RunGuarded(const std::function<Outcome()>& body);

// Runs `body` in a child process, so that whatever the plug-in does to it (a crash, a hang past
// `timeoutSeconds`, a sanitizer report, an exception) fails this one run and nothing else.
Outcome RunIsolated(const std::function<Outcome()>& body, unsigned timeoutSeconds);

}  // namespace lwhost::validate
