#pragma once

#include <array>

#include "appearance/totalcolors.h"
#include "desktop/commondialog.h"
#include "screens/openedscreen.h"
#include "ui_toplamtema.h"

namespace kovanix {

/// The colours of the total on the sales screen: five colours, four presets, two saved sets, and the switch
/// that says whether the five are kept. Every change shows at once on the real total and on this screen's
/// preview.
class toplamtema : public OpenedScreen {
    Q_OBJECT

public:
    toplamtema();
    ~toplamtema() override;

    void form_load() override;
    void form_activate() override;

    /// Shows the colours of the real total on the swatches.
    void toplamrenkaktar();

    Swatch& swatch(TotalColor color) const;

    Ui::toplamtema ui;
    CommonDialog CommonDialog1;
    CommonDialog CommonDialog2;
    CommonDialog CommonDialog3;
    CommonDialog CommonDialog4;
    CommonDialog CommonDialog5;

private:
    /// What belongs to one of the five colours.
    struct Row {
        TotalColor color;
        DrawnButton* button;
        Swatch* swatch;
        CommonDialog* dialog;
        bool chosen = false;  ///< the dialog holds a choice of its own
    };
    struct Preset;
    struct SavedSet;

    Row& rowOf(TotalColor color);
    void connectControls();

    void Command_click(TotalColor color);
    void Frame_mousedown(TotalColor from, TotalColor pushed);
    void preset_click(const Preset& preset);
    void save_click(const SavedSet& set);
    void fetch_click(const SavedSet& set);
    void temakaydetme_click();
    void vkCommand5_click();

    void change(TotalColor color, const QColor& value);
    bool showsSet(TotalSet set) const;
    void dressSlots();

    std::array<Row, totalColors.size()> m_rows;
};

}  // namespace kovanix
