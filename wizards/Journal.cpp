#include "Journal.h"

#include "JournalTable.h"
#include "Logger.h"

#include <cstdlib>

namespace {
// Column positions of a record.
constexpr std::size_t numberEnd = 4, codenStart = 5, codenLength = 6, discontinuedStart = 21, flagLength = 4,
                      nameStart = 33;

const char* recordOf(int number)
{
    if (number < 1 || number > Journal::count())
        return nullptr;
    return JournalTable::records()[JournalTable::size() - static_cast<std::size_t>(number)];
}

int field(const char* record, std::size_t start, std::size_t length)
{
    return std::atoi(std::string(record + start, length).c_str());
}
} // namespace

Journal::Journal(int number) : record_(recordOf(number))
{
    if (!record_) {
        logError("Journal::Journal: Invalid NLDC coden.");
        return;
    }
    number_ = field(record_, 0, numberEnd);
    coden_.assign(record_ + codenStart, codenLength);
    name_.assign(record_ + nameStart);
}

int Journal::count()
{
    return static_cast<int>(JournalTable::size());
}

bool Journal::discontinued() const
{
    if (!record_) {
        logError("Journal::discontinued: Invalid NLDC coden.");
        return false;
    }
    return field(record_, discontinuedStart, flagLength) != 0;
}
