#ifndef CIFWARD_CIFDICTIONARYTEXT_H
#define CIFWARD_CIFDICTIONARYTEXT_H

#include <string>
#include <string_view>

// A dictionary's text as it is meant to be shown: blank lines at both ends dropped, the indent
// that all lines share removed, no line end at the end.
std::string cif_normalise_text(std::string_view text);

#endif
