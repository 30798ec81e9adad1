#include "CifCommentable.h"

void CifCommentable::set_comment(int position, const std::string& text)
{
    if (text.empty()) {
        if (comments_)
            comments_->erase(position);
        return;
    }
    if (!comments_)
        comments_ = std::make_unique<Comments>();
    (*comments_)[position] = text;
}

const std::string& CifCommentable::comment(int position) const
{
    static const std::string none;
    if (!comments_)
        return none;
    auto it = comments_->find(position);
    return it == comments_->end() ? none : it->second;
}

void CifCommentable::copy_comments(const CifCommentable& other)
{
    if (this == &other)
        return;
    comments_ =
        other.comments_ && !other.comments_->empty() ? std::make_unique<Comments>(*other.comments_) : nullptr;
}

const CifCommentable::Comments& CifCommentable::comments() const
{
    static const Comments none;
    return comments_ ? *comments_ : none;
}
