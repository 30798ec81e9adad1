#ifndef CIFWARD_JOURNAL_H
#define CIFWARD_JOURNAL_H

#include <string>

// One journal of the compiled-in journal list, looked up by its number. A number outside the
// list is logged and gives a journal whose texts read "Unknown".
class Journal {
public:
    explicit Journal(int number);

    // The highest journal number, which is also the number of journals.
    static int count();

    const std::string& name() const { return name_; }
    const std::string& coden() const { return coden_; }
    int number() const { return number_; }
    bool discontinued() const;

private:
    const char* record_ = nullptr;
    int number_ = 0;
    std::string coden_ = "Unknown";
    std::string name_ = "Unknown";
};

#endif
