#pragma once

#include "THandle.h"

#include <Qt>
#include <map>
#include <set>

class RendererInteractions;
using HRendererInteractions = THandle<RendererInteractions>;

// Which mouse buttons and keys trigger which movement of the view or which kind of click. A
// combination is a bit set of buttons and modifiers, so that a user's own table can bind any of
// them; views share one table by handle.
class RendererInteractions {
public:
    enum Action {
        ActionRotateXY = 1,
        ActionRotateZ = 2,
        ActionTranslate = 3,
        ActionZoom = 4,
        ActionPerspective = 5,
        ActionPick = 6,
        ActionPickExtend = 7,
        ActionPickOther = 8,
        ActionContextMenu = 9,
    };
    enum Combination : int {
        LeftButton = 1,
        RightButton = 2,
        MiddleButton = 4,
        Shift = 8,
        Control = 16,
        Alt = 32,
    };

    // Left drags turn, Shift turns about the screen's normal, middle or Control moves, right
    // zooms; a left click picks and a right click asks for a menu.
    static HRendererInteractions defaults();
    // The buttons held (or just released) and the keys down, as a combination.
    static int combination(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

    bool triggers(Action action, int combination) const;
    void add(Action action, int combination);
    void remove(Action action, int combination);

private:
    std::map<Action, std::set<int>> table_;
};
