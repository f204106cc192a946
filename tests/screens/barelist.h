#pragma once

#include <QLineEdit>
#include <QVBoxLayout>

#include "screens/listscreen.h"
#include "widgets/activeresize.h"
#include "widgets/adodc.h"
#include "widgets/drawnframe.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

/// A list screen that has nothing of its own but its controls.
class BareList : public ListScreen {
public:
    explicit BareList(const ListTraits& traits) : ListScreen(traits) {
        auto* outer = new QVBoxLayout(this);
        outer->setContentsMargins({});
        outer->addWidget(&resizing);
        auto* page = new QVBoxLayout(&resizing);
        page->setContentsMargins({});
        page->addWidget(&frame);
        auto* inside = new QVBoxLayout(&frame);
        inside->setContentsMargins(8, 8, 8, 8);
        inside->addWidget(&grid);
        grid.setObjectName("TDBGrid1");
        frame.setCaption("LISTE");
        frame.setLook(FrameRole::page);
        selected.hide();
        setUpList({&grid, &data, &selected, &resizing, &frame});
    }

    using ListScreen::connectData;
    using ListScreen::filter;
    using ListScreen::showRows;

    ActiveResize resizing;
    vkFrame frame;
    TDBGrid grid;
    Adodc data;
    QLineEdit selected{this};
};

}  // namespace kovanix
