#pragma once

#include "GraphicsHandles.h"
#include "RGBA.h"

#include <cstdint>
#include <iosfwd>
#include <string>

class Archive;

// Everything that can be drawn: a colour, a rendering style, a label, and the flags active,
// visible, selected and labelled. Each object has a number of its own, never shared with any
// other object of the process, which the renderer uses to name it when picking.
class GraphicsObject {
public:
    // One bit each, so that a set of styles fits in a word.
    enum RenderingStyle : int32_t {
        StyleNone = 0,
        StyleWireframe = 1,
        StyleStick = 2,
        StyleBallAndStick = 4,
        StyleSpacefill = 8,
    };
    enum ColorMode : int32_t {
        ColorByElement = 0,
        ColorByColor = 1,
        ColorBySymmetryEquivalence = 2,
        ColorByMolecule = 3,
        ColorByActiveElement = 4,
    };

    // The text the command history shows for a style: "Style: Hidden", "Style: Wireframe", ...
    static std::string style_name(RenderingStyle style);

    GraphicsObject();
    // A copy takes the display properties and a number of its own.
    GraphicsObject(const GraphicsObject& other);
    GraphicsObject& operator=(const GraphicsObject&) = delete;

    virtual ~GraphicsObject() = default;
    virtual bool active() const { return (flags_ & ActiveBit) != 0; }
    virtual void set_active(bool on) { set_flag(ActiveBit, on); }
    virtual bool visible() const { return (flags_ & VisibleBit) != 0; }
    virtual void set_visible(bool on) { set_flag(VisibleBit, on); }
    virtual RGBA color() const { return color_; }
    virtual void set_color(const RGBA& color) { color_ = color; }
    virtual RenderingStyle style() const { return style_; }
    virtual void set_style(RenderingStyle style) { style_ = style; }
    virtual bool labelled() const { return (flags_ & LabelledBit) != 0; }
    virtual void set_labelled(bool on) { set_flag(LabelledBit, on); }
    virtual std::string label() const { return label_; }
    virtual void set_label(const std::string& label) { label_ = label; }
    virtual bool selected() const { return (flags_ & SelectedBit) != 0; }
    virtual void set_selected(bool on) { set_flag(SelectedBit, on); }
    virtual void execute(GraphicsObjectCommand& command);
    virtual void unexecute(GraphicsObjectCommand& command);
    // Colour, style, label and flags, in that order.
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
    // "color:", ", label:", ", style:", ", labelled:", ", selected:", ", visible:", ", active:".
    virtual void print(std::ostream& out) const;

    uint32_t number() const { return number_; }
    // Colour, style, label, visibility, labelled and selected state of another object of the
    // same kind; the active flag stays this object's own, since it tells where the object stands.
    virtual void copy_display_properties(const GraphicsObject& from);

private:
    enum Flag : uint32_t { ActiveBit = 1, VisibleBit = 2, SelectedBit = 4, LabelledBit = 8 };
    // The word carries the bits to set in its low half and those to clear in its high half.
    void change_flags(uint32_t set_and_clear);
    void set_flag(Flag bit, bool on) { change_flags(on ? bit : bit << 16); }

    RGBA color_;
    RenderingStyle style_ = StyleWireframe;
    std::string label_;
    uint32_t number_;
    uint32_t flags_ = VisibleBit;
};

std::ostream& operator<<(std::ostream& out, const GraphicsObject& object);
