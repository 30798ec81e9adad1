#include "ProgramInfo.h"

#include <cstdlib>

std::string programName()
{
    return "Cifward";
}

std::string programVersion()
{
    return "1.1";
}

std::string programReleaseDate()
{
    return "January 2004";
}

std::string coreDictionaryVersion()
{
    return "2.3";
}

std::string coreDictionaryDate()
{
    return "October 2003";
}

std::string programHomePage()
{
    return "https://cifward.org/";
}

std::string preferencesPath()
{
    const char* path = std::getenv("CIFWARDPREFS");
    return path != nullptr ? path : "";
}
