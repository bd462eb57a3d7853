// SPDX-License-Identifier: GPL-3.0-or-later
#include <map>

#include "batch/program.h"

namespace torvik::batch {
namespace {

using BadInput = ProgramTest;

// One command with all of them: each ends with its own line, and the good models behind them run.
TEST_F(BadInput, IsToldInOneLineAndTheBatchGoesOn) {
  const struct {
    Texts changes;  ///< of a good model
    std::string part;
  } models[] = {
      {{"Bar0 Type=File", "Bar0 File=no"}, "Bar 1 of the job: user stress-strain file \"no\": index out"},
      {{"Tendon0 Type=File", "Tendon0 File=pipe"}, "user stress-strain file \"pipe\": index out of range"},
      {{"Bar0 Depth=" + std::string(300, 'x')}, "[Bar0] Depth=\"" + std::string(60, 'x') + "...\": a number"},
      {{"Bar0 Depth=1E309"}, "3.inp: [Bar0] Depth=\"1E309\": a number"},
      {{"Bar0 Number=32768"}, "[Bar0] Number=\"32768\": an integer from -32768 to 32767"},
      {{"Bars All=-1"}, "[Bars] All=\"-1\": a row count from 0 to 32767"},
      {{"Beam0 Use=0"}, "Insufficient beam/section objects."},
      {{"Solids All=0"}, "Section parameters: no solid in use: index out of range"},
      {{"Solid0 Area=1E308", "Solid1 Area=1E308"}, "Section parameters: row \"g\": "},
      {{"Solid4 Type=JSCE"}, "rror 51: Solid 5 of the job: Type \"JSCE\""},
      {{"Tendon0 Prestressing=Post"}, "Prestress introduction: "},
      {{"Beam0 ShearSpan=0"}, "Loading, step 1: load, M / (ShearSpan / 2): division by zero"},
      {{"Bar0 WatchStrain=never"}, "Loading, step 1: Bar Strain 1: WatchStrain \"never\""},
      {{"Solid0 Type=Restoration (Confined)"}, "answer with --shape r|c and --tie-stress N."},
  };
  std::map<std::string, std::string> told = {
      {"nul.inp", "nul.inp: not a text file (NUL byte at offset 13)"},
      {"rubbish.inp", "Insufficient beam/section objects."},
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
  for (std::size_t i = 0; i < std::size(models); ++i) {
    writeModel(std::to_string(i) + ".inp", models[i].changes);
    told[std::to_string(i) + ".inp"] = models[i].part;
  }
  write("nul.inp", std::string("[Beams]\nAll=1\0\x7F\x80", 16));
  write("rubbish.inp", "\xFF\xFE[[[\x01=\x02]]\r\r\n=\n[");
  std::string script =
      "mkfifo pipe; mkdir folder/m.inp.txt 'no state.inp.state.txt'; ln -s /dev/full full.inp.txt\n"
      "ln -s itself.inp itself.inp.txt; ln -s ./state.inp state.inp.state.txt; ln -s log.inp log.inp.log\n";
  script += std::string(kShort) + "--overwrite --state --jobs 1";
  for (const auto& [name, part] : told) script += " '" + name + "'";
  const Ended ended = run(script + " good\x1B.inp log.inp 'no state.inp'");

  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(split(ended.out, "\n").size(), told.size() + 3);
  for (const auto& [name, part] : told) {
    const std::string message = ended.message(name);
    EXPECT_NE(message.find(part), message.npos) << name << ": " << message;
    EXPECT_EQ(ended.rows(name) + ended.field(name, 2), "0-") << name;
    const bool isFile = std::filesystem::is_regular_file(path(name));
    EXPECT_TRUE(isFile ? read(name + ".log").ends_with(message + "\r\n") : !has(name + ".log")) << name;
  }
  EXPECT_FALSE(has("3.inp.txt")) << "a model that can not be read touches no result file";
  for (const char* name : {"itself.inp", "state.inp", "log.inp"}) EXPECT_EQ(read(name), read("full.inp"));
  for (const char* name : {"good?.inp", "log.inp", "no state.inp"})
    EXPECT_EQ(ended.rows(name) + ended.message(name), "50Loading end.");
  EXPECT_EQ(ended.err,
            "torvik-batch: 0.inp: torvik fncSSBarFile: The stress-strain file could not be opened. "
            "no: can not be read: No such file or directory\n"
            "torvik-batch: 1.inp: torvik fncSSTendonFile: The stress-strain file could not be opened. "
            "pipe: can not be read: not a regular file\n"
            "torvik-batch: log.inp: \"log.inp.log\" is the model itself.\n"
            "torvik-batch: no state.inp: no state.inp.state.txt: can not be written: Is a directory\n");
}

TEST_F(BadInput, OneFileUnderTwoNamesRunsOnce) {
  writeModel("m.inp");
  const Ended ended = run("ln -s . here; ln -s m.inp link.inp; torvik-batch m.inp here/m.inp link.inp");
  EXPECT_EQ(ended.message("here/m.inp"), "Named twice: it was run once.");
  EXPECT_EQ(read("link.inp.txt"), read("m.inp.txt")) << "a link has a result file of its own";
}

TEST_F(BadInput, AFullDeviceIsTold) {
  writeModel("m.inp");
  const Ended ended = run("ulimit -f 40; torvik-batch m.inp");
  EXPECT_EQ(ended.message("m.inp"), "m.inp.txt: can not be written: File too large");
  EXPECT_EQ(ended.rows("m.inp"), std::to_string(wholeRows("m.inp.txt")));
  EXPECT_EQ(ended.status, 0) << "there are result rows";
  const Ended unsaid = run("torvik-batch --overwrite m.inp >/dev/full");
  EXPECT_EQ(unsaid.status, 1);
  EXPECT_EQ(unsaid.err, "torvik-batch: standard output can not be written\n");
}

}  // namespace
}  // namespace torvik::batch
