// SPDX-License-Identifier: GPL-3.0-or-later
#include <map>

#include "batch/program.h"

namespace torvik::batch {

// One command with all of them: each ends with its own line, and the good models behind them run.
TEST_F(Program, TellsBadInputInOneLineAndGoesOn) {
  // Changes of a good model, and part of what is told.
  const std::pair<Texts, std::string> models[] = {
      {{"Bar0 Type=File", "Bar0 File=pipe"}, "Bar 1 of the job: user stress-strain file \"pipe\": index out"},
      {{"Bar0 Depth=" + std::string(300, 'x')},
       "[Bar0] Depth=\"" + std::string(60, 'x') + "...\": expected a number"},
      {{"Bar0 Depth=1E309"}, "2.inp: [Bar0] Depth=\"1E309\": expected a number"},
      {{"Beam0 Use=0"}, "Insufficient beam/section objects."},
      {{"Solid4 Type=JSCE"}, "rror 51: Solid 5 of the job: Type \"JSCE\""},
      {{"Beam0 ShearSpan=0"}, "Loading, step 1: load, M / (ShearSpan / 2): division by zero"},
      {{"Solid0 Type=Restoration (Confined)"}, "answer with --shape r|c and --tie-stress N."},
  };
  std::map<std::string, std::string> told = {
      {"nul.inp", "nul.inp: not a text file (NUL byte at offset 13)"},
      {"/dev/null", "Insufficient beam/section objects."},
      {"pipe", "pipe: can not be read: not a regular file"},
      {"folder", "Can't open folder"},
      {"", "Can't open "},
      {"folder/m.inp", "folder/m.inp.txt: can not be written: Is a directory"},
      {"full.inp", "full.inp.txt: can not be written: No space left on device"},
      {"itself.inp", "\"itself.inp.txt\" is the model itself."},
      {"state.inp", "\"state.inp.state.txt\" is the model itself."}};
  for (const char* name :
       {"folder/m.inp", "full.inp", "itself.inp", "state.inp", "good\x1B.inp", "log.inp", "no state.inp"})
    writeModel(name);
  for (int number = 0; const auto& [changes, part] : models) {
    const std::string name = std::to_string(number++) + ".inp";
    writeModel(name, changes);
    told[name] = part;
  }
  write("nul.inp", std::string("[Beams]\nAll=1\0\x7F\x80", 16));
  std::string script =
      "mkfifo pipe; mkdir folder/m.inp.txt 'no state.inp.state.txt'; ln -s /dev/full full.inp.txt\n"
      "ln -s itself.inp itself.inp.txt; ln -s ./state.inp state.inp.state.txt; ln -s log.inp log.inp.log\n"
      "ln -s . here; ln -s good\x1B.inp link.inp\n";
  script += kShort + "--overwrite --state --jobs 1";
  for (const auto& [name, part] : told) script += " '" + name + "'";
  const Ended ended = run(script + " good\x1B.inp log.inp here/log.inp link.inp 'no state.inp'");

  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(split(ended.out, "\n").size(), told.size() + 5);
  for (const auto& [name, part] : told) {
    const std::string message = ended.message(name);
    EXPECT_NE(message.find(part), message.npos) << name << ": " << message;
    EXPECT_EQ(ended.rows(name) + ended.field(name, 2), "0-") << name;
    const bool isFile = std::filesystem::is_regular_file(path(name));
    EXPECT_TRUE(isFile ? read(name + ".log").ends_with(message + "\r\n") : !has(name + ".log")) << name;
  }
  EXPECT_EQ(ended.message("here/log.inp"), "Named twice: it was run once.");
  EXPECT_FALSE(has("2.inp.txt")) << "a model that can not be read touches no result file";
  for (const char* name : {"itself.inp", "state.inp", "log.inp"}) EXPECT_EQ(read(name), read("full.inp"));
  for (const char* name : {"good?.inp", "log.inp", "link.inp", "no state.inp"})
    EXPECT_EQ(ended.rows(name) + ended.message(name), "50Loading end.");
  EXPECT_EQ(ended.err,
            "torvik-batch: 0.inp: torvik fncSSBarFile: The stress-strain file could not be opened. "
            "pipe: can not be read: not a regular file\n"
            "torvik-batch: log.inp: \"log.inp.log\" is the model itself.\n"
            "torvik-batch: no state.inp: no state.inp.state.txt: can not be written: Is a directory\n");
}

TEST_F(Program, TellsAFullDevice) {
  writeModel("m.inp");
  const Ended ended = run("ulimit -f 40; torvik-batch m.inp");
  EXPECT_EQ(ended.message("m.inp"), "m.inp.txt: can not be written: File too large");
  EXPECT_EQ(ended.rows("m.inp"), std::to_string(wholeRows("m.inp.txt")));
  EXPECT_EQ(ended.status, 0) << "there are result rows";
  const Ended unsaid = run("torvik-batch --overwrite m.inp >/dev/full");
  EXPECT_EQ(unsaid.status, 1);
  EXPECT_EQ(unsaid.err, "torvik-batch: standard output can not be written\n");
}

}  // namespace torvik::batch
