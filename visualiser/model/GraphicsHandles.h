#pragma once

#include "THandle.h"

#include <vector>

// The handles by which the drawable objects are shared between the model, the renderer and the
// commands. Every file that lets a handle go includes the class's own header, so the object is
// deleted as what it is.
class GraphicsObject;
class GraphicsAtom;
class GraphicsBond;
class GraphicsContact;
class GraphicsCell;
class GraphicsPrimitive;
class GraphicsCrystal;
class GraphicsCrystalMemento;
class GraphicsMonitor;
class GraphicsObjectCommand;
struct GraphicsCrystalAtomPair;

using HGraphicsObject = THandle<GraphicsObject>;
using HGraphicsAtom = THandle<GraphicsAtom>;
using HGraphicsBond = THandle<GraphicsBond>;
using HGraphicsContact = THandle<GraphicsContact>;
using HGraphicsCell = THandle<GraphicsCell>;
using HGraphicsPrimitive = THandle<GraphicsPrimitive>;
using HGraphicsCrystal = THandle<GraphicsCrystal>;
using HGraphicsMonitor = THandle<GraphicsMonitor>;
using HGraphicsObjectCommand = THandle<GraphicsObjectCommand>;
using HGraphicsCrystalAtomPair = THandle<GraphicsCrystalAtomPair>;
