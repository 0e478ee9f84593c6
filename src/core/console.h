// The one way output leaves the program: whole lines, flushed, never interleaved between threads.
#pragma once

#include <string>

void consolePrint(std::string text);
