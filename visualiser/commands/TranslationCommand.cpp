#include "TranslationCommand.h"

Transformation TranslationCommand::changed(const Transformation& before) const
{
    Transformation after = before;
    after.set_trans(before.trans() + by_);
    return after;
}
