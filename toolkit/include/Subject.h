#pragma once

#include <vector>

class Observer;

// Something that others watch: a change is marked with set_changed and announced by notify,
// which calls each observer in the order they connected and clears the mark. notify with nothing
// marked calls nobody. An observer must not disconnect itself from inside update.
class Subject {
public:
    virtual void set_changed();
    virtual void clear_changed();
    virtual ~Subject() = default;
    virtual void connect(Observer* observer);
    virtual void disconnect(Observer* observer);
    virtual bool has_changed() const { return changed_; }
    virtual void notify();

private:
    std::vector<Observer*> observers_;
    bool changed_ = false;
};
