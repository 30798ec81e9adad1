#ifndef CIFWARD_CIFVALUEFORM_H
#define CIFWARD_CIFVALUEFORM_H

#include <ostream>
#include <string>
#include <string_view>

// How the writer spells a value so that every CIF reader reads it back as the same text.
enum class CifValueForm { Bare, SingleQuoted, DoubleQuoted, TextBlock };

// `in_loop`: an empty value stands in a loop as '' (a single item with no value is not written).
CifValueForm cif_value_form(std::string_view value, bool in_loop);

inline bool cif_is_quoted(CifValueForm form)
{
    return form == CifValueForm::SingleQuoted || form == CifValueForm::DoubleQuoted;
}

// Writes a bare or quoted value; a text block is laid out by its caller.
void cif_write_inline_value(std::ostream& stream, std::string_view value, CifValueForm form);

// Writes the comment that follows the last item of a file. It ends its line even where the file
// did not, since the item it belongs to is not always the last one written.
void cif_write_closing_comment(std::ostream& stream, const std::string& comment);

#endif
