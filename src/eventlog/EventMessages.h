#pragma once

#include <cstdint>
#include <span>

#include "automation/Text.h"

/// The texts of events: found in message files that the registry of the logging computer names for
/// a source, on that computer's administrative shares, and kept loaded for the life of the
/// apartment's event logs.
namespace veldmark {

/// Whose message files are asked: a source of a log of a computer, which has no leading "\\". The
/// texts are another's, and must outlive the look-up.
struct MessageSource {
  TextView server;
  TextView log;
  TextView source;
};

/// The text of an event with its inserts filled in, from the first of the source's files that has
/// it; `raw` receives it with inserts left in place. Where none has it both are the failure of the
/// last file in words, and empty where that could not be loaded. `strings_text` is the strings as
/// one text: "%%" in it has the strings' parameters filled in too. Raises nothing but 7.
Text GetEventMessage(const MessageSource& source, std::int32_t event_id, TextView strings_text,
                     std::span<const Text> strings, Text& raw);

/// An insert string with each "%%n" and "%n" replaced by the text of that number in the source's
/// parameter file; empty where there is no such file. Raises the platform's error, 317 for a number
/// that the file lacks, and 6 for one beyond 31 bits; the file is freed then and not loaded again
/// while a log lives, so that later calls raise 1812.
Text GetParameterMessage(const MessageSource& source, TextView text);

/// The name of a category; empty where the source has none. Raises the platform's error, 317 for a
/// number that the file lacks, and once for a file that can't be loaded 2 with its path.
Text GetCategoryMessage(const MessageSource& source, std::int16_t category);

/// The path of a file on a drive of a server by its administrative share, this computer's too. A
/// path without a drive stays as it is.
Text GetRemoteMessageFilePath(TextView path, TextView server);

}  // namespace veldmark
