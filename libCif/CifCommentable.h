#ifndef CIFWARD_CIFCOMMENTABLE_H
#define CIFWARD_CIFCOMMENTABLE_H

#include <map>
#include <string>

// Comment texts kept by position so that a file read can be written back with its comments.
// The texts hold their own '#' and line ends.
class CifCommentable {
public:
    virtual ~CifCommentable() = default;

    void set_comment(int position, const std::string& text);
    const std::string& comment(int position) const;
    bool has_comment(int position) const { return comments_.count(position) != 0; }
    void copy_comments(const CifCommentable& other) { comments_ = other.comments_; }
    const std::map<int, std::string>& comments() const { return comments_; }

protected:
    // Reserved for the comment-bearing classes.
    virtual void comments_changed() {}

private:
    std::map<int, std::string> comments_;
};

#endif
