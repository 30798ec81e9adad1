#include "Subject.h"

#include "LogAddress.h"
#include "Logger.h"
#include "Observer.h"

#include <algorithm>
#include <typeinfo>

void Subject::set_changed()
{
    logDebug(3, "Subject::set_changed %s at %08X", typeid(*this).name(), log_address(this));
    changed_ = true;
}

void Subject::clear_changed()
{
    logDebug(3, "Subject::clear_changed %s at %08X", typeid(*this).name(), log_address(this));
    changed_ = false;
}

void Subject::connect(Observer* observer)
{
    logDebug(3, "Subject::connect %s at %08X to %s at %08X", typeid(*this).name(), log_address(this),
             typeid(*observer).name(), log_address(observer));
    observers_.push_back(observer);
}

void Subject::disconnect(Observer* observer)
{
    logDebug(3, "Subject::disconnect %s at %08X to %s at %08X", typeid(*this).name(), log_address(this),
             typeid(*observer).name(), log_address(observer));
    observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

void Subject::notify()
{
    logDebug(3, "Subject::notify %s at %08X", typeid(*this).name(), log_address(this));
    if (!changed_) {
        logDebug(3, "Subject::notify %s at %08X - changed was false - nothing to notify",
                 typeid(*this).name(), log_address(this));
        return;
    }
    for (Observer* observer : observers_) {
        logDebug(3, "Subject::notify to %s at %08X", typeid(*observer).name(), log_address(observer));
        observer->update(*this);
    }
    changed_ = false;
}
