#ifndef CIFWARD_QCBSCORECIFFILEVALIDATOR_H
#define CIFWARD_QCBSCORECIFFILEVALIDATOR_H

#include "QcbsFileValidator.h"

// A cheap look at the first lines of a file for the words that CIFs are made of, so that a
// file of another kind is questioned before it is loaded into the editor.
class QcbsCoreCifFileValidator : public QcbsFileValidator {
public:
    int validate(const std::string& filename) override;

    int hits = -1;             // keyword occurrences counted; 0 once the file is open
    int required_hits = 4;     // hits that prove a CIF
    int small_file_lines = 20; // a file of fewer lines is judged leniently
    int small_file_hits = 1;   // hits that are enough in a small file
    int max_lines = 1000;      // lines looked at
};

#endif
