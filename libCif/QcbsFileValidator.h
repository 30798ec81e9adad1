#ifndef CIFWARD_QCBSFILEVALIDATOR_H
#define CIFWARD_QCBSFILEVALIDATOR_H

#include <string>

// Decides, before a file is opened, whether it is of the kind a window expects.
class QcbsFileValidator {
public:
    virtual ~QcbsFileValidator() = default;
    // 1: it is; 0: it does not look like one; -1: too little to tell, taken as one.
    virtual int validate(const std::string& filename) = 0;
};

#endif
