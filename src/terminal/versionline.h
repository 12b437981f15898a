#pragma once

#include <string>

/// The answer of a program of that name to "--version", without a line's end: name, version and revision.
std::string versionLine(const std::string &program);
