#include "CifParser.h"

#include "CifNameIndex.h"

#include <iterator>
#include <utility>

namespace {
constexpr std::size_t data_name_limit = 75;
constexpr int max_namesake_findings = 16;
constexpr unsigned comment_or_blank = CifComment | CifBlank;

void append_comment(std::string& out, const CifToken& token)
{
    if (token.kind == CifComment) {
        out += '#';
        out += token.text;
    }
    out += '\n';
}
} // namespace

CifParser::CifParser(Cif& cif, CifTokeniser& tokeniser)
    : dictionary_(cif.dictionary_), errors_(cif.errors_), blocks_(cif.blocks_), arena_(cif.arena_),
      tokeniser_(tokeniser)
{
}

void CifParser::gather_comments(std::string& out, CifToken& token)
{
    for (;;) {
        tokeniser_.next(token);
        if (!(token.kind & comment_or_blank))
            return;
        append_comment(out, token);
    }
}

void CifParser::drop_last_empty_line()
{
    // A stream that ends in a line end gives one more, empty, line, which the file does not
    // hold. Only that line goes: a comment on the last line keeps its own line end even when the
    // file has none, so that nothing written after it can join it.
    const std::size_t n = pending_.size();
    if (n > 0 && pending_[n - 1] == '\n' && (n == 1 || pending_[n - 2] == '\n'))
        pending_.pop_back();
}

void CifParser::run()
{
    // A stray apostrophe in the free text before the first block is common and harmless.
    was_suppressed_ = errors_->is_suppressed(350);
    errors_->suppress(350);

    HCifDataItem last_item;
    bool stray_reported = false;
    CifToken token;
    for (;;) {
        tokeniser_.next(token);
        switch (token.kind) {
        case CifEnd:
            drop_last_empty_line();
            if (last_item && !pending_.empty())
                last_item->set_comment(3, pending_);
            return;
        case CifComment:
        case CifBlank:
            append_comment(pending_, token);
            break;
        case CifValueToken:
            stray_value(token, last_item, stray_reported);
            break;
        case CifHeading:
            heading(token);
            break;
        case CifName:
            last_item = name(token);
            swallow_checked_ = nullptr;
            break;
        case CifLoopToken: {
            ensure_block(token.line);
            HCifDataItem first = read_loop(token.line);
            if (first)
                last_item = first;
            swallow_checked_ = nullptr;
            break;
        }
        default:
            add(316, "Invalid parser token", -1);
            break;
        }
    }
}

void CifParser::stray_value(const CifToken& token, const HCifDataItem& last_item, bool& stray_reported)
{
    if (!block_) {
        if (!stray_reported) {
            stray_reported = true;
            add(313, token.line);
        }
        return;
    }
    if (last_item && last_item->has_value() && swallowed_names(last_item)) {
        add(311, token.text, token.line);
        return;
    }
    add(312, token.text, token.line);
}

bool CifParser::swallowed_names(const HCifDataItem& item)
{
    // Judged once per item: a long text block followed by many strays must not be scanned again
    // for each of them.
    if (item.get() == swallow_checked_)
        return swallowed_;
    const std::string_view value = item->value_view(0);
    const std::string_view::size_type begin = value.find_first_not_of(" \t");
    swallow_checked_ = item.get();
    swallowed_ = begin != std::string_view::npos &&
                 (value[begin] == '_' || value.find("\n_", begin) != std::string_view::npos);
    return swallowed_;
}

void CifParser::start_block(const std::string& name, std::int32_t line)
{
    block_ = HCifDataBlock(new CifDataBlock(name, line, dictionary_, arena_));
    blocks_.push_back(block_);
    if (!was_suppressed_)
        errors_->unsuppress(350);
}

void CifParser::ensure_block(std::int32_t line)
{
    if (block_)
        return;
    add(305, line);
    start_block(cif_added_block_name, line);
    ++block_names_[cif_added_block_name];
}

void CifParser::heading(const CifToken& token)
{
    start_block(token.text, token.line);
    if (token.text == "data_")
        add(309, token.line);
    // Counted by name, so that a file of many blocks is not compared block against block. One
    // finding per earlier namesake, up to a bound: a file of n equal headings would otherwise
    // hold n*n/2 findings.
    int& earlier = block_names_[token.text];
    for (int i = 0; i < earlier && i < max_namesake_findings; ++i)
        add(310, token.text, token.line);
    ++earlier;

    if (!pending_.empty()) {
        block_->set_comment(0, pending_);
        pending_.clear();
    }
    CifToken& next = next_token_;
    for (;;) {
        tokeniser_.next(next);
        if (next.kind != CifComment || next.line < token.line || next.line > token.end_line)
            break;
        pending_ += " #";
        pending_ += next.text;
    }
    tokeniser_.push_front(std::move(next));
    if (!pending_.empty()) {
        block_->set_comment(1, pending_);
        pending_.clear();
    }
}

HCifDataItem CifParser::name(const CifToken& token)
{
    std::string between;
    ensure_block(token.line);
    if (token.text.size() > data_name_limit)
        add(306, token.text, token.line);

    CifToken& value = value_token_;
    gather_comments(between, value);
    std::int32_t value_line = -1, value_end = -1;
    HCifDataItem item;
    if (value.kind == CifValueToken) {
        value_line = value.line;
        value_end = value.end_line;
        item = set_item(token, value);
    } else {
        add(value.kind == CifName ? 307 : 308, token.text, token.line);
        tokeniser_.push_front(std::move(value));
        item = block_->item(token.text);
    }

    // The comment positions of a loop column mean other things: for a repeated name of a looped
    // item, the text goes on to the next owner instead.
    const HCifDataItem owner = item && !item->is_looped() ? item : HCifDataItem();
    if (owner) {
        if (!pending_.empty()) {
            owner->set_comment(0, pending_);
            pending_.clear();
        }
        if (!between.empty())
            owner->set_comment(1, between);
    } else {
        pending_ += between;
    }
    CifToken& next = next_token_;
    for (;;) {
        tokeniser_.next(next);
        if (next.kind != CifComment || next.line < value_line || next.line > value_end)
            break;
        append_comment(pending_, next);
    }
    tokeniser_.push_front(std::move(next));
    if (owner && !pending_.empty()) {
        owner->set_comment(2, pending_);
        pending_.clear();
    }
    return item;
}

void CifParser::duplicate(const HCifDataItem& item, const std::string& name, std::int32_t line)
{
    add(318, name, item->line() < 0 ? std::string("unknown") : std::to_string(item->line()), line);
}

HCifDataItem CifParser::set_item(const CifToken& name, const CifToken& value)
{
    if (!block_ || name.kind != CifName || value.kind != CifValueToken) {
        add(316, "parser error: set of invalid data item", -1);
        return block_ ? block_->item(name.text) : HCifDataItem();
    }
    HCifDataItem item = block_->add_item(name.text);
    if (item->has_value()) {
        duplicate(item, name.text, name.line);
        return item;
    }
    item->set_line(name.line);
    const int result = item->set_single_value(value.text);
    if (result != 0)
        add(cif_check_result_code(result), name.text, name.line);
    if (item->type() == CifDictionaryEntry::UnknownType)
        add(320, name.text, name.line);
    return item;
}

HCifDataItem CifParser::read_loop(std::int32_t loop_line)
{
    std::string before = std::move(pending_);
    pending_.clear();
    std::string after;
    CifToken token;

    for (;;) {
        tokeniser_.next(token);
        if (token.kind != CifComment || token.line != loop_line)
            break;
        append_comment(after, token);
    }
    while (token.kind == CifLoopToken) {
        add(319, token.text, token.line);
        tokeniser_.next(token);
    }
    tokeniser_.push_front(std::move(token));
    gather_comments(pending_, token);

    // One entry a column of the header; null where the values are read but not kept: a name
    // repeated in this header, or one that another loop of the block holds, whose values there
    // stay as they are (as the first value of a repeated single item does).
    std::vector<HCifDataItem>& columns = loop_columns_;
    columns.clear();
    std::vector<std::string>& names = loop_names_; // the columns that are kept, for the new loop
    names.clear();
    HCifDataItem first_item;
    CifNameIndex& in_header = loop_header_;
    in_header.clear();
    while (token.kind == CifName) {
        HCifDataItem item = block_->add_item(token.text);
        if (!first_item)
            first_item = item;
        const bool repeated = static_cast<bool>(in_header.find(token.text));
        if (!repeated)
            in_header.insert(item);
        const bool elsewhere = !repeated && item->is_looped();
        if (item->type() == CifDictionaryEntry::UnknownType)
            add(320, token.text, token.line);
        if (repeated || elsewhere || item->has_value())
            duplicate(item, token.text, token.line);
        const bool kept = !repeated && !elsewhere;
        columns.push_back(kept ? item : HCifDataItem());
        if (kept) {
            names.push_back(token.text);
            item->set_line(token.line);
            if (!pending_.empty()) {
                item->set_comment(0, pending_);
                pending_.clear();
            }
        }

        const std::int32_t name_line = token.line;
        for (;;) {
            tokeniser_.next(token);
            if (token.kind != CifComment || token.line != name_line)
                break;
            append_comment(pending_, token);
        }
        tokeniser_.push_front(std::move(token));
        if (kept && !pending_.empty()) {
            item->set_comment(1, pending_);
            pending_.clear();
        }
        gather_comments(pending_, token);
    }
    tokeniser_.push_front(token);
    if (token.kind == CifEnd)
        drop_last_empty_line();

    if (columns.empty()) {
        add(321, token.line);
        return HCifDataItem();
    }

    if (!names.empty()) {
        // add_loop marks the columns looped. None of them stands in another loop (those are not
        // kept), so it has no other loop of the block to search.
        // The loop keeps a list of its own size; the names themselves are moved, not copied.
        HCifLoop loop(new CifLoop(std::vector<std::string>(std::make_move_iterator(names.begin()),
                                                           std::make_move_iterator(names.end()))));
        if (!before.empty())
            loop->set_comment(1, before);
        if (!after.empty())
            loop->set_comment(2, after);
        if (!pending_.empty()) {
            loop->set_note(0, pending_);
            pending_.clear();
        }
        block_->add_loop(loop);
    } else {
        // No column of its own: the text around the header goes on to the next owner.
        pending_ = before + after + pending_;
    }

    if (!read_rows(columns))
        add(322, loop_line);
    return first_item;
}

bool CifParser::read_rows(const std::vector<HCifDataItem>& columns)
{
    // The values are gathered row by row and given to their columns at the end, each column's at
    // its exact size: a column that grew value by value would be copied each time it doubled.
    // The checks, and so the findings, still come in the order of the values. Which columns a
    // dictionary checks is known before the first row: the dictionary does not change while a
    // file is read.
    const std::size_t width = columns.size();
    // For each column, how many columns from it on need no check: those values can be taken in
    // a run, without a token each.
    unchecked_run_.assign(width, 0);
    bool any_checked = false;
    for (std::size_t c = width; c-- > 0;) {
        const bool checked = columns[c] && columns[c]->values_checked();
        any_checked = any_checked || checked;
        unchecked_run_[c] = checked ? 0 : 1 + (c + 1 < width ? unchecked_run_[c + 1] : 0);
    }
    loop_chars_.clear();
    loop_ends_.clear();

    // Comments and blank lines between rows are kept in pending_ until the next row is whole: the
    // ones after the last row, or before a row cut short, go on to the next owner. Those inside a
    // row are dropped.
    CifToken token;
    bool whole = true;
    for (;;) {
        const std::size_t c = loop_ends_.size() % width;
        if (unchecked_run_[c] > 0) {
            const std::size_t before = loop_ends_.size();
            const std::size_t most = any_checked ? unchecked_run_[c] : SIZE_MAX;
            const std::size_t taken = tokeniser_.take_plain_values(loop_chars_, loop_ends_, most);
            if (taken > 0) {
                if ((before + taken) / width > before / width)
                    pending_.clear();
                continue;
            }
        }
        const bool between_rows = c == 0 && !loop_ends_.empty();
        std::string_view text;
        std::int32_t value_line = 0;
        bool is_value = true;
        while (!tokeniser_.next_value(token, text, value_line)) {
            if (token.kind & comment_or_blank) {
                if (between_rows)
                    append_comment(pending_, token);
                continue;
            }
            is_value = token.kind == CifValueToken;
            text = token.text;
            value_line = token.line;
            break;
        }
        if (!is_value) {
            tokeniser_.push_front(std::move(token));
            whole = between_rows;
            break;
        }
        if (unchecked_run_[c] == 0 && columns[c]) {
            const int result = columns[c]->check(std::string(text));
            if (result != 0)
                add(cif_check_result_code(result), columns[c]->name(), value_line);
        }
        loop_ends_.push_back(loop_chars_.append(text));
        if (c + 1 == width)
            pending_.clear();
    }

    // A row cut short gives its values to the first columns only. The values are copied out in
    // blocks of 16 characters, which may reach past the last one.
    loop_chars_.room(16);
    const std::size_t count = loop_ends_.size();
    for (std::size_t c = 0; c < width; ++c)
        if (columns[c] && c < count)
            columns[c]->take_column(loop_chars_.data(), loop_ends_.data(), c, width,
                                    (count - c + width - 1) / width);
    return whole;
}
