#pragma once

#include "stores/ReadResult.h"

#include <filesystem>

/// Traces why a step of reading a database fails, when that begins or changes, and when all steps go well
/// again. Pages read every few seconds; a log that repeats itself as often tells nothing. `step` tells apart
/// what can fail by itself; steps that fail for one cause are traced once. `words` are traced in place of the
/// result's sentence. Any thread may call.
void NoteStep(const std::filesystem::path& file, const QString& step, const ReadResult& result,
              const QString& words = {});
