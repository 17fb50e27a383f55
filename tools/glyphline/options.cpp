// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <locale>
#include <set>
#include <sstream>
#include <thread>

#include "failure.h"
#include "overlay.h"
#include "rz/exception.h"
#include "rz/text.h"
#include "standard_error.h"

namespace glyphline {
namespace {

constexpr std::size_t kBarWidth = 30;
constexpr const char* kClearLine = "\r\033[K";  // results may go to the same terminal

void showProgress(std::size_t done, std::size_t count) {
  const std::size_t filled = done * kBarWidth / count;
  writeToStandardError("[" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') +
                       "] " + std::to_string(done) + " of " + std::to_string(count) +
                       (done == count ? "\n" : ""));
}

}  // namespace

void addVoice(CLI::App& command, Voice& voice) {
  command.add_flag("--quiet", voice.quiet, "Say nothing but errors");
  command.add_flag("--verbose", voice.verbose, "Say on standard error what is done");
}

double numberOf(const std::string& text, const std::string& option) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  double value = 0.0;
  std::string rest;
  if (!(in >> value) || in >> rest) throw Failure(option + ": \"" + text + "\" is not a number");
  return value;
}

rzRange rangeOf(const std::string& text, const std::string& option) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) {
    throw Failure(option + ": \"" + text + "\" is not a range LO:HI");
  }
  const rzRange range(numberOf(text.substr(0, colon), option),
                      numberOf(text.substr(colon + 1), option));
  if (range.isEmpty()) throw Failure(option + ": the range " + text + " runs backwards");
  return range;
}

CLI::Validator between(double least, double most) {
  const std::string range = rfStr(least) + " - " + rfStr(most);
  const auto check = [least, most, range](const std::string& text) {
    double value = 0.0;
    const bool isNumber = CLI::detail::lexical_cast(text, value);
    if (isNumber && value >= least && value <= most) return std::string();
    return "Value " + text + " not in range " + range;
  };
  return {check, "FLOAT in [" + range + "]", "between"};
}

void setting(const std::string& option, const std::function<void()>& set) {
  try {
    set();
  } catch (const rzException& refusal) {
    throw Failure(option + ": " + refusal.what());
  }
}

std::string outputPath(const std::string& pattern, const std::string& picture) {
  const std::size_t at = pattern.find('%');
  if (at == std::string::npos) return pattern;
  std::string path = pattern;
  return path.replace(at, 1, std::filesystem::path(picture).stem().string());
}

void checkOutputs(const std::string& pattern, const std::string& option,
                  const std::vector<std::string>& pictures) {
  std::set<std::string> paths;
  for (const std::string& picture : pictures) {
    const std::string path = outputPath(pattern, picture);
    std::error_code absent;  // a path that does not exist yet is no input
    for (const std::string& input : pictures) {
      if (!std::filesystem::equivalent(path, input, absent)) continue;
      throw Failure(path + ": " + option + ": this would overwrite a picture to be read");
    }
    if (paths.insert(path).second) continue;
    throw Failure(path + ": " + option + ": two pictures would be written to this file" +
                  (pattern == path ? "; a % in the name stands for the picture's name" : ""));
  }
}

void checkOverlays(const std::string& pattern, const std::vector<std::string>& pictures) {
  requireDrawable(pattern);
  checkOutputs(pattern, "--overlay", pictures);
}

void forEachPicture(std::size_t count, int jobs, const Voice& voice,
                    const std::function<void(std::size_t)>& work,
                    const std::function<void(std::size_t)>& deliver) {
  const bool showsBar = count > 1 && !voice.quiet && isatty(STDERR_FILENO) == 1;
  std::vector<std::promise<void>> finished(count);
  std::atomic<std::size_t> next{0};
  const auto loop = [&] {
    for (std::size_t i = next++; i < count; i = next++) {
      try {
        work(i);
        finished[i].set_value();
      } catch (...) {
        finished[i].set_exception(std::current_exception());
      }
    }
  };
  std::vector<std::jthread> workers;
  const auto wanted = std::min(count, static_cast<std::size_t>(std::max(jobs, 1)));
  for (std::size_t k = 0; k < wanted; ++k) workers.emplace_back(loop);
  for (std::size_t i = 0; i < count; ++i) {
    finished[i].get_future().get();
    if (showsBar) writeToStandardError(kClearLine);
    deliver(i);
    if (showsBar) showProgress(i + 1, count);
  }
}

}  // namespace glyphline
