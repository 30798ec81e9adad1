#ifndef CIFWARD_QCBSWIZARDPAGE_H
#define CIFWARD_QCBSWIZARDPAGE_H

#include "QcbsWizardField.h"

#include <QWizardPage>
#include <deque>

class CifDataBlock;
class QcbsWizard;
struct QcbsContactRecord;
class QGridLayout;
class QLabel;
class QVBoxLayout;

// A page of a wizard: a heading, then rows of a label, an entry and a help button, one row per
// data name. The wizard loads the fields from its block each time the page appears and stores
// them back when the user leaves it, forwards or back.
class QcbsWizardPage : public QWizardPage {
    Q_OBJECT
public:
    QcbsWizardPage(const QString& titleStem, const QString& heading = {}, QWidget* parent = nullptr);

    // The title is the stem, the position, " of ", the count and a closing bracket.
    void setPosition(int position, int count);

    virtual void loadFields(const CifDataBlock& block);
    virtual void storeFields(CifDataBlock& block);

    // The page that Next leads to, where it is not the one added after this.
    void setNextId(int id) { nextId_ = id; }
    int nextId() const override { return nextId_ >= 0 ? nextId_ : QWizardPage::nextId(); }

    const std::deque<QcbsWizardField>& fields() const { return fields_; }
    QWidget* entry(const QString& dataName) const;

signals:
    // The pages that follow this one depend on a choice made on it.
    void pathChanged();
    void dataItemHelpRequested(const QString& name);

protected:
    QVBoxLayout* content() const { return content_; }
    // The wizard that shows this page; null before it is added to one.
    QcbsWizard* frame() const;
    // The contact record the wizard was given, or an empty one.
    const QcbsContactRecord& contact() const;
    // Adds a row for `dataName`; the page takes the entry.
    QcbsWizardField& addField(const QString& label, const QString& dataName, QWidget* entry);
    // A row whose entry the page reads and writes itself.
    void addRow(const QString& label, const QString& dataName, QWidget* entry);
    QGridLayout* rows() const { return rows_; }
    std::deque<QcbsWizardField>& editableFields() { return fields_; }

private:
    QString titleStem_;
    QVBoxLayout* content_;
    QGridLayout* rows_;
    std::deque<QcbsWizardField> fields_;
    int nextId_ = -1;
};

#endif
