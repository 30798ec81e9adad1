#pragma once

#include "MoleculeHandles.h"
#include "Vector3D.h"

#include <iosfwd>

class Archive;

// Where an atom stands: fractional coordinates with their standard uncertainties, and how much
// of the site it fills.
class Site {
public:
    Vector3D frac;
    Vector3D uncertainty;
    double sof = 1.0;

    Site() = default;
    Site(const Vector3D& frac, const Vector3D& uncertainty = {}, double sof = 1.0)
        : frac(frac), uncertainty(uncertainty), sof(sof)
    {
    }

    void write(Archive& archive) const;
    void read(Archive& archive);
    void print(std::ostream& out) const;
};

// ", frac: ", ", uncertainty: " and ", sof: ", or "<zero handle>".
std::ostream& operator<<(std::ostream& out, const HSite& site);
