#pragma once

namespace kovanix {

class Screen;
class TDBGrid;

/// Opens the preview of the grid's printed pages in front of a screen and returns at once; printing is done
/// from there. What stands around the rows is the grid's printInfo(). The rows are those that the grid shows
/// now: the preview doesn't follow it.
void printPreview(TDBGrid& grid, Screen& opener);

}  // namespace kovanix
