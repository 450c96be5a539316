#pragma once
// A process started with standard input, output or error closed would give
// those descriptor numbers to the first files it opens (the display
// connection, a database), and its own lines on standard output would then
// be written into them. Called first thing in main, before anything opens a
// file: each closed one of the three is opened on /dev/null.
void openClosedStandardStreams();
