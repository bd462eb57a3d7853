// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Whole files. All errors are `InputError`s that name the file and the system's reason.
namespace torvik::base {

/// True for an existing path that is not a directory.
bool isFile(const std::filesystem::path& path);

/// All bytes of a file.
/// @throws InputError where it can not be opened or read, or is a directory
std::string readWholeFile(const std::filesystem::path& path);

enum class CreateParents { No, Yes };

/// Replaces the file's content: written to a temporary file beside it, flushed to the device, then renamed
/// over it, so that a crash leaves the old file or the new one. Follows symbolic links, keeps the
/// permissions. A file without write permission is refused; a device or pipe is written straight into.
/// @throws InputError; the old file is then as it was, and the temporary one is gone
void replaceWholeFile(const std::filesystem::path& path, std::string_view content,
                      CreateParents createParents = CreateParents::No);

}  // namespace torvik::base
