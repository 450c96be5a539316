#pragma once
// `orvane --doctor`: prints what stands between this user and the keyboard,
// with the command for each problem, and returns the exit status (0 when
// nothing stands in the way). It only looks; it sends nothing to a keyboard.

#include <ostream>

int runDoctor(std::ostream& out);
