// Reads one CIF file into a Cif and exits. It does nothing else, so that the peak resident size
// an outside timer reports for the process (GNU time's %M) is the reader's own, and the process's
// wall time is the price a user pays for opening the file: reading, building the model and
// freeing it.
//
// Usage: cif_read_once [--dict DICTIONARY] FILE
// With --dict, the dictionary is loaded first and every value is checked against it, as the
// checker does. On standard error it prints the size, the time of the read alone (without
// start-up and without freeing the model), the dictionary's load time, the block count and the
// finding count, so a run can be checked at a glance.

#include "Cif.h"
#include "CifDictionaryPool.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    const bool with_dictionary = argc == 4 && std::string(argv[1]) == "--dict";
    if (argc != 2 && !with_dictionary) {
        std::fprintf(stderr, "usage: %s [--dict DICTIONARY] FILE\n", argv[0]);
        return 2;
    }
    const char* path = argv[argc - 1];
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "%s: cannot open %s\n", argv[0], path);
        return 1;
    }
    in.seekg(0, std::ios::end);
    const double bytes = static_cast<double>(in.tellg());
    in.seekg(0, std::ios::beg);

    std::size_t blocks = 0;
    std::size_t findings = 0;
    double seconds = 0;
    double load_ms = 0;
    {
        HCifDictionaryPool pool(new CifDictionaryPool);
        if (with_dictionary) {
            const auto start = std::chrono::steady_clock::now();
            HCifConcreteDictionary dictionary(new CifConcreteDictionary);
            HCifErrorList errors(new CifErrorList);
            std::ifstream file(argv[2], std::ios::binary);
            dictionary->read(file, errors);
            if (!errors->is_empty()) {
                std::fprintf(stderr, "%s: the dictionary %s gives %zu findings\n", argv[0], argv[2],
                             errors->count());
                return 1;
            }
            pool->add(dictionary);
            load_ms =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        }
        Cif cif(pool);
        const auto start = std::chrono::steady_clock::now();
        cif.read(in);
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        blocks = cif.block_count();
        findings = cif.errors()->count();
    } // the model is freed here, inside the process's measured lifetime, as it is in the editor

    std::fprintf(stderr, "%s: %.0f bytes read in %.3f s (%.1f MB/s), %zu blocks, %zu findings", path, bytes,
                 seconds, seconds > 0 ? bytes / 1e6 / seconds : 0.0, blocks, findings);
    if (with_dictionary)
        std::fprintf(stderr, "; dictionary loaded in %.1f ms", load_ms);
    std::fprintf(stderr, "\n");
    return 0;
}
