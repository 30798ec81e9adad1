#ifndef CIFWARD_SPECIALCHARACTERS_H
#define CIFWARD_SPECIALCHARACTERS_H

#include <QChar>
#include <QString>
#include <cstddef>

// One row of the escape table: a UTF-16 code and the ASCII text that a CIF writes in its place.
// An empty text drops the character.
struct SpecialCharacter {
    char16_t code;
    const char* text;
};

// The compiled-in rows, in ascending code order.
struct SpecialCharacterRows {
    const SpecialCharacter* first;
    std::size_t count;

    const SpecialCharacter* begin() const { return first; }
    const SpecialCharacter* end() const { return first + count; }
    std::size_t size() const { return count; }
};

SpecialCharacterRows specialCharacterRows();

// The text with every character that has a row replaced by the row's text; everything else,
// Greek letters in Unicode included, is kept. Text that needs no change is returned shared.
QString escapeSpecialCharacters(const QString& text);

// The Greek letter that the classic Symbol font draws for a Latin letter (`a` is alpha, `q` is
// theta, `J` the theta symbol), which is what a CIF escape such as `\q` means; the null
// character for anything that is not an ASCII letter.
QChar greekLetterForSymbolCode(QChar latin);

#endif
