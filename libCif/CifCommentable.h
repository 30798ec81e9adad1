#ifndef CIFWARD_CIFCOMMENTABLE_H
#define CIFWARD_CIFCOMMENTABLE_H

#include <map>
#include <memory>
#include <string>

// Comment texts kept by position so that a file read can be written back with its comments.
// The texts hold their own '#' and line ends. Most items carry none, so the map is made only
// when the first comment arrives.
class CifCommentable {
public:
    using Comments = std::map<int, std::string>;

    CifCommentable() = default;
    CifCommentable(const CifCommentable& other) { copy_comments(other); }
    CifCommentable& operator=(const CifCommentable& other)
    {
        copy_comments(other);
        return *this;
    }
    virtual ~CifCommentable() = default;

    void set_comment(int position, const std::string& text);
    const std::string& comment(int position) const;
    bool has_comment(int position) const { return comments_ && comments_->count(position) != 0; }
    void copy_comments(const CifCommentable& other);
    const Comments& comments() const;

private:
    std::unique_ptr<Comments> comments_;
};

#endif
