#include "ProxyAtom.h"

#include "MoleculeError.h"

HAtom ProxyAtom::real(const char* question) const
{
    HAtom atom = real_.lock();
    if (!atom)
        throw molecule_error(std::string("ProxyAtom::") + question + " - atom is no longer valid");
    return atom;
}
