// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "base/profile.h"
#include "model/fields.h"
#include "model/objects.h"

/// The input file (extension inp): one whole model in profile form. docs/file-formats.md has every key.
namespace torvik::model {

/// The model that is being edited, with its file.
struct Document {
  ObjectTables tables;
  std::string currentFile;   ///< last read or written; empty before
  bool SavedFlag = true;     ///< nothing edited since the last New, read or write, as far as that is told
  ObjectTables stored = {};  ///< as they were last read or written whole; empty after New

  /// Whether the tables differ from what was last read or written whole.
  [[nodiscard]] bool isChanged() const { return tables != stored; }
};

/// What surrounds a read or a write: the window's caption, recent files, cursor and message box.
class InputFileFrame {
 public:
  virtual ~InputFileFrame() = default;
  /// The path can not be opened: show "Can't open " and the path, and take it out of the recent files.
  virtual void cannotOpen(const std::string& path) = 0;
  /// The path is the document's from now on: put it at the head of the recent files, set the caption.
  virtual void takePath(const std::string& path) = 0;
  virtual void showWaitCursor(bool on) = 0;
};

/// Reads the five tables.
/// @return false where no file of that name is there (a directory is none): the frame is told, and no table
///         is touched
/// @throws InputError that names file, section, key and value: text where a number belongs, an integer beyond
///         16 bits, a negative row count. The tables are then filled up to the fault.
/// @throws InputError where the file can not be read; the document is then as it was
bool ReadInputFile(Document& document, InputFileFrame& frame, const std::string& path);

/// Writes the five tables over the file's present content: sections above the new row counts stay.
/// @throws InputError where the file can not be read or written, a text holds a line end or NUL, or a number
///         is too large for its text. File and document are then as they were, so that the edits still count
///         as unsaved; the frame has taken the path already.
void WriteInputFile(Document& document, InputFileFrame& frame, const std::string& path);

/// The reading and writing of one row, for files and for default rows. Instantiated for the five records.
template <class Row>
void readRow(const base::ProfileFile& file, std::string_view section, Row& row);
template <class Row>
void writeRow(base::ProfileFile& file, std::string_view section, const Row& row);

/// The tables of a profile in memory, without a frame. The errors are those of the two above.
void readTables(const base::ProfileFile& file, ObjectTables& tables);
void writeTables(base::ProfileFile& file, const ObjectTables& tables);

}  // namespace torvik::model
