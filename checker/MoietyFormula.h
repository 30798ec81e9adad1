#ifndef CIFWARD_MOIETYFORMULA_H
#define CIFWARD_MOIETYFORMULA_H

#include "CrystalMaker.h"

#include <map>
#include <string>
#include <vector>

// A moiety formula: the distinct molecules of a structure, each with its formula in Hill order
// and how many there are per formula unit, as a CIF gives it: "C12 H10 N2 O, 2(H2 O)". Counts
// are relative to the largest molecule, which counts 1.
class MoietyFormula {
public:
    struct Part {
        std::map<std::string, double> elements;
        double count = 1.0;
        std::string formula() const;
    };

    // From the molecules of a crystal maker, each counted by the share of it that the asymmetric
    // unit holds, its atoms by their occupancies (so that the parts of a disorder add up). A
    // polymer counts by its repeat.
    static MoietyFormula computed(const CrystalMaker& maker);
    // Reads a formula as a CIF writes it; charges and the "n" of a polymer are ignored. A text
    // that holds no formula gives no parts.
    static MoietyFormula parse(const std::string& text);

    const std::vector<Part>& parts() const { return parts_; }
    std::string text() const;
    // The same molecules in the same proportions (within 0.01); or, for a given formula that
    // lumps moieties together, the same proportions of the elements.
    enum Agreement { Differs, Agrees, AgreesInSum };
    Agreement compare(const MoietyFormula& given) const;
    // The share of each element among all atoms of the formula.
    std::map<std::string, double> proportions() const;

private:
    // Each part in lowest terms, its count scaled to match.
    MoietyFormula reduced() const;
    // Merges parts of the same formula and scales the counts so that the largest part counts 1.
    void normalise();

    std::vector<Part> parts_;
};

#endif
