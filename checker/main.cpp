#include "BatchChecker.h"

#include <iostream>
#include <unistd.h>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    return BatchChecker::main(argc, argv, std::cin, std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1);
}
