#include "appearance/palette.h"

namespace kovanix {

namespace {

using enum ColorProperty;

// System colours, by index.
constexpr ColorValue windowGround = 0x80000005;
constexpr ColorValue windowText = 0x80000008;
constexpr ColorValue buttonFace = 0x8000000F;
constexpr ColorValue buttonText = 0x80000012;

constexpr PaletteCell untouched;
// Two values, set one after the other: only the second is seen. Required, as listed.
constexpr PaletteCell blackThenFace(0x000000, buttonFace);
constexpr PaletteCell whiteThenBlack(0xFFFFFF, 0x000000);

// The controls that share their rows. Of kisayol_ only 0 to 7 exist; the rest is passed over, and stays all
// the same.
constexpr const char* toplam[] = {"toplam"};
constexpr const char* totalGround[] = {"_14"};
constexpr const char* saleButtons[] = {"kaydet", "nakit"};
constexpr const char* satisiptal[] = {"satisiptal"};
constexpr const char* lookupButtons[] = {"fiyatgor", "vkCommand3", "vkCommand2"};
constexpr const char* vkCommand1[] = {"vkCommand1"};
constexpr const char* vkCommand4[] = {"vkCommand4"};
constexpr const char* kapat[] = {"kapat"};
constexpr const char* vsil[] = {"vsil"};
constexpr const char* ver3[] = {"ver3"};
constexpr const char* vkCommand5[] = {"vkCommand5"};
constexpr const char* urunbulmak[] = {"urunbulmak"};
constexpr const char* digitKeys[] = {"tus_0",
                                     "tus_1",
                                     "tus_2",
                                     "tus_3",
                                     "tus_4",
                                     "tus_5",
                                     "tus_6",
                                     "tus_7",
                                     "tus_8",
                                     "tus_9",
                                     "tus_10",
                                     "tus_11",
                                     "bununamayanurunfiyat_12",
                                     "bununamayanurunfiyat_13",
                                     "bununamayanurunfiyat_14",
                                     "bununamayanurunfiyat_15",
                                     "bununamayanurunfiyat_16",
                                     "bununamayanurunfiyat_17",
                                     "bununamayanurunfiyat_18",
                                     "bununamayanurunfiyat_19",
                                     "bununamayanurunfiyat_20",
                                     "bununamayanurunfiyat_21",
                                     "bununamayanurunfiyat_22",
                                     "bununamayanurunfiyat_23"};
constexpr const char* adet[] = {"adet"};
constexpr const char* barkod[] = {"barkod"};
constexpr const char* verilen[] = {"verilen"};
constexpr const char* kalan[] = {"kalan"};
constexpr const char* ver2[] = {"ver2"};
constexpr const char* entryLabels[] = {"Label4_3", "Label4_6"};
constexpr const char* urununadi[] = {"urununadi"};
constexpr const char* urunislemleri[] = {"urunislemleri"};
constexpr const char* closeButtons[] = {"vazgecc", "fiyargorkapat", "urunbulunamadikapat"};
constexpr const char* urunislemlerikapat[] = {"urunislemlerikapat"};
constexpr const char* urunsil[] = {"urunsil"};
constexpr const char* editingKeys[] = {"duzenlemetusu_12", "duzenlemetusu_13", "duzenlemetusu_14",
                                       "duzenlemetusu_15", "duzenlemetusu_16", "duzenlemetusu_17",
                                       "duzenlemetusu_18", "duzenlemetusu_19", "duzenlemetusu_20",
                                       "duzenlemetusu_21", "duzenlemetusu_22", "duzenlemetusu_23"};
constexpr const char* fiyatgorframe[] = {"fiyatgorframe"};
constexpr const char* urunbulunamadiframesi[] = {"urunbulunamadiframesi"};
constexpr const char* urunbuunamadikaydet[] = {"urunbuunamadikaydet"};
constexpr const char* quickKeys[] = {
    "kisayol_0",  "kisayol_1",  "kisayol_2",  "kisayol_3",  "kisayol_4",  "kisayol_5",  "kisayol_6",
    "kisayol_7",  "kisayol_8",  "kisayol_9",  "kisayol_10", "kisayol_11", "kisayol_12", "kisayol_13",
    "kisayol_14", "kisayol_15", "kisayol_16", "kisayol_17", "kisayol_18", "kisayol_19", "kisayol_20",
    "kisayol_21", "kisayol_22", "kisayol_23", "kisayol_24", "kisayol_25", "kisayol_26", "kisayol_27",
    "kisayol_28", "kisayol_29", "kisayol_30", "kisayol_31", "kisayol_32"};
constexpr const char* quickCategories[] = {"kisayol1", "kisayol2", "kisayol3", "kisayol4"};
constexpr const char* Frame2[] = {"Frame2"};
constexpr const char* quickKeyLabels[] = {"hizliurunadi", "Label8"};
constexpr const char* vkFrame2[] = {"vkFrame2"};
constexpr const char* cashLabels[] = {"Label4_4", "Label4_5"};
constexpr const char* statusBar[] = {"Frame1", "saat", "tarih", "Label4_7"};
constexpr const char* Label4_8[] = {"Label4_8"};

// By control and property, for resim1 to resim4.
constexpr PaletteRow table[] = {
    {toplam, backcolor1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {toplam, backcolor2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {toplam, backcolorpushed1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {toplam, backcolorpushed2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {toplam, forecolor, {0xC00000, 0x0000FF, 0x00FF00, 0xC000C0}},
    {totalGround, BackColor, {0x000000, 0x000000, 0x0000FF, 0x000000}},
    {saleButtons, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {saleButtons, backcolor2, {0x00FF00, 0x00FF00, 0x00FF00, 0x00FF00}},
    {saleButtons, backcolorpushed1, {0x80FF80, 0x80FF80, 0x000000, 0xFFFFFF}},
    {saleButtons, backcolorpushed2, {0xEBEBEB, 0xEBEBEB, 0x00FF00, 0x00FF00}},
    {saleButtons, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {satisiptal, backcolor1, {0xC0E0FF, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {satisiptal, backcolor2, {0x0000FF, 0x0000FF, 0x0000FF, 0x0000FF}},
    {satisiptal, backcolorpushed1, {0xC0E0FF, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {satisiptal, backcolorpushed2, {0x0000FF, 0x0000FF, 0x0000FF, 0x0000FF}},
    {satisiptal, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {lookupButtons, backcolor1, {0x80C0FF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {lookupButtons, backcolor2, {0x930A2A, 0x80FFFF, 0x930A2A, 0x930A2A}},
    {lookupButtons, backcolorpushed1, {0x80C0FF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {lookupButtons, backcolorpushed2, {0x930A2A, 0x80FFFF, 0x930A2A, 0x930A2A}},
    {lookupButtons, forecolor, {0xFFFFFF, 0x000000, 0xFFFFFF, 0x000000}},
    {vkCommand1, backcolor1, {0xC0E0FF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {vkCommand1, backcolor2, {0x930A2A, 0x80FFFF, 0xC00000, 0xC00000}},
    {vkCommand1, backcolorpushed1, {0xC0E0FF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {vkCommand1, backcolorpushed2, {0x930A2A, 0x80FFFF, 0xC00000, 0xC00000}},
    {vkCommand1, forecolor, {0xFFFFFF, 0x000000, 0xFFFFFF, 0x000000}},
    {vkCommand4, backcolor1, {0xFFFFFF, 0x80C0FF, 0x000000, 0xFFFFFF}},
    {vkCommand4, backcolor2, {0xFF8080, 0x80C0FF, 0xFF0000, 0xFF0000}},
    {vkCommand4, backcolorpushed1, {0xE0E0E0, 0x80C0FF, 0xE0E0E0, 0xFFFFFF}},
    {vkCommand4, backcolorpushed2, {0x80FF80, 0x80C0FF, 0x80FF80, 0x80FF80}},
    {vkCommand4, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {kapat, backcolor1, {0xC0E0FF, 0x8080FF, 0x000000, 0xFFFFFF}},
    {kapat, backcolor2, {0x0000FF, 0x0000FF, 0x0000C0, 0x0000C0}},
    {kapat, backcolorpushed1, {0x80C0FF, 0x8080FF, 0x000000, 0xFFFFFF}},
    {kapat, backcolorpushed2, {0x0000C0, 0x0000FF, 0x0000C0, 0x0000C0}},
    {kapat, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {vsil, backcolor1, {0x8080FF, 0x8080FF, 0x000000, 0xFFFFFF}},
    {vsil, backcolor2, {0x0000FF, 0x0000FF, 0x0000C0, 0x0000C0}},
    {vsil, backcolorpushed1, {0x0000FF, 0x0000FF, 0x000000, 0xFFFFFF}},
    {vsil, backcolorpushed2, {0x0000C0, 0x0000C0, 0x0000C0, 0x0000C0}},
    {vsil, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {ver3, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {ver3, backcolor2, {0x80C0FF, 0x80C0FF, 0x0080FF, 0x0080FF}},
    {ver3, backcolorpushed1, {0xE0E0E0, 0xE0E0E0, 0x000000, 0xFFFFFF}},
    {ver3, backcolorpushed2, {0x0080FF, 0x0080FF, 0x0080FF, 0x0080FF}},
    {ver3, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {vkCommand5, backcolor1, {buttonFace, buttonFace, 0xF0F0F0, 0xFFFFFF}},
    {vkCommand5, backcolor2, {0xFFFF00, 0xFFFF00, 0x404000, 0xFFFF00}},
    {vkCommand5, backcolorpushed1, {buttonFace, buttonFace, 0xF0F0F0, 0xFFFFFF}},
    {vkCommand5, backcolorpushed2, {0x808000, 0x808000, 0x404000, 0xFFFF00}},
    {vkCommand5, forecolor, {0x000000, 0x000000, 0x000000, 0x000000}},
    {urunbulmak, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {urunbulmak, backcolor2, {0x80FFFF, 0x80FFFF, 0x80FFFF, 0x80FFFF}},
    {urunbulmak, backcolorpushed1, {0x80FF80, 0x80FF80, 0x000000, 0xFFFFFF}},
    {urunbulmak, backcolorpushed2, {0xEBEBEB, 0xEBEBEB, 0xEBEBEB, 0xEBEBEB}},
    {urunbulmak, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {digitKeys, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x808080, 0xFFFFFF}},
    {digitKeys, backcolor2, {0xDCDCDC, 0xDCDCDC, 0x404040, buttonFace}},
    {digitKeys, backcolorpushed1, {0xE0E0E0, 0xE0E0E0, 0x808080, 0xFFFFFF}},
    {digitKeys, backcolorpushed2, {0xC0C0C0, 0xC0C0C0, 0x404040, buttonFace}},
    {digitKeys, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {adet, BackColor, {0xFFFFFF, 0xFFFFFF, 0x404040, 0xFFFFFF}},
    {adet, ForeColor, {windowText, windowText, 0xFFFFFF, 0x000000}},
    {barkod, BackColor, {0x0000FF, 0x0000FF, 0x404040, 0xFFFFFF}},
    {barkod, ForeColor, {windowText, windowText, 0xFFFFFF, 0x000000}},
    {verilen, backcolor1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {verilen, backcolor2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {verilen, backcolorpushed1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {verilen, backcolorpushed2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {verilen, forecolor, {0x0000FF, 0x0000FF, 0x0000FF, 0x0000FF}},
    {kalan, backcolor1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {kalan, backcolor2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {kalan, backcolorpushed1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {kalan, backcolorpushed2, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {kalan, forecolor, {0xC0C000, 0x0000FF, 0xC0C000, 0xC0C000}},
    {ver2, BackColor, {0xFFFF00, 0xFFFF00, 0x000000, 0xFFFFFF}},
    {ver2, ForeColor, {0x000000, 0x000000, 0x0080FF, 0x404040}},
    {entryLabels, ForeColor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {urununadi, BackColor, {buttonFace, buttonFace, 0x2E2E2E, buttonFace}},
    {urununadi, ForeColor, {buttonText, buttonText, 0xE0E0E0, buttonText}},
    {urunislemleri, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x2E2E2E, 0xFFFFFF}},
    {urunislemleri, backcolor2, {0xDCDCDC, 0xDCDCDC, 0x2E2E2E, 0xFFFFFF}},
    {urunislemleri, bordercolor, {0xFF8080, 0xFF8080, 0xFF8080, 0xFF8080}},
    {urunislemleri, forecolor, {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0x000000}},
    {urunislemleri, titlecolor1, {0xC85A21, 0xC85A21, 0xC85A21, 0xC85A21}},
    {urunislemleri, titlecolor2, {0xE4C6B5, 0xE4C6B5, 0xE4C6B5, 0xE4C6B5}},
    {closeButtons, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {closeButtons, backcolor2, {0x8080FF, 0x8080FF, 0x8080FF, 0x8080FF}},
    {closeButtons, backcolorpushed1, {0xE0E0E0, 0xE0E0E0, 0x000000, 0xFFFFFF}},
    {closeButtons, backcolorpushed2, {0x0000FF, 0x0000FF, 0x0000FF, 0x0000FF}},
    {closeButtons, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {urunislemlerikapat, backcolor1, {0xEDFEFF, 0xEDFEFF, 0x000000, 0xFFFFFF}},
    {urunislemlerikapat, backcolor2, {0xD2E3E6, 0xD2E3E6, 0xD2E3E6, 0xD2E3E6}},
    {urunislemlerikapat, backcolorpushed1, {0xE0E0E0, 0xE0E0E0, 0x000000, 0xFFFFFF}},
    {urunislemlerikapat, backcolorpushed2, {0xC0C0C0, 0xC0C0C0, 0xC0C0C0, 0xC0C0C0}},
    {urunislemlerikapat, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {urunsil, backcolor1, {0xEDFEFF, 0xEDFEFF, 0x000000, 0xFFFFFF}},
    {urunsil, backcolor2, {0xD2E3E6, 0xD2E3E6, 0xD2E3E6, 0xD2E3E6}},
    {urunsil, backcolorpushed1, {0xFFFFFF, 0xFFFFFF, 0x000000, 0xFFFFFF}},
    {urunsil, backcolorpushed2, {0xC0C0C0, 0xC0C0C0, 0xC0C0C0, 0xC0C0C0}},
    {urunsil, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {editingKeys, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x808080, 0xFFFFFF}},
    {editingKeys, backcolor2, {0xDCDCDC, 0xDCDCDC, 0x404040, buttonFace}},
    {editingKeys, backcolorpushed1, {0xC8C8C8, 0xC8C8C8, 0x808080, 0xFFFFFF}},
    {editingKeys, backcolorpushed2, {0xEBEBEB, 0xEBEBEB, 0x404040, buttonFace}},
    {editingKeys, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {fiyatgorframe, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x404040, 0xFFFFFF}},
    {fiyatgorframe, backcolor2, {0xDCDCDC, 0xDCDCDC, 0x404040, 0xFFFFFF}},
    {fiyatgorframe, bordercolor, {0xFF8080, 0xFF8080, 0xFF8080, 0xFF8080}},
    {fiyatgorframe, forecolor, {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0x000000}},
    {fiyatgorframe, titlecolor1, {0xFFFF00, 0xC85A21, 0xFFFF00, 0xFFFF00}},
    {fiyatgorframe, titlecolor2, {0xFF0000, 0xE4C6B5, 0xFF0000, 0xFF0000}},
    {urunbulunamadiframesi, BackColor, {buttonFace, buttonFace, 0x404040, 0xFFFFFF}},
    {urunbulunamadiframesi, ForeColor, {buttonText, buttonText, buttonText, 0x000000}},
    {urunbuunamadikaydet, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x000000, 0xFFFFFF}},
    {urunbuunamadikaydet, backcolor2, {0x80FF80, 0x80FF80, 0x80FF80, 0x80FF80}},
    {urunbuunamadikaydet, backcolorpushed1, {0xE0E0E0, 0xE0E0E0, 0x000000, 0xFFFFFF}},
    {urunbuunamadikaydet, backcolorpushed2, {0x00C000, 0x00C000, 0x00C000, 0x00C000}},
    {urunbuunamadikaydet, forecolor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {quickKeys, BackColor, {buttonFace, buttonFace, 0xC0C0C0, 0xFFFFFF}},
    {quickCategories, BackColor, {0x0000FF, 0x0000FF, 0x0000C0, 0x0000FF}},
    {Frame2, BackColor, {blackThenFace, blackThenFace, 0x404040, 0xFFFFFF}},
    {quickKeyLabels, BackColor, {blackThenFace, blackThenFace, 0x404040, 0xFFFFFF}},
    {quickKeyLabels, ForeColor, {whiteThenBlack, whiteThenBlack, 0xE0E0E0, 0x000000}},
    {vkFrame2, backcolor1, {0xFBFBFB, 0xFBFBFB, 0x404040, 0xFFFFFF}},
    {vkFrame2, backcolor2, {0xDCDCDC, 0xDCDCDC, 0x404040, 0xFFFFFF}},
    {cashLabels, BackColor, {windowGround, windowGround, 0x000000, 0xFFFFFF}},
    {cashLabels, ForeColor, {windowText, windowText, 0xFFFFFF, 0x000000}},
    {statusBar, BackColor, {0xFFFFFF, 0xFFFFFF, 0x404040, 0xFFFFFF}},
    {statusBar, ForeColor, {0x000000, 0x000000, 0xFFFFFF, 0x000000}},
    {Label4_8, BackColor, {untouched, untouched, 0x404040, 0xFFFFFF}},
    {Label4_8, ForeColor, {untouched, untouched, 0xFFFFFF, 0x000000}},
};

}  // namespace

std::span<const PaletteRow> paletteRows() {
    return table;
}

}  // namespace kovanix
