// Pictures of the first structure of a CIF in wireframe, ball-and-stick and spacefill, with the
// cell and its axis labels and the labels of the atoms other than hydrogen, for a person to
// compare with another program's drawing. Usage: visualiser_pictures FILE.cif PREFIX
#include "CifFile.h"
#include "GraphicsCell.h"
#include "GraphicsCrystal.h"
#include "OffscreenView.h"

#include <QGuiApplication>
#include <fstream>
#include <iostream>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 3) {
        std::cerr << "usage: visualiser_pictures FILE.cif PREFIX\n";
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) {
        std::cerr << "visualiser_pictures: cannot open " << argv[1] << "\n";
        return 1;
    }
    try {
        CifFile file;
        file.read(in);
        const HGraphicsCrystal crystal(
            new GraphicsCrystal(HNewCrystal(new NewCrystal(file.crystal_maker()))));
        crystal->cell()->set_visible(true);
        crystal->cell()->set_labelled(true);
        crystal->set_labelled(GraphicsCrystal::ActionShow, GraphicsCrystal::FilterNonHydrogens);
        OffscreenView view(700, 700);
        view.renderer().addGraphicsCrystal(crystal);
        view.renderer().setUseBackdrop(true);
        const struct {
            GraphicsObject::RenderingStyle style;
            const char* name;
        } styles[] = {{GraphicsObject::StyleWireframe, "wireframe"},
                      {GraphicsObject::StyleBallAndStick, "ball-and-stick"},
                      {GraphicsObject::StyleSpacefill, "spacefill"}};
        for (const auto& s : styles) {
            crystal->set_style(s.style, GraphicsCrystal::FilterAll);
            view.renderer().graphicsCrystalUpdated(crystal);
            const std::string out = std::string(argv[2]) + "-" + s.name + ".png";
            if (!view.paint().save(QString::fromStdString(out))) {
                std::cerr << "visualiser_pictures: cannot write " << out << "\n";
                return 1;
            }
            std::cout << out << "\n";
        }
    } catch (const std::exception& e) {
        std::cerr << "visualiser_pictures: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
