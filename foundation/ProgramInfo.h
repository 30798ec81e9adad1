#ifndef CIFWARD_PROGRAMINFO_H
#define CIFWARD_PROGRAMINFO_H

#include <string>

// Fixed facts about this build, shown in the splash screen, the About box and the help.
std::string programName();
std::string programVersion();
std::string programReleaseDate();
std::string coreDictionaryVersion();
std::string coreDictionaryDate();
std::string programHomePage();

// The directory named by the environment variable CIFWARDPREFS, where the user may keep extra
// value lists for the item help; empty when the variable is unset or empty.
std::string preferencesPath();

#endif
