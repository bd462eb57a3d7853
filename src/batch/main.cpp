// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <iostream>

#include "batch/batch.h"
#include "batch/command_line.h"

namespace {

// The first signal ends the jobs at their next yield, with their rows written; a second one ends the process.
extern "C" void onSignal(int signal) {
  torvik::batch::endRequested().store(true);
  std::signal(signal, SIG_DFL);
}

}  // namespace

int main(int argc, char** argv) {
  const torvik::batch::CommandLine line = torvik::batch::parseCommandLine(argc, argv);
  if (!line.request) {
    (line.exitStatus == 0 ? std::cout : std::cerr) << line.text;
    return line.exitStatus;
  }
  std::signal(SIGINT, onSignal);
  std::signal(SIGTERM, onSignal);
  std::signal(SIGXFSZ, SIG_IGN);  // a file at its size limit is a failed write like any other
  return torvik::batch::runBatch(*line.request, std::cout, std::cerr);
}
