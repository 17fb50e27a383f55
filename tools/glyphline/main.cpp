// SPDX-License-Identifier: Apache-2.0
//
// The command glyphline: reads the command line and starts the subcommand.
#include <cstdio>
#include <iostream>

#include "failure.h"
#include "options.h"

namespace {

int badInput(const std::string& message) {
  // One line, whatever a library wrote into its message.
  std::string line = message;
  for (char& c : line) c = c == '\n' ? ' ' : c;
  std::fprintf(stderr, "glyphline: %s\n", line.c_str());
  return glyphline::kBadInput;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Glyphline verifies printed text: is it there, and can it be read?", "glyphline");
  app.set_version_flag("--version", "glyphline " GLYPHLINE_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Example:\n"
      "  glyphline train --font DejaVuSans-Bold.ttf --size 36 --chars 'A-Z0-9 ' -o label.oca\n"
      "  glyphline arrange --alphabet label.oca --text 'LOT 4471B' label.png");
  glyphline::Action action;
  glyphline::addTrain(app, action);
  glyphline::addArrange(app, action);
  glyphline::addFind(app, action);
  glyphline::addCompile(app, action);
  glyphline::addShow(app, action);
  glyphline::addEdit(app, action);
  try {
    app.parse(argc, argv);
    return action();
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    return badInput(error.what());
  } catch (const std::exception& error) {
    return badInput(error.what());
  }
}
