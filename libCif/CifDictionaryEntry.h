#ifndef CIFWARD_CIFDICTIONARYENTRY_H
#define CIFWARD_CIFDICTIONARYENTRY_H

#include <string>
#include <utility>
#include <vector>

// What a dictionary knows of one definition; several data names may share one entry.
// The defaults are what a query about an undefined name answers.
struct CifDictionaryEntry {
    enum Type { Numb = 0, Char = 1, Null = 2, UnknownType = 3 };
    enum TypeConditions { NoConditions = 0, Esd = 1, Seq = 2 };
    enum List { ListNo = 0, ListBoth = 1, ListYes = 2 };
    enum RelatedFunction { Alternate = 1, Convention = 2, Conversion = 4, Replace = 8 };

    std::string category;
    std::string list_link_parent;
    std::string enumeration_default;
    std::string enumeration_range;
    std::string definition;
    std::string units;
    std::string units_detail;
    std::string type_construct;
    std::string list_uniqueness;
    int type = UnknownType;
    int type_conditions = NoConditions;
    int list = ListBoth;
    bool list_mandatory = false;
    std::vector<std::string> list_link_child;
    std::vector<std::pair<std::string, std::string>> example;
    std::vector<std::pair<std::string, std::string>> enumeration;
    std::vector<std::pair<std::string, int>> related;
    std::vector<std::string> list_reference;
};

struct CifDictionaryHeader {
    std::string name;
    std::string history;
    std::string update;
    std::string version;
};

#endif
