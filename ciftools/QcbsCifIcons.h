#ifndef CIFWARD_QCBSCIFICONS_H
#define CIFWARD_QCBSCIFICONS_H

#include <QIcon>

// The small pictures of the CIF tools, drawn by the program itself at several sizes so that they
// stay sharp at 16 pixels and on screens of high pixel density alike. Each is drawn once, on
// first use, and shared.
class QcbsCifIcons {
public:
    // The pictures of the box view's items, by the index the items keep.
    enum BoxIcon {
        DataItem = 0,
        CategoryClosed = 1,
        CategoryOpen = 2,
        FailingItem = 3,
        BlockClosed = 4,
        BlockOpen = 5,
        MissingItem = 6,
        LoopedItem = 7,
        BoxIconCount = 8
    };

    static QIcon boxIcon(int index);
    // A question mark in a blue disc: the item help.
    static QIcon help();
    // An exclamation mark in a yellow triangle: a value that fails its check.
    static QIcon warning();
};

#endif
