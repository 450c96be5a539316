#pragma once
// The app's plain diagnostic lines ("createTable fail …", "newArr-0[…]") go
// through one replaceable sink, standard output by default, so that tests
// read what was said instead of capturing the process's stdout. Our own
// diagnostics use the logging category below instead.

#include <QLoggingCategory>

#include <functional>
#include <string_view>

Q_DECLARE_LOGGING_CATEGORY(lcOrvane)

namespace OutputLine {

using Sink = std::function<void(std::string_view line)>;

// Writes one line to the sink; the default sink writes it to standard output
// and flushes at once, so that the lines of a crashed run are not lost.
// Safe to call from any thread.
void print(std::string_view line);

// Replaces the sink; an empty sink restores standard output. Returns the
// sink that was in place, so a scope can put it back.
Sink setSink(Sink sink);

}  // namespace OutputLine
