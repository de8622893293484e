// A form's geometry in cells.
//
// Controls whose middles are level share a row, and rows follow one another without gaps; borders of frames
// have rows of their own. Columns are in proportion to twips, but nothing covers its neighbour and no caption
// is cut: what comes behind makes room.
#pragma once

#include <vector>

#include "text_cells.h"
#include "toolkit/form.h"

namespace terminal {

struct Cells {
    int Row = 0;
    int Column = 0;
    int Rows = 0;
    int Columns = 0;
};

struct Placed {
    toolkit::Control* Control;
    Cells Place; // in the client area
};

struct Layout {
    std::vector<Placed> Controls; // the visible ones, from back to front
    int Rows = 0;
    int Columns = 0;

    const Placed* Find(const toolkit::Control* control) const;
};

// For a terminal of `columns`; a form that would have to be squeezed too much becomes wider than that.
Layout Lay_Out(const toolkit::Form& form, int columns);

// What a button without a caption shows instead of its picture, known by its name.
String Button_Caption(const toolkit::Control& button);

} // namespace terminal
