#ifndef CIFWARD_QCBSWIZARDFIELD_H
#define CIFWARD_QCBSWIZARDFIELD_H

#include <QString>

class CifDataBlock;
class QWidget;

// One data name of a wizard page and the entry that edits it: a line, a text box or a choice.
// The block's value is remembered as shown, so that leaving a page writes only what the user
// changed and an untouched item keeps its text and quoting exactly.
class QcbsWizardField {
public:
    QcbsWizardField(const QString& dataName, QWidget* entry);

    const QString& dataName() const { return dataName_; }
    QWidget* entry() const { return entry_; }
    // The entry's text; the "?" of a choice reads as empty.
    QString text() const;
    // A choice that lacks the text (compared without regard to case) shows its first row.
    void setText(const QString& text);
    bool changed() const { return text() != loaded_; }

    // Shows the value of `from`, by default the field's own name. Absent and "?" show as empty;
    // a looped item shows its first value, read-only, since one entry cannot edit a column.
    void load(const CifDataBlock& block, const QString& from = {});
    // Writes a changed value under the field's name; a cleared value becomes "?", so that the
    // item stays and says it is unknown.
    void store(CifDataBlock& block) const;

    // The value as a field shows it: empty for absent or "?".
    static QString value(const CifDataBlock& block, const QString& name);
    static void setValue(CifDataBlock& block, const QString& name, const QString& value);

private:
    QString dataName_;
    QWidget* entry_;
    QString loaded_;
    bool looped_ = false;
};

#endif
