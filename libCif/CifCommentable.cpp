#include "CifCommentable.h"

void CifCommentable::set_comment(int position, const std::string& text)
{
    if (text.empty())
        comments_.erase(position);
    else
        comments_[position] = text;
    comments_changed();
}

const std::string& CifCommentable::comment(int position) const
{
    static const std::string none;
    auto it = comments_.find(position);
    return it == comments_.end() ? none : it->second;
}
