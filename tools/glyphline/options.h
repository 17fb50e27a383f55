// SPDX-License-Identifier: Apache-2.0
//
// What the subcommands share: values of options, and how a subcommand is registered.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "rz/range.h"

namespace glyphline {

/// What is to be done once the command line is understood; gives the exit status.
using Action = std::function<int()>;

/// Each adds its subcommand, which sets `action` when it is chosen.
void addTrain(CLI::App& app, Action& action);
void addArrange(CLI::App& app, Action& action);
void addFind(CLI::App& app, Action& action);
void addCompile(CLI::App& app, Action& action);
void addShow(CLI::App& app, Action& action);
void addEdit(CLI::App& app, Action& action);

/// How much is said on standard error.
struct Voice {
  bool quiet = false;
  bool verbose = false;
};
void addVoice(CLI::App& command, Voice& voice);

/// LO:HI. Throws Failure that names the option.
rzRange rangeOf(const std::string& text, const std::string& option);

/// A number, all of the text. Throws Failure that names the option.
double numberOf(const std::string& text, const std::string& option);

/// Accepts numbers from `least` to `most`; what is not a number is neither.
CLI::Validator between(double least, double most);

/// Runs a setter of the library's parameters and names the option when it refuses the value.
void setting(const std::string& option, const std::function<void()>& set);

/// The file that an overlay or a report of one picture goes to: a `%` in `pattern` is replaced by
/// the picture's name without folder and ending.
std::string outputPath(const std::string& pattern, const std::string& picture);

/// Throws Failure that names the option unless each picture has an output file of its own.
void checkOutputs(const std::string& pattern, const std::string& option,
                  const std::vector<std::string>& pictures);

/// The same for overlays, which must be of a kind that can be drawn, too.
void checkOverlays(const std::string& pattern, const std::vector<std::string>& pictures);

/// Does `work` for 0 to count - 1 on `jobs` threads and calls `deliver` with each index, in order,
/// as soon as it and all before it are done. Shows a progress bar on standard error when that is a
/// terminal, `count` is above 1 and `voice` is not quiet.
void forEachPicture(std::size_t count, int jobs, const Voice& voice,
                    const std::function<void(std::size_t)>& work,
                    const std::function<void(std::size_t)>& deliver);

}  // namespace glyphline
