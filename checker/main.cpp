#include "BatchChecker.h"

#include <iostream>
#include <malloc.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
#ifdef M_TRIM_THRESHOLD
    // A run reads one document after another, each model freed before the next is built. By
    // default the allocator hands the freed memory back to the system and the next document
    // takes it again page by page, a page fault each: over 10,000 corpus files that was a third
    // of the run. Keeping up to 64 MB for the next file (and not giving the larger blocks their
    // own mappings) costs a batch nothing it would not take again a moment later.
    ::mallopt(M_TRIM_THRESHOLD, 64 << 20);
    ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
#endif
    return BatchChecker::main(argc, argv, std::cin, std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1);
}
