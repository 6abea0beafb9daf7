#pragma once

#include "tests/framework/ogl/referee/Program.h"

#include <QImage>

#include <string>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

/// Small pictures with labels: what `Agl` draws on the left, what fixed-function OpenGL makes of the same calls on the
/// right, if it can.
class ContactSheet {
public:
    void Add(std::string p_label, QImage p_agl, QImage p_openGl = {});
    /// All of it, its labels drawn by p_backend in the current context.
    QImage Render(Backend& p_backend) const;

private:
    struct Cell {
        std::string label;
        QImage agl;
        QImage openGl;
    };

    std::vector<Cell> _cells;
};

/// Adds text in every alignment and everything of the library that draws itself.
void AddLibraryCells(ContactSheet& p_sheet, AglPlayer const& p_player);

/// Saves the sheet as a PNG, if reports are wanted.
void ReportPicture(std::string const& p_name, ContactSheet const& p_sheet, AglPlayer const& p_player);

} // namespace Qor::Chart::Ogl::Referee
