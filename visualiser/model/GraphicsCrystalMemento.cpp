#include "GraphicsCrystalMemento.h"

#include "GraphicsCrystal.h"
#include "LogAddress.h"
#include "Logger.h"

namespace {

template <class T, class Copy>
std::vector<T> duplicate(const char* what, const std::vector<T>& list, const void* to, Copy copy)
{
    logDebug(3, "GraphicsCrystalMemento::duplicate_%s copying %d items to %08X", what,
             static_cast<int>(list.size()), log_address(to));
    std::vector<T> out;
    out.reserve(list.size());
    for (const T& object : list)
        out.push_back(copy(*object));
    return out;
}

} // namespace

GraphicsCrystalMemento::GraphicsCrystalMemento(const GraphicsCrystal& x)
    : GraphicsObject(x), crystal_(x.crystal() ? NewCrystalMemento(*x.crystal()) : NewCrystalMemento()),
      cell_(new GraphicsCell(*x.cell())), settings_(x.d_->settings)
{
    atoms_ = duplicate("atoms", x.atoms(), this,
                       [](const GraphicsAtom& a) { return HGraphicsAtom(new GraphicsAtom(a)); });
    bonds_ = duplicate("bonds", x.bonds(), this,
                       [](const GraphicsBond& b) { return HGraphicsBond(new GraphicsBond(b)); });
    primitives_ =
        duplicate("primitives", x.primitives(), this, [](const GraphicsPrimitive& p) { return p.clone(); });
    contacts_ = duplicate("contacts", x.contacts(), this,
                          [](const GraphicsContact& c) { return HGraphicsContact(new GraphicsContact(c)); });
}
