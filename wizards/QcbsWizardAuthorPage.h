#ifndef CIFWARD_QCBSWIZARDAUTHORPAGE_H
#define CIFWARD_QCBSWIZARDAUTHORPAGE_H

#include "QcbsWizardPage.h"

#include <string>
#include <vector>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// The authors, one at a time: the loop of _publ_author_name and _publ_author_address is read
// into a list, edited, and written back as a loop. Other columns of that loop (e-mail, footnote)
// travel with their author, so that deleting an author deletes the whole row.
class QcbsWizardAuthorPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardAuthorPage(QWidget* parent = nullptr);

    void loadFields(const CifDataBlock& block) override;
    void storeFields(CifDataBlock& block) override;

    int authorCount() const { return static_cast<int>(authors_.size()); }
    QLineEdit* familyEdit() const { return family_; }
    QLineEdit* givenEdit() const { return given_; }
    QPushButton* previousButton() const { return previous_; }
    QPushButton* nextButton() const { return next_; }
    QPushButton* addButton() const { return add_; }
    QPushButton* deleteButton() const { return delete_; }

    // "Family, Given" as CIFs write an author's name; a name without a comma is a family name.
    static QString joinName(const QString& family, const QString& given);

    void addAuthor();
    void deleteAuthor();
    void nextAuthor();
    void previousAuthor();

private:
    struct Author {
        QString family, given, address;
        std::vector<std::string> others;
        bool blank() const { return family.isEmpty() && given.isEmpty(); }
        bool operator==(const Author& o) const
        {
            return family == o.family && given == o.given && address == o.address && others == o.others;
        }
    };

    void keepShown();
    void appendBlank();
    void showAuthor(int index);
    std::vector<Author> named() const;

    std::vector<Author> authors_;
    std::vector<Author> loaded_;
    std::vector<std::string> otherColumns_;
    int current_ = 0;
    QLineEdit* family_;
    QLineEdit* given_;
    QPlainTextEdit* address_;
    QLabel* position_;
    QPushButton* previous_;
    QPushButton* next_;
    QPushButton* add_;
    QPushButton* delete_;
};

#endif
