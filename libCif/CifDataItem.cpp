#include "CifDataItem.h"

#include "CifErrorException.h"
#include "CifValueForm.h"

CifDataItem::CifDataItem(const std::string& name, const HCifDictionary& dictionary, CifArena* arena)
    : name_(arena ? &arena->intern(name) : new std::string(name)), dictionary_(dictionary), arena_(arena),
      check_(cif_value_check_kind(name)), owns_name_(!arena)
{
}

CifDataItem::~CifDataItem()
{
    if (owns_name_)
        delete name_;
}

std::string CifDataItem::first_value() const
{
    return values_.empty() ? std::string() : std::string(values_.at(0));
}

void CifDataItem::guard(const char* action, std::size_t row) const
{
    if (!looped_ && row != 0)
        throw CifErrorException(CifError(345, action, *name_, -1));
}

bool CifDataItem::values_checked() const
{
    const CifDictionaryEntry* known = entry();
    return !(check_ == CifValueCheckKind::None ||
             (check_ == CifValueCheckKind::Standard && known == nullptr));
}

int CifDataItem::check(const std::string& text)
{
    // The common case of a name that no dictionary defines, without the call chain.
    const CifDictionaryEntry* known = entry();
    if (check_ == CifValueCheckKind::None || (check_ == CifValueCheckKind::Standard && known == nullptr))
        return 0;
    return cif_check_value(check_, known, range_, text);
}

int CifDataItem::set_single_value(const std::string& text)
{
    const int result = check(text);
    if (text.empty()) {
        values_.clear();
    } else {
        if (values_.empty())
            values_.resize(1);
        values_.set(0, text);
        if (arena_)
            values_.settle(*arena_);
    }
    return result;
}

void CifDataItem::add_value(const std::string& text)
{
    guard("add_value", values_.size());
    values_.push_back(text);
}

int CifDataItem::set_value_checked(std::size_t row, std::string_view text)
{
    guard("set_value", row);
    // The text is copied for the check only when a dictionary defines the name.
    const CifDictionaryEntry* known = entry();
    const bool unchecked =
        check_ == CifValueCheckKind::None || (check_ == CifValueCheckKind::Standard && known == nullptr);
    const int result = unchecked ? 0 : check(std::string(text));
    store(row, text);
    return result;
}

void CifDataItem::store(std::size_t row, std::string_view text)
{
    if (row == values_.size()) {
        values_.push_back(text);
    } else {
        if (row > values_.size())
            values_.resize(row + 1);
        values_.set(row, text);
    }
}

void CifDataItem::copy_value(const CifDataItem& other)
{
    guard("copy_value", other.values_.size() > 1 ? other.values_.size() : 0);
    values_ = other.values_;
}

std::string CifDataItem::value(std::size_t row) const
{
    return std::string(value_view(row));
}

std::string_view CifDataItem::value_view(std::size_t row) const
{
    guard("value", row);
    return row < values_.size() ? values_.at(row) : std::string_view();
}

void CifDataItem::remove_value(std::size_t row)
{
    guard("remove_value", row);
    if (row < values_.size())
        values_.erase(row);
}

const std::string& CifDataItem::category() const
{
    return dictionary_->category(*name_);
}
const CifDictionaryEntry* CifDataItem::entry() const
{
    const std::uint64_t revision = dictionary_->revision();
    if (entry_revision_ != revision) {
        entry_ = dictionary_->find_entry(*name_);
        entry_revision_ = revision;
        range_ = CifValueRange();
    }
    return entry_;
}

int CifDataItem::type() const
{
    const CifDictionaryEntry* known = entry();
    return known ? known->type : static_cast<int>(CifDictionaryEntry::UnknownType);
}
int CifDataItem::type_conditions() const
{
    return dictionary_->type_conditions(*name_);
}
const CifDictionary::Pairs& CifDataItem::enumeration() const
{
    return dictionary_->enumeration(*name_);
}
const std::string& CifDataItem::enumeration_range() const
{
    return dictionary_->enumeration_range(*name_);
}

void CifDataItem::write(std::ostream& stream, unsigned line_limit) const
{
    if (values_.empty())
        return;
    stream << comment(0);

    const long limit = static_cast<long>(line_limit);
    const long fit = limit - 2;
    const std::string& between = comment(1);
    const std::string& after = comment(2);
    const std::string_view v = values_.at(0);

    const std::string& name = *name_;
    stream << name;
    for (std::size_t i = name.size(); i < 32; ++i)
        stream << ' ';
    stream << ' ';
    long col = static_cast<long>(name.size() < 32 ? 32 : name.size()) + 1;

    if (!between.empty()) {
        // A blank line after the name must stand on a line of its own: the first line end only
        // ends the name's line.
        if (between[0] == '\n' || static_cast<long>(between.size()) + col > limit - 1)
            stream << '\n';
        stream << between;
        col = 0;
    }

    const CifValueForm form = cif_value_form(v, false);
    if (form == CifValueForm::TextBlock) {
        if (col > 0)
            stream << '\n';
        stream << ';' << v;
        if (v.empty() || v.back() != '\n')
            stream << '\n';
        stream << ';';
        col = 1;
    } else {
        const long w = static_cast<long>(v.size()) + (cif_is_quoted(form) ? 2 : 0);
        const long with_comment = w + static_cast<long>(after.size());
        if (col > 0 && w + col > fit) {
            stream << '\n';
            col = 0;
        } else if (!after.empty() && with_comment <= fit && with_comment + col > fit) {
            // A value and its comment go together on a fresh line when that makes them fit.
            stream << '\n';
            col = 0;
        }
        cif_write_inline_value(stream, v, form);
        col += w;
    }

    if (after.empty()) {
        stream << '\n';
    } else {
        stream << ((static_cast<long>(after.size()) + 1 + col > limit - 1) ? '\n' : ' ');
        stream << after;
    }
    cif_write_closing_comment(stream, comment(3));
}
