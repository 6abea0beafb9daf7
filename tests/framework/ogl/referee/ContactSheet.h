#pragma once

#include "tests/framework/ogl/referee/Program.h"

#include <QImage>

#include <functional>
#include <string>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

/// Small pictures with labels: what `Agl` draws on the left, what fixed-function OpenGL makes of the same calls on the
/// right, if it can.
class ContactSheet {
public:
    explicit ContactSheet(AglPlayer& p_player) : _player(p_player) {}
    void Add(std::string p_label, QImage p_agl, QImage p_openGl = {});
    /// Adds text in every alignment and everything of the library that draws itself, and expects that something is to be
    /// seen of each.
    void AddLibrary();
    /// All of it, with labels.
    QImage Render() const;

private:
    struct Cell {
        std::string label;
        QImage agl;
        QImage openGl;
    };

    /// Draws with pixels as coordinates.
    void AddDrawn(std::string const& p_label, std::function<void(Agl&)> const& p_draw);

    AglPlayer& _player;
    std::vector<Cell> _cells;
};

} // namespace Qor::Chart::Ogl::Referee
