#pragma once

#include <string>

#include "IsolatedRun.h"
#include "ServerProbe.h"

// The checks of one server. Each runs inside its own process (IsolatedRun), loads the module
// afresh, and judges only what the plug-in did.
namespace lwhost::validate {

// The module's records, one "CLASS\tNAME" line each, with a "!" line for each fault in them.
Outcome ListRecords(const std::string& module);

// Activation at every version the host offers, and refusal of versions no host offers.
Outcome CheckActivation(const Target& target);
Outcome CheckCreate(const Target& target);
Outcome CheckCopy(const Target& target, unsigned long seed, bool randomise);
// save -> load -> save gives the same bytes.
Outcome CheckRoundTrip(const Target& target, IOMode mode, unsigned long seed, bool randomise);
// Truncated, altered and random data loaded without harm; the instance then loads its own
// data again as if nothing had happened.
Outcome CheckDamagedLoad(const Target& target, unsigned long seed, int rounds);
// The global services the server asks for while created, rendered, shown and stored, one a line.
Outcome LearnServices(const Target& target, unsigned long seed);
// Create, render, panel, store and destroy with the service withheld.
Outcome CheckWithheld(const Target& target, const std::string& service, unsigned long seed);
// The same as the modeller, or as a ScreamerNet node (which has no panel services).
Outcome CheckProgram(const Target& target, Application program, unsigned long seed);
Outcome CheckPanel(const Target& target, unsigned long seed);
// NaN, infinities and huge values on every input.
Outcome CheckExtremeInputs(const Target& target);
// Every output evaluated on many threads at once.
Outcome CheckConcurrentEvaluation(const Target& target, int samplesPerThread);

}  // namespace lwhost::validate
