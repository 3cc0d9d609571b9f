// The commands, one function each: run on the main thread, with the arguments already checked, and return
// the program's exit code.
#pragma once

#include "Arguments.h"
#include "Handset.h"

namespace itorvctl {

[[nodiscard]] int watch(Handset& handset, const Arguments& arguments);
[[nodiscard]] int get(Handset& handset, const Arguments& arguments);
[[nodiscard]] int set(Handset& handset, const Arguments& arguments);
[[nodiscard]] int frames(Handset& handset, const Arguments& arguments);
[[nodiscard]] int codes(Handset& handset, const Arguments& arguments);
[[nodiscard]] int record(Handset& handset, const Arguments& arguments);
[[nodiscard]] int check(Handset& handset, const Arguments& arguments);

[[nodiscard]] int settings(Handset& handset, const Arguments& arguments);
[[nodiscard]] int profiles(Handset& handset, const Arguments& arguments);

// These look at what is stored, and need no module.
[[nodiscard]] int warnings(const torv::Vehicle& vehicle, const Arguments& arguments);
[[nodiscard]] int exportRecording(const Arguments& arguments);
[[nodiscard]] int names(const torv::Vehicle& vehicle, const Arguments& arguments);
/// Those of a capture.
[[nodiscard]] int capturedFrames(const Arguments& arguments);
[[nodiscard]] int vehicles(const Arguments& arguments);
[[nodiscard]] int defaults(const Arguments& arguments);

/// Said after a change that a running window does not see, because it reads such things only at its start.
inline constexpr auto seenAtNextStart = "an itorv that runs shows it from its next start on";
/// A line of JSON on the standard output stream.
void printObject(const torv::Dictionary& object);
/// One line on the standard error stream.
void complain(const std::string& why);
/// Whether what was changed in the store is on disk; complains where it is not.
[[nodiscard]] bool isKept();
/// Complains that there is no connection, with what is known of why, and returns the exit code for that.
[[nodiscard]] int notConnected(const Handset& handset);

}  // namespace itorvctl
