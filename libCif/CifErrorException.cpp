#include "CifErrorException.h"

CifErrorException::CifErrorException(const CifError& error) : std::runtime_error(error.text()), error_(error)
{
}
