#ifndef CIFWARD_QCBSERRORREPORT_H
#define CIFWARD_QCBSERRORREPORT_H

class Cif;
class CifError;
class QcbsErrorListView;
class QcbsOutputPane;
class QcbsRichTextEdit;

// Puts the findings of a checked document into the error list and the output pane. Long runs of
// findings on consecutive lines are cut short: a run of warnings is summed up in one line, and a
// run of errors stops the report, since the errors after it are mostly echoes of the first.
class QcbsErrorReport {
public:
    // The editor holds the checked text; it may be null, and then remarks stay where the engine
    // put them.
    QcbsErrorReport(QcbsErrorListView* list, QcbsOutputPane* pane, QcbsRichTextEdit* editor);

    // `maxConsecutive` is the user's limit on runs: a longer run of warning lines is cut short, and
    // an error line that far past the first of its run stops the report.
    void report(const Cif& cif, int maxConsecutive);

private:
    struct Run {
        int lastLine = -99;
        int length = 0;
    };

    void reportRemark(const Cif& cif, const CifError& error);
    void reportWarning(const CifError& error, Run& run, int maxConsecutive);
    // False when the run of errors has reached the limit and the report stops.
    bool reportError(const CifError& error, Run& run, int maxConsecutive);
    int remarkLine(const Cif& cif, const CifError& error) const;

    QcbsErrorListView* list_;
    QcbsOutputPane* pane_;
    QcbsRichTextEdit* editor_;
};

#endif
