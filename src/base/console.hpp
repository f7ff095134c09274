// The console of a run: every line the program shows goes through here. Progress and results go
// to standard output; the per-line solver trace and the messages of a stopped run to standard
// error. A text that begins with a carriage return rewrites the current console line.
#pragma once

#include <string_view>

namespace console {

// Standard output, left in the stream's buffer.
void Out(std::string_view text);
// Standard output, then a line end, then a flush (so that a watcher sees the line at once).
void OutLine(std::string_view text);
// Standard output, formatted as printf formats.
void OutF(const char* format, ...) __attribute__((format(printf, 1, 2)));
// Flushes standard output.
void Flush();

// Standard error, after standard output has been flushed, so that the two keep their order.
void ErrLine(std::string_view text);
void ErrF(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace console
