#include "Site.h"

#include "Archive.h"

#include <ostream>

void Site::write(Archive& archive) const
{
    for (const Vector3D* v : {&frac, &uncertainty})
        for (int i = 0; i < 3; ++i)
            archive.write_double((*v)[i]);
    archive.write_double(sof);
}

void Site::read(Archive& archive)
{
    Site s;
    for (Vector3D* v : {&s.frac, &s.uncertainty})
        for (int i = 0; i < 3; ++i)
            (*v)[i] = archive.read_double();
    s.sof = archive.read_double();
    *this = s;
}

void Site::print(std::ostream& out) const
{
    out << ", frac: " << frac << ", uncertainty: " << uncertainty << ", sof: " << sof;
}

std::ostream& operator<<(std::ostream& out, const HSite& site)
{
    if (site)
        site->print(out);
    else
        out << "<zero handle>";
    return out;
}
