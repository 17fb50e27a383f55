// SPDX-License-Identifier: Apache-2.0
//
// Standard error belongs to the command: one line for each failure. Libraries that decode pictures
// like to write there too, so it is muted while they work.
#pragma once

#include <mutex>
#include <string>

namespace glyphline {

/// Writes the text. Safe beside a StandardErrorMute on another thread, for which it waits.
void writeToStandardError(const std::string& text);

/// While one lives, what anybody writes to standard error is lost. Others wait for its end.
class StandardErrorMute {
 public:
  StandardErrorMute();
  StandardErrorMute(const StandardErrorMute&) = delete;
  StandardErrorMute& operator=(const StandardErrorMute&) = delete;
  ~StandardErrorMute();

 private:
  std::unique_lock<std::mutex> lock_;
  int kept_ = -1;  // a second descriptor of the true standard error; -1 where muting failed
};

}  // namespace glyphline
