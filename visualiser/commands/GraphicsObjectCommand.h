#pragma once

#include "GraphicsHandles.h"

#include <string>

class GraphicsObject;

// A change of one display property, applied to any number of objects: each execute saves the
// object's old value by its number, so one command serves a whole selection and its undo.
class GraphicsObjectCommand {
public:
    explicit GraphicsObjectCommand(const std::string& name) : name_(name) {}
    virtual ~GraphicsObjectCommand() = default;
    virtual void execute(GraphicsObject& object) = 0;
    virtual void unexecute(GraphicsObject& object) = 0;
    virtual HGraphicsObjectCommand clone() const = 0;

    const std::string& name() const { return name_; }

private:
    std::string name_;
};
