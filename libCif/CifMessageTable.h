#ifndef CIFWARD_CIFMESSAGETABLE_H
#define CIFWARD_CIFMESSAGETABLE_H

#include <cstddef>
#include <cstdint>

// The fixed table of findings, sorted by code. Severity 0 is a remark, 1 a warning, 2 an error.
struct CifMessage {
    std::uint32_t code;
    int severity;
    const char* text;
};

enum CifSeverity { CifRemark = 0, CifWarning = 1, CifErrorSeverity = 2 };

// The row of `code`, or the fallback row (severity 1, "Unknown error <1> <2>") for an unknown code.
const CifMessage& cif_message(std::uint32_t code);
const CifMessage* cif_message_table_begin();
std::size_t cif_message_table_size();

#endif
