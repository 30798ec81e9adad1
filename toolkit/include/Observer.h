#pragma once

class Subject;

// Told when a subject it watches has changed.
class Observer {
public:
    virtual ~Observer() = default;
    virtual void update(Subject& subject) = 0;
};
