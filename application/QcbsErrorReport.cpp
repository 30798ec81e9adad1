#include "QcbsErrorReport.h"

#include "Cif.h"
#include "CifMessageTable.h"
#include "QcbsCifText.h"
#include "QcbsErrorListView.h"
#include "QcbsOutputPane.h"
#include "QcbsRichTextEdit.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

// The code of the lines the report adds itself: it has no help page.
constexpr int reportNote = 300;

// The engine's texts hold the bytes it was given: UTF-8 from the editor, but a byte string that
// is not UTF-8 can only have come from an older Latin-1 file.
QString fromEngine(const std::string& text)
{
    return decodeCifText(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// The block whose heading is the last one at or above `line`, as the reader numbers lines.
const CifDataBlock* blockAtLine(const Cif& cif, int line)
{
    const CifDataBlock* found = nullptr;
    for (const HCifDataBlock& block : cif) {
        if (block->line() == -1)
            continue;
        if (block->line() > line)
            break;
        found = block.get();
    }
    return found;
}

} // namespace

QcbsErrorReport::QcbsErrorReport(QcbsErrorListView* list, QcbsOutputPane* pane, QcbsRichTextEdit* editor)
    : list_(list), pane_(pane), editor_(editor)
{
}

void QcbsErrorReport::report(const Cif& cif, int maxConsecutive)
{
    list_->clear();
    const CifErrorList& errors = *cif.errors();
    if (errors.is_empty()) {
        pane_->write(QStringLiteral("No errors, warnings or remarks."));
        return;
    }

    list_->setUpdatesEnabled(false);
    Run warnings, errorRun;
    for (const CifError& error : errors) {
        const int severity = error.severity();
        if (severity == CifRemark) {
            reportRemark(cif, error);
        } else if (severity == CifWarning) {
            reportWarning(error, warnings, maxConsecutive);
        } else if (severity == CifErrorSeverity) {
            if (!reportError(error, errorRun, maxConsecutive))
                break;
        } else {
            pane_->write(QStringLiteral("(misc error/info): ") + fromEngine(error.message()));
        }
    }
    list_->setUpdatesEnabled(true);

    pane_->write(QStringLiteral("Total errors: %1; warnings: %2; remarks: %3")
                     .arg(errors.count_of_severity(CifErrorSeverity))
                     .arg(errors.count_of_severity(CifWarning))
                     .arg(errors.count_of_severity(CifRemark)));
}

void QcbsErrorReport::reportRemark(const Cif& cif, const CifError& error)
{
    list_->addRemark(fromEngine(error.message()), remarkLine(cif, error), static_cast<int>(error.code));
}

void QcbsErrorReport::reportWarning(const CifError& error, Run& run, int maxConsecutive)
{
    // Validation reply items (_vrf_...) answer an outside checker's alerts and no dictionary defines
    // them; a warning for each would bury the real ones.
    if (error.code == 320 && error.first.find("_vrf") != std::string::npos)
        return;
    if (error.line == run.lastLine + 1)
        ++run.length;
    else if (error.line > run.lastLine + 1)
        run.length = 1;
    if (run.length <= maxConsecutive)
        list_->addWarning(fromEngine(error.message()), error.line, static_cast<int>(error.code));
    run.lastLine = error.line;
    if (run.length == maxConsecutive + 1) {
        list_->addWarning(QStringLiteral("(warnings omitted)"), error.line, reportNote);
        ++run.length;
    }
}

bool QcbsErrorReport::reportError(const CifError& error, Run& run, int maxConsecutive)
{
    list_->addError(fromEngine(error.message()), error.line, static_cast<int>(error.code));
    if (error.line == run.lastLine + 1)
        ++run.length;
    else if (error.line > run.lastLine + 1)
        run.length = 0;
    run.lastLine = error.line;
    if (run.length < maxConsecutive)
        return true;
    pane_->write(QStringLiteral("Check stopped at line ") + QString::number(error.line) +
                     QStringLiteral(": fix previous errors first."),
                 false);
    pane_->write(QStringLiteral("(You can change this limit in the preferences.)"));
    list_->addError(QStringLiteral("(check stopped)"), error.line + 1, reportNote);
    return false;
}

int QcbsErrorReport::remarkLine(const Cif& cif, const CifError& error) const
{
    // The mandatory check reports a missing value at its block's heading; the line of the item
    // itself, where the user has to type, is more use.
    if ((error.code != 303 && error.code != 304) || !editor_ || error.first.empty())
        return error.line;
    const QTextBlock from = editor_->document()->findBlockByNumber(error.line - 1);
    if (error.line < 1 || !from.isValid())
        return error.line;
    // The document is searched, not the editor, so that the user's cursor, selection and scroll
    // position stay as they are.
    const QTextCursor found = editor_->document()->find(fromEngine(error.first), from.position());
    if (found.isNull())
        return error.line;
    const int foundLine = found.blockNumber() + 1;
    const CifDataBlock* block = blockAtLine(cif, error.line);
    return block && block == blockAtLine(cif, foundLine) ? foundLine : error.line;
}
