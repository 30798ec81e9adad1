#include "GraphicsObject.h"

#include "Archive.h"
#include "GraphicsObjectCommand.h"

#include <ostream>

namespace {

// Picking reports 0 for "nothing", so numbering starts at 1.
uint32_t next_number()
{
    static uint32_t counter = 0;
    return ++counter;
}

} // namespace

std::string GraphicsObject::style_name(RenderingStyle style)
{
    switch (style) {
    case StyleNone:
        return "Style: Hidden";
    case StyleWireframe:
        return "Style: Wireframe";
    case StyleStick:
        return "Style: Stick";
    case StyleBallAndStick:
        return "Style: Ball & Stick";
    case StyleSpacefill:
        return "Style: Spacefill";
    }
    return "Style: " + std::to_string(static_cast<int>(style));
}

GraphicsObject::GraphicsObject() : number_(next_number())
{
}

GraphicsObject::GraphicsObject(const GraphicsObject& other)
    : color_(other.color_), style_(other.style_), label_(other.label_), number_(next_number()),
      flags_(other.flags_)
{
}

void GraphicsObject::execute(GraphicsObjectCommand& command)
{
    command.execute(*this);
}

void GraphicsObject::unexecute(GraphicsObjectCommand& command)
{
    command.unexecute(*this);
}

void GraphicsObject::write(Archive& archive) const
{
    color_.write(archive);
    archive.write_int32(style_);
    archive.write_string(label_);
    archive.write_int32(static_cast<int32_t>(flags_));
}

void GraphicsObject::read(Archive& archive)
{
    RGBA color;
    color.read(archive);
    const int32_t style = archive.read_int32();
    std::string label = archive.read_string();
    const int32_t flags = archive.read_int32();
    color_ = color;
    style_ = static_cast<RenderingStyle>(style);
    label_ = std::move(label);
    flags_ = static_cast<uint32_t>(flags);
}

void GraphicsObject::print(std::ostream& out) const
{
    out << "color:" << color() << ", label:" << label() << ", style:" << static_cast<int>(style())
        << ", labelled:" << labelled() << ", selected:" << selected() << ", visible:" << visible()
        << ", active:" << active();
}

void GraphicsObject::copy_display_properties(const GraphicsObject& from)
{
    set_color(from.color());
    set_style(from.style());
    set_label(from.label());
    set_visible(from.visible());
    set_labelled(from.labelled());
    set_selected(from.selected());
}

void GraphicsObject::change_flags(uint32_t set_and_clear)
{
    flags_ = (flags_ | (set_and_clear & 0xFFFFu)) & ~(set_and_clear >> 16);
}

std::ostream& operator<<(std::ostream& out, const GraphicsObject& object)
{
    object.print(out);
    return out;
}
