#pragma once

#include <cstdint>

// The low 32 bits of an address, as the log's "%08X" shows which object a line speaks of.
inline unsigned log_address(const void* object)
{
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(object));
}
