#include "RendererInteractions.h"

HRendererInteractions RendererInteractions::defaults()
{
    static const HRendererInteractions table = [] {
        HRendererInteractions t(new RendererInteractions);
        t->add(ActionRotateXY, LeftButton);
        t->add(ActionRotateZ, LeftButton | Shift);
        t->add(ActionTranslate, MiddleButton);
        t->add(ActionTranslate, LeftButton | Control);
        t->add(ActionZoom, RightButton);
        t->add(ActionPerspective, RightButton | Shift);
        t->add(ActionPick, LeftButton);
        t->add(ActionPickExtend, LeftButton | Shift);
        t->add(ActionContextMenu, RightButton);
        return t;
    }();
    return table;
}

int RendererInteractions::combination(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    int bits = 0;
    if (buttons & Qt::LeftButton)
        bits |= LeftButton;
    if (buttons & Qt::RightButton)
        bits |= RightButton;
    if (buttons & Qt::MiddleButton)
        bits |= MiddleButton;
    if (modifiers & Qt::ShiftModifier)
        bits |= Shift;
    if (modifiers & Qt::ControlModifier)
        bits |= Control;
    if (modifiers & Qt::AltModifier)
        bits |= Alt;
    return bits;
}

bool RendererInteractions::triggers(Action action, int combination) const
{
    const auto found = table_.find(action);
    return found != table_.end() && found->second.count(combination) > 0;
}

void RendererInteractions::add(Action action, int combination)
{
    table_[action].insert(combination);
}

void RendererInteractions::remove(Action action, int combination)
{
    const auto found = table_.find(action);
    if (found != table_.end())
        found->second.erase(combination);
}
