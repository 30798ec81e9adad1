#pragma once

#include <string>

// Reads a plain number the forgiving way used throughout the toolkit: the run of ".0123456789"
// around the first digit, negated when a '-' stands ahead of it. Text without a digit reads as 0,
// so stray signs or letters around a number never stop a reading.
double read_plain_number(const std::string& text);
