#include "goods.h"

namespace kovanix::demoshop {

using namespace Qt::StringLiterals;

const std::vector<Staple>& staples() {
    static const std::vector<Staple> list{
        // Bakery
        {u"Ekmek 200 g", 15.00, 0.15, false, 900, 1, 0, u"Ekmek"},
        {u"Tam Buğday Ekmeği 350 g", 32.50, 0.20, false, 160, 1, 1, u"Tam Buğday"},
        {u"Simit", 20.00, 0.30, false, 260, 1, 2, u"Simit"},
        {u"Peynirli Poğaça", 25.00, 0.35, false, 150, 1, 3, u"Poğaça"},
        {u"Sade Açma", 22.50, 0.35, false, 90, 1, 4, u"Açma"},
        {u"Tırnaklı Pide 400 g", 30.00, 0.20, false, 110, 1, 5, u"Pide"},
        {u"Lavaş 5'li", 45.00, 0.25, false, 60, 1, 6, u"Lavaş 5'li"},
        {u"Kepekli Ekmek 350 g", 32.50, 0.20, false, 70, 1, 7, u"Kepekli"},
        // Greengrocer
        {u"Domates", 59.90, 0.35, true, 320, 2, 0, u"Domates"},
        {u"Salatalık", 44.90, 0.35, true, 260, 2, 1, u"Salatalık"},
        {u"Patates", 29.90, 0.30, true, 250, 2, 2, u"Patates"},
        {u"Kuru Soğan", 22.50, 0.30, true, 230, 2, 3, u"Kuru Soğan"},
        {u"Kırmızı Elma", 49.90, 0.35, true, 160, 2, 4, u"Elma"},
        {u"Muz", 89.90, 0.25, true, 180, 2, 5, u"Muz"},
        {u"Limon", 54.90, 0.40, true, 140, 2, 6, u"Limon"},
        {u"Portakal", 39.90, 0.35, true, 150, 2, 7, u"Portakal"},
        // Drinks
        {u"Doğal Kaynak Suyu 0,5 L", 10.00, 0.60, false, 480, 3, 0, u"Su 0,5 L"},
        {u"Doğal Kaynak Suyu 1,5 L", 18.50, 0.45, false, 240, 3, 1, u"Su 1,5 L"},
        {u"Doğal Kaynak Suyu 5 L", 42.50, 0.35, false, 160, 3, 2, u"Su 5 L"},
        {u"Damacana Su 19 L", 120.00, 0.25, false, 80, 3, 3, u"Damacana"},
        {u"Sade Maden Suyu 200 ml", 12.50, 0.40, false, 220, 3, 4, u"Maden Suyu"},
        {u"Yayık Ayranı 200 ml", 15.00, 0.35, false, 240, 3, 5, u"Ayran"},
        {u"Bardak Çay", 15.00, 0.90, false, 150, 3, 6, u"Çay"},
        {u"Ev Yapımı Limonata 330 ml", 35.00, 0.45, false, 60, 3, 7, u"Limonata"},
        // Everyday things
        {u"Köy Yumurtası (Adet)", 7.50, 0.25, false, 200, 4, 0, u"Yumurta"},
        {u"Köy Yumurtası 15'li", 105.00, 0.18, false, 120, 4, 1, u"Yumurta 15'li"},
        {u"Köy Yumurtası 30'lu", 195.00, 0.15, false, 90, 4, 2, u"Yumurta 30'lu"},
        {u"Alışveriş Poşeti", 1.00, 0.60, false, 700, 4, 3, u"Poşet"},
        {u"Günlük Gazete", 20.00, 0.15, false, 130, 4, 4, u"Gazete"},
        {u"Taşlı Çakmak", 22.50, 0.60, false, 70, 4, 5, u"Çakmak"},
        {u"Kibrit 10'lu", 25.00, 0.50, false, 20, 4, 6, u"Kibrit"},
        {u"Saat Pili 2'li", 45.00, 0.50, false, 40, 4, 7, u"Saat Pili"},
        // More weighed goods
        {u"Sivri Biber", 79.90, 0.40, true, 90, 0, 0, {}},
        {u"Çarliston Biber", 74.90, 0.40, true, 70, 0, 0, {}},
        {u"Patlıcan", 54.90, 0.40, true, 80, 0, 0, {}},
        {u"Kabak", 44.90, 0.40, true, 60, 0, 0, {}},
        {u"Havuç", 34.90, 0.40, true, 90, 0, 0, {}},
        {u"Ispanak", 49.90, 0.45, true, 50, 0, 0, {}},
        {u"Sarımsak", 189.90, 0.35, true, 40, 0, 0, {}},
        {u"Mandalina", 44.90, 0.35, true, 80, 0, 0, {}},
        {u"Armut", 69.90, 0.35, true, 50, 0, 0, {}},
        {u"Siyah Üzüm", 84.90, 0.35, true, 50, 0, 0, {}},
        {u"Karpuz", 19.90, 0.40, true, 70, 0, 0, {}},
        {u"Kavun", 29.90, 0.40, true, 50, 0, 0, {}},
        {u"Şeftali", 79.90, 0.40, true, 40, 0, 0, {}},
        {u"Çilek", 129.90, 0.35, true, 40, 0, 0, {}},
        {u"Nar", 59.90, 0.35, true, 30, 0, 0, {}},
        {u"Ayva", 54.90, 0.35, true, 20, 0, 0, {}},
        {u"Açık Beyaz Peynir", 340.00, 0.22, true, 120, 0, 0, {}},
        {u"Açık Kaşar Peyniri", 460.00, 0.22, true, 100, 0, 0, {}},
        {u"Açık Tulum Peyniri", 520.00, 0.24, true, 40, 0, 0, {}},
        {u"Açık Lor Peyniri", 180.00, 0.25, true, 40, 0, 0, {}},
        {u"Açık Siyah Zeytin", 280.00, 0.30, true, 90, 0, 0, {}},
        {u"Açık Yeşil Zeytin", 260.00, 0.30, true, 70, 0, 0, {}},
        {u"Çekirdek Zeytin Ezmesi", 240.00, 0.30, true, 20, 0, 0, {}},
        {u"Kavrulmuş Fındık", 690.00, 0.25, true, 40, 0, 0, {}},
        {u"Ceviz İçi", 580.00, 0.25, true, 40, 0, 0, {}},
        {u"Çiğ Badem", 640.00, 0.25, true, 30, 0, 0, {}},
        {u"Antep Fıstığı", 1150.00, 0.22, true, 30, 0, 0, {}},
        {u"Sarı Leblebi", 220.00, 0.30, true, 40, 0, 0, {}},
        {u"Ay Çekirdeği", 160.00, 0.35, true, 80, 0, 0, {}},
        {u"Kuru Kayısı", 480.00, 0.28, true, 30, 0, 0, {}},
        {u"Kuru Üzüm", 240.00, 0.30, true, 30, 0, 0, {}},
        {u"Kuru İncir", 420.00, 0.28, true, 20, 0, 0, {}},
    };
    return list;
}

const QStringList& pageCaptions() {
    static const QStringList captions{u"Fırın"_s, u"Manav"_s, u"İçecek"_s, u"Günlük"_s};
    return captions;
}

namespace {

// Name | sale price | margin in per cent | varieties | sizes with their price beside the first column's
constexpr const char* kindTable[] = {
    // Dairy
    "Süt|48|18|Tam Yağlı;Yarım Yağlı;Yağsız;Laktozsuz;Günlük;Keçi;Protein Katkılı|200 ml=0.3;500 ml=0.58;1 "
    "L=1;6x1 L=5.7",
    "Süt|22|25|Çilekli;Muzlu;Kakaolu;Ballı;Karamelli|180 ml=1;500 ml=2.4",
    "Yoğurt|95|20|Köy Usulü;Tam Yağlı;Yarım Yağlı;Kaymaklı;Süzme;Probiyotik;Laktozsuz|500 g=0.6;750 g=0.85;1 "
    "kg=1;2 kg=1.8",
    "Meyveli Yoğurt|28|28|Çilekli;Kayısılı;Orman Meyveli;Muzlu|125 g=1;4x100 g=3.1",
    "Ayran|38|26|Yayık;Naneli;Köpüklü;Az Tuzlu|300 ml=0.5;1 L=1;2 L=1.8",
    "Kefir|62|26|Sade;Çilekli;Orman Meyveli;Kayısılı|250 ml=0.42;1 L=1",
    "Beyaz Peynir|210|20|Tam Yağlı İnek;Keçi;Koyun;Ezine Usulü;Az Tuzlu;Yarım Yağlı|250 g=0.5;500 g=0.9;600 "
    "g=1;1 kg=1.6",
    "Kaşar Peyniri|245|20|Taze;Eski;Dilimli;Rendelenmiş;Isli|200 g=0.5;400 g=0.95;600 g=1.3;1 kg=2.1",
    "Peyniri|155|22|Tulum;Çökelek;Örgü;Dil;Van Otlu;Çeçil|200 g=0.7;350 g=1;500 g=1.4",
    "Labne|78|24|Sade;Otlu;Hafif|180 g=0.7;400 g=1;750 g=1.8",
    "Krem Peynir|64|26|Sade;Biberli;Zeytinli;Otlu|160 g=1;300 g=1.7",
    "Tereyağı|265|18|Tuzsuz;Köy;Yayık;Trabzon Usulü|125 g=0.3;250 g=0.55;500 g=1;1 kg=1.95",
    "Kaymak|95|25|Manda;Sade;Ballı|100 g=0.7;200 g=1",
    "Krema|58|25|Pişirmelik;Çırpmalık|200 ml=1;1 L=4.2",
    "Puding|34|28|Kakaolu;Vanilyalı;Karamelli;Muzlu|120 g=1;4x120 g=3.6",
    "Sütlaç|48|30|Fırın;Fındıklı;Sade|150 g=1;2x150 g=1.9",
    // Meat and cold cuts
    "Sucuk|320|20|Dana;Kangal;Fermente;Acılı;Hindi|180 g=0.6;250 g=0.8;400 g=1.2;900 g=2.6",
    "Salam|145|24|Dana;Hindi;Piliç;Macar;Fıstıklı|100 g=0.5;200 g=0.9;500 g=1.9",
    "Sosis|135|24|Dana;Piliç;Hindi;Kokteyl|220 g=0.8;450 g=1.4;1 kg=2.8",
    "Pastırma|290|20|Sırt;Kuşgömü|80 g=1;150 g=1.8",
    "Piliç|140|16|Bütün;Baget;But;Göğüs;Kanat|600 g=0.7;1 kg=1;1,5 kg=1.5",
    "Köfte|180|20|Dana;Kasap;İnegöl Usulü;Akçaabat Usulü|400 g=1;800 g=1.9",
    // Pulses and grain
    "Mercimek|68|22|Kırmızı;Yeşil;Sarı|500 g=0.55;1 kg=1;2,5 kg=2.4;5 kg=4.6",
    "Nohut|82|22|Koçbaşı;İri Taneli;Yerli|500 g=0.55;1 kg=1;2,5 kg=2.4",
    "Fasulye|98|22|Dermason;Şeker;Barbunya;Kuru;Horoz|500 g=0.55;1 kg=1;2,5 kg=2.4",
    "Pirinci|88|20|Baldo;Osmancık;Yasemin;Basmati;Gönen|500 g=0.55;1 kg=1;2,5 kg=2.35;5 kg=4.5",
    "Bulgur|46|24|Pilavlık;Köftelik;Başbaşı;Siyez;Kepekli|500 g=0.55;1 kg=1;2,5 kg=2.3;5 kg=4.4",
    "Unu|42|18|Buğday;Tam Buğday;Pirinç;Çavdar;Mısır;Siyez|1 kg=1;2 kg=1.9;5 kg=4.3",
    "İrmik|32|25|Sade;İnce|500 g=1;1 kg=1.85",
    "Yulaf Ezmesi|55|28|Sade;İnce;Kepekli;Elmalı Tarçınlı|400 g=1;500 g=1.2;1 kg=2.2",
    "Makarna|26|24|Burgu;Spagetti;Kalem;Fiyonk;Kelebek;Arpa Şehriye;Tel Şehriye;Boncuk;Kepekli|350 g=0.8;500 "
    "g=1;5 kg=8.8",
    "Erişte|72|28|Ev Yapımı;Yumurtalı;Sebzeli|500 g=1;1 kg=1.9",
    "Mısır|52|28|Patlatmalık;Tane|500 g=0.6;1 kg=1",
    // Oils, sauces, pickles
    "Ayçiçek Yağı|98|14|Rafine;Vitaminli;Kızartmalık|1 L=1;2 L=1.95;3 L=2.85;5 L=4.6;18 L=16",
    "Zeytinyağı|390|16|Sızma;Erken Hasat;Riviera;Naturel;Taş Baskı|250 ml=0.35;500 ml=0.6;1 L=1;2 L=1.9;5 "
    "L=4.5",
    "Mısırözü Yağı|125|15|Vitaminli;Sade|1 L=1;2 L=1.95;5 L=4.7",
    "Margarin|62|20|Paket;Kase;Pişirmelik|250 g=1;500 g=1.8;1 kg=3.3",
    "Sirkesi|38|30|Elma;Üzüm;Nar;Hurma;Alıç|500 ml=1;1 L=1.7",
    "Salçası|115|22|Domates;Acı Biber;Tatlı Biber;Ev Tipi Domates|370 g=0.55;700 g=0.9;830 g=1;1650 g=1.8",
    "Ketçap|62|28|Sade;Acılı;Şekersiz|300 g=0.7;600 g=1;1 kg=1.5",
    "Mayonez|72|28|Sade;Hafif;Sarımsaklı|210 g=0.6;350 g=0.9;600 g=1.3",
    "Hardal|45|30|Sade;Ballı;Taneli|200 g=1;370 g=1.6",
    "Nar Ekşisi|95|30|Hakiki;Katkısız|250 ml=0.7;500 ml=1.2;700 ml=1.5",
    "Turşusu|78|28|Salatalık;Karışık Sebze;Lahana;Biber;Jalapeno;Acı Biber|370 g=0.7;680 g=1;1,5 kg=1.9;3 "
    "kg=3.4",
    "Zeytin|165|24|Gemlik Siyah;Yeşil Kırma;Çizik;Biberli Yeşil;Az Tuzlu Siyah;Duble Siyah|200 g=0.55;400 "
    "g=1;800 g=1.85;1,5 kg=3.3",
    "Konservesi|58|28|Bezelye;Garnitür;Mısır;Fasulye;Bamya;Enginar|220 g=0.65;400 g=1;800 g=1.75",
    "Ton Balığı|145|22|Zeytinyağlı;Ayçiçek Yağlı;Biberli;Suda|75 g=0.6;2x75 g=1.1;160 g=1;4x75 g=2.1",
    // Breakfast and sweets
    "Balı|390|22|Çiçek;Çam;Kestane;Yayla;Ihlamur;Kekik|225 g=0.4;460 g=0.7;850 g=1;1,5 kg=1.7",
    "Reçeli|98|28|Çilek;Vişne;Kayısı;Gül;İncir;Ahududu;Portakal;Ayva|300 g=0.8;380 g=1;650 g=1.5",
    "Pekmezi|125|25|Üzüm;Dut;Keçiboynuzu;Andız|350 g=0.7;700 g=1.2;1 kg=1.6",
    "Tahin|150|22|Çift Kavrulmuş;Taş Değirmen;Kepekli|300 g=1;600 g=1.85",
    "Helva|98|25|Sade;Kakaolu;Antep Fıstıklı;Fındıklı|200 g=0.6;350 g=1;500 g=1.35",
    "Kakaolu Fındık Kreması|110|24|Klasik;Sütlü;Bitter|190 g=0.7;350 g=1;700 g=1.8",
    "Lokum|135|30|Güllü;Fıstıklı;Fındıklı;Narlı;Kaymaklı;Cevizli|250 g=0.6;500 g=1;1 kg=1.9",
    "Kahvaltılık Gevrek|105|26|Mısır;Kakaolu;Ballı;Tam Tahıllı|250 g=0.7;450 g=1.1;650 g=1.5",
    "Granola|140|28|Bademli;Meyveli;Kakaolu;Fındıklı|300 g=1;500 g=1.5",
    // Hot drinks and sugar
    "Çayı|145|16|Rize;Filiz;Tomurcuk;Yayla;Bergamot;Bahçe|200 g=0.55;500 g=1;1 kg=1.85;3 kg=5.3",
    "Bardak Poşet Çay|75|24|Rize;Bergamotlu;Yeşil|25'li=0.6;48'li=1;100'lü=1.8",
    "Bitki Çayı|58|30|Ihlamur;Papatya;Adaçayı;Nane Limon;Kuşburnu;Rezene;Elma Tarçın|20'li=1;40'lı=1.8",
    "Türk Kahvesi|98|24|Orta Kavrulmuş;Koyu Kavrulmuş;Dibek;Sakızlı;Menengiç|100 g=1;250 g=2.3;500 g=4.4",
    "Filtre Kahve|210|24|Yumuşak İçim;Sert İçim;Dengeli|250 g=1;500 g=1.9;1 kg=3.6",
    "Hazır Kahve|12|35|Üçü Bir Arada;İkisi Bir Arada;Sütlü Köpüklü;Fındıklı|18 g=1;10x18 g=9;24x18 g=20",
    "Sahlep|48|30|Tarçınlı;Sade|10x17 g=1;250 g=1.4",
    "Toz Şeker|44|12|Kristal;İnce|1 kg=1;3 kg=2.95;5 kg=4.8",
    "Küp Şeker|62|14|Çay;Tek Sargılı;Esmer|750 g=1;1 kg=1.3;5 kg=5.9",
    "Pudra Şekeri|24|30|Sade;Vanilyalı|250 g=1;500 g=1.8",
    // Snacks
    "Bisküvi|24|30|Kakaolu;Fındıklı;Yulaflı;Hindistan Cevizli;Bebek;Burçak;Sade;Portakallı|76 g=0.7;150 "
    "g=1;3x150 g=2.7;800 g=4.4",
    "Kremalı Bisküvi|28|30|Kakaolu;Çilekli;Vanilyalı;Fındıklı|61 g=0.6;244 g=1.6;4x61 g=2",
    "Gofret|15|32|Fındıklı;Çikolatalı;Karamelli;Portakallı|36 g=1;5x36 g=4.4;24x36 g=20",
    "Çikolata|42|28|Sütlü;Bitter;Antep Fıstıklı;Fındıklı;Beyaz;Çilekli;Portakallı|30 g=0.6;60 g=1;80 "
    "g=1.3;200 g=2.9",
    "Kek|18|32|Kakaolu;Meyveli;Havuçlu Tarçınlı;Mozaik;Limonlu|40 g=0.7;60 g=1;200 g=2.6;6x40 g=3.6",
    "Kraker|20|32|Susamlı;Tuzlu;Baharatlı;Peynirli;Çubuk|40 g=0.6;100 g=1;4x40 g=2.2;300 g=2.5",
    "Cips|48|28|Sade;Baharatlı;Yoğurtlu;Peynirli;Acılı;Fırınlanmış|50 g=0.5;107 g=1;150 g=1.35;220 g=1.8",
    "Mısır Çerezi|30|30|Peynirli;Baharatlı;Fıstıklı|80 g=1;150 g=1.7",
    "Paket Fındık|110|26|Kavrulmuş;Çiğ;Soslu|80 g=0.8;150 g=1.4;300 g=2.7",
    "Paket Fıstık|52|30|Tuzlu Yer;Soslu Yer;Kavrulmuş Yer|100 g=0.7;180 g=1;400 g=2.1",
    "Karışık Kuruyemiş|120|28|Lüks;Kavrulmuş;Çiğ;Kokteyl|100 g=0.8;150 g=1.1;300 g=2.1",
    "Sakız|12|40|Naneli;Damla;Çilekli;Nane Okaliptüs|10'lu=1;20'li=1.8;60'lı=4.5",
    "Şekerleme|38|34|Akide;Meyveli;Naneli;Limonlu;Karamelli|100 g=0.7;250 g=1.3;500 g=2.2",
    "Dondurma|38|26|Vanilyalı;Kakaolu;Antep Fıstıklı;Limonlu;Çilekli;Karadutlu|90 ml=0.8;120 ml=1;500 "
    "ml=3.2;1 L=5.6",
    // Cold drinks
    "Suyu|52|26|Vişne;Şeftali;Kayısı;Karışık Meyve;Portakal;Elma;Nar|200 ml=0.3;330 ml=0.5;1 L=1;6x200 "
    "ml=1.7",
    "Gazoz|28|30|Sade;Mandalinalı;Portakallı;Limonlu;Elmalı|200 ml=0.7;250 ml=0.8;1 L=1.4;2,5 L=2.5",
    "Kola|45|24|Klasik;Şekersiz;Limonlu|250 ml=0.6;330 ml=0.8;1 L=1;2,5 L=1.7",
    "Soğuk Çay|42|28|Şeftalili;Limonlu;Karpuzlu;Mangolu|330 ml=0.9;500 ml=1;1,5 L=1.7",
    "Maden Suyu|15|34|Limonlu;Elmalı;Nar Aromalı;C Vitaminli;Karpuz Çilek|200 ml=1;6x200 ml=5.6;24x200 ml=21",
    "Şalgam Suyu|38|30|Acılı;Acısız|300 ml=0.6;1 L=1",
    "Enerji İçeceği|48|28|Klasik;Şekersiz;Orman Meyveli|250 ml=1;500 ml=1.7",
    // Frozen and ready food
    "Dondurulmuş Sebze|78|24|Bezelye;Ispanak;Garnitür;Fasulye;Bamya;Brokoli|450 g=1;1 kg=1.9;2,5 kg=4.4",
    "Parmak Patates|95|24|İnce;Kalın;Baharatlı|450 g=0.7;1 kg=1.2;2,5 kg=2.8",
    "Milföy|88|24|Kare;Rulo|500 g=0.8;1 kg=1.4",
    "Mantı|125|24|Kıymalı;Patatesli;Ispanaklı|400 g=1;500 g=1.2;1 kg=2.2",
    "Pizza|135|24|Karışık;Margarita;Sucuklu;Mantarlı|400 g=1;2x350 g=1.7",
    "Çorbası|24|30|Mercimek;Ezogelin;Yayla;Domates;Tarhana;Mantar|65 g=1;74 g=1.1",
    "Baharat|32|40|Karabiber;Kimyon;Pul Biber;Nane;Kekik;Sumak;Tarçın;Zerdeçal;Köri;İsot|40 g=0.8;65 g=1;150 "
    "g=2.1;500 g=6",
    "Tuz|18|30|Sofra;İyotlu;Kaya;Deniz|500 g=0.7;750 g=1;1,5 kg=1.8",
    "Bulyon|42|28|Et;Tavuk;Sebze|60 g=1;120 g=1.8;240 g=3.4",
    "Maya|14|30|Kuru;Yaş|10 g=0.5;3x10 g=1;42 g=0.9",
    "Kabartma Tozu|22|35|Sade;Vanilyalı|5'li=1;10'lu=1.8",
    // Baby and household
    "Bebek Bezi|390|16|Yenidoğan;Mini;Midi;Maxi;Junior|24'lü=0.6;40'lı=1;72'li=1.6;120'li=2.5",
    "Islak Havlu|48|30|Bebek;Yüzey;Antibakteriyel;Hassas Ciltler|56'lı=0.8;72'li=1;90'lı=1.15;3x90'lı=3",
    "Kaşık Maması|125|22|Sütlü Pirinçli;Muzlu;Tahıllı;Meyveli|120 g=0.5;250 g=1;500 g=1.8",
    "Çamaşır Deterjanı|240|18|Toz Beyazlar;Toz Renkliler;Sıvı Renkliler;Sıvı Beyazlar;Sıvı Siyahlar|1,5 "
    "kg=0.6;3 kg=1;4 kg=1.3;9 kg=2.6",
    "Yumuşatıcı|135|22|Lavanta;Bahar Esintisi;Beyaz Çiçek;Bebek|1,44 L=1;2,5 L=1.5;5 L=2.7",
    "Bulaşık Deterjanı|72|24|Limonlu;Elmalı;Hassas Eller;Nar Çiçeği|650 ml=0.8;1 L=1;1,5 L=1.4;4 L=3.1",
    "Bulaşık Makinesi Tableti|260|20|Klasik;Tam Etkili;Limonlu|30'lu=0.8;45'li=1;90'lı=1.8",
    "Çamaşır Suyu|68|24|Klasik;Kokulu;Yoğun Kıvamlı|1 L=0.7;2,5 L=1.2;4 L=1.7",
    "Yüzey Temizleyici|78|26|Çam;Lavanta;Okyanus;Limon;Beyaz Sabun|750 ml=0.8;1 L=1;2,5 L=2.1",
    "Cam Temizleyici|62|28|Klasik;Amonyaklı|500 ml=0.8;750 ml=1",
    "Tuvalet Kağıdı|185|20|Çift Katlı;Üç Katlı;Papatyalı;Doğal|8'li=0.45;16'lı=0.8;24'lü=1.1;32'li=1.4",
    "Kağıt Havlu|135|22|Çift Katlı;Üç Katlı;Uzun Ömürlü|2'li=0.4;6'lı=1;8'li=1.3;12'li=1.8",
    "Peçete|32|30|Sade;Desenli;Garson Katlama|50'li=0.6;100'lü=1;250'li=2.2",
    "Kağıt Mendil|58|28|Cep;Kutu;Mentollü|10'lu=1;100'lü=0.9;150'li=1.2",
    "Çöp Torbası|52|32|Küçük Boy;Orta Boy;Büyük Boy;Jumbo Boy;Büzgülü Orta "
    "Boy|10'lu=0.8;15'li=1;20'li=1.3;50'li=2.9",
    "Streç Film|58|32|Kesicili;Ekonomik|30 m=1;100 m=2.6;300 m=6.5",
    "Alüminyum Folyo|72|30|Kalın;Standart|5 m=0.6;10 m=1;30 m=2.5",
    "Pişirme Kağıdı|46|32|Kahverengi;Beyaz|5 m=0.7;8 m=1;16 yaprak=0.9",
    // Care
    "Sabun|48|28|Zeytinyağlı;Defne;Lavanta;Gül;Beyaz Kalıp|90 g=0.5;4x70 g=1.2;5x150 g=2.4;900 g=2.8",
    "Sıvı Sabun|62|28|Gül;Zeytinyağlı;Deniz;Aloe Vera|400 ml=0.8;500 ml=1;1,5 L=2.1;3 L=3.6",
    "Şampuan|125|24|Kepeğe Karşı;Besleyici;Bebek;Isırgan Otlu;Argan Yağlı;Onarıcı|180 ml=0.5;360 ml=0.9;500 "
    "ml=1.1;1 L=1.9",
    "Saç Kremi|115|24|Besleyici;Onarıcı;Argan Yağlı|350 ml=1;500 ml=1.3",
    "Duş Jeli|98|26|Lavanta;Okyanus;Vanilya;Narenciye|450 ml=1;500 ml=1.1;1 L=1.9",
    "Diş Macunu|78|26|Beyazlatıcı;Bitkisel;Çocuk;Hassas;Florürlü|50 ml=0.6;75 ml=1;100 ml=1.25;2x75 ml=1.8",
    "Diş Fırçası|58|35|Yumuşak;Orta;Sert;Çocuk|1'li=1;2'li=1.7",
    "Kolonya|85|28|Limon;Lavanta;Tütün;Gül;Çay|150 ml=0.7;250 ml=1;400 ml=1.5;900 ml=2.8",
    "Tıraş Köpüğü|92|28|Klasik;Hassas Ciltler;Mentollü|200 ml=1;250 ml=1.2",
    "Hijyenik Ped|72|24|Normal;Uzun;Gece;Günlük|8'li=0.7;16'lı=1.2;24'lü=1.7;40'lı=2.5",
    // The rest of the shelf
    "Kedi Maması|145|24|Tavuklu;Balıklı;Kuzulu;Yavru|85 g=0.2;400 g=0.5;1 kg=1;2,5 kg=2.3",
    "Köpek Maması|135|24|Tavuklu;Kuzulu;Biftekli;Yavru|400 g=0.5;1 kg=1;3 kg=2.7;15 kg=11",
    "Defter|45|35|Çizgili;Kareli;Çizgisiz;Spiralli|40 yaprak=0.7;60 yaprak=1;80 yaprak=1.3;120 yaprak=1.9",
    "Tükenmez Kalem|15|45|Mavi;Siyah;Kırmızı|1'li=1;4'lü=3.6;10'lu=8.5",
    "Ampul|65|40|Sarı Işık;Beyaz Işık;Gün Işığı|5 W=0.8;9 W=1;12 W=1.3;15 W=1.6",
    "Mum|35|42|Beyaz;Kokulu;Doğum Günü|6'lı=1;10'lu=1.5;24'lü=3.2",
    // A second shelf of much the same
    "Tost Ekmeği|62|24|Klasik;Kepekli;Tam Buğday;Çavdarlı;Çok Tahıllı|350 g=0.8;500 g=1;620 g=1.2",
    "Galeta|48|28|Klasik;Susamlı;Kepekli;Zeytinyağlı|120 g=0.7;200 g=1;400 g=1.8",
    "Grissini|36|30|Sade;Susamlı;Baharatlı;Biberiyeli|100 g=1;200 g=1.8",
    "Yufka|58|24|El Açması;Böreklik;Baklavalık|500 g=0.8;800 g=1.2;1 kg=1.4",
    "Gözleme|85|28|Peynirli;Ispanaklı;Patatesli;Kıymalı|200 g=1;3x200 g=2.8",
    "Börek|120|26|Peynirli;Ispanaklı;Kıymalı;Patatesli|400 g=1;800 g=1.9",
    "Baklava|320|24|Cevizli;Fıstıklı;Kaymaklı;Soğuk|250 g=0.55;500 g=1;1 kg=1.9",
    "Kurabiye|75|30|Un;Elmalı;Kakaolu;Damla Çikolatalı;Fındıklı|150 g=0.7;250 g=1;500 g=1.8",
    "Pestil|88|30|Dut;Üzüm;Kayısı;Cevizli|200 g=1;400 g=1.9",
    "Cevizli Sucuk|145|26|Üzüm;Dut;Nar|250 g=1;500 g=1.9",
    "Pilaki|72|26|Barbunya;Fasulye|220 g=0.8;400 g=1.3",
    "Yaprak Sarma|95|26|Zeytinyağlı;Nar Ekşili;Vişneli|200 g=0.7;400 g=1.2;1 kg=2.7",
    "Meze|88|30|Humus;Haydari;Acılı Ezme;Rus Salatası;Patlıcan;Şakşuka|200 g=1;350 g=1.6;1 kg=4.2",
    "Makarna Sosu|78|28|Domatesli;Fesleğenli;Mantarlı;Acılı;Kremalı|190 g=0.7;350 g=1;680 g=1.7",
    "Sos|58|30|Acı;Barbekü;Sarımsaklı;Soya;Tatlı Acı;Köri|150 g=0.7;260 g=1;500 g=1.7",
    "Kuru Bakliyat Karışımı|78|26|Aşurelik;Çorbalık;Salatalık|500 g=0.6;1 kg=1",
    "Kuru Meyve|125|28|Kayısı;İncir;Erik;Dut;Elma;Yaban Mersini|100 g=0.6;200 g=1;500 g=2.2",
    "Toz İçecek|8|40|Portakallı;Limonlu;Vişneli;Muzlu;Şeftalili|9 g=1;24x9 g=20;300 g=7",
    "Kakao|62|28|Toz;Şekersiz Toz;Koyu Toz|50 g=0.5;100 g=1;250 g=2.2",
    "Hoşaf|48|28|Kayısı;Üzüm;Karışık|330 ml=0.7;1 L=1.5",
    "Boza|72|26|Geleneksel;Tarçınlı|500 ml=0.6;1 L=1",
    "Oda Kokusu|110|30|Lavanta;Vanilya;Okyanus;Beyaz Çiçek;Sandal|100 ml=0.8;120 ml=1;300 ml=1.7",
    "Böcek Kovucu|135|28|Sprey;Tablet;Sıvı;Losyon|100 ml=0.8;300 ml=1.2",
    "Sünger|28|38|Bulaşık;Oluklu;Çizmeyen;Banyo|1'li=0.5;3'lü=1;5'li=1.5;10'lu=2.6",
    "Temizlik Bezi|48|34|Mikrofiber;Sarı;Cam;Yer|1'li=0.6;3'lü=1;10'lu=2.7",
    "Eldiven|58|32|Bulaşık S;Bulaşık M;Bulaşık L;Pudrasız M|1 çift=0.8;10'lu=1;100'lü=4.2",
    "Pil|65|38|İnce Kalem;Kalem;Orta Boy;Büyük Boy;Düğme|2'li=0.8;4'lü=1.4;8'li=2.4",
    "Pamuk|42|32|Hidrofil;Disk;Çubuk|50 g=0.7;100 g=1;200'lü=1.1",
    "El Kremi|62|30|Gliserinli;Zeytinyağlı;Papatyalı;Badem Yağlı|75 ml=1;100 ml=1.25;250 ml=2.2",
    "Güneş Kremi|290|26|SPF 30;SPF 50;Çocuk SPF 50|50 ml=0.8;100 ml=1.2;200 ml=1.7",
    "Deodorant|115|28|Fresh;Pudralı;Okyanus;Spor;Beyaz Çiçek|50 ml=0.9;150 ml=1;200 ml=1.3",
    "Saç Boyası|145|28|Siyah;Kahve;Kumral;Kızıl;Sarı|50 ml=1;2x50 ml=1.8",
    "Plastik Bardak|38|36|Şeffaf;Beyaz;Renkli|180 cc 50'li=1;180 cc 100'lü=1.8;250 cc 50'li=1.3",
    "Kağıt Tabak|48|36|Beyaz;Desenli;Renkli|10'lu=0.8;25'li=1.7",
    "Mangal Kömürü|120|28|Meşe;Portakal Ağacı;Fındık Kabuğu|1 kg=0.6;2,5 kg=1.1;5 kg=2;10 kg=3.8",
    "Kuş Yemi|58|30|Muhabbet;Kanarya;Papağan|400 g=1;1 kg=2.1",
    "Kedi Kumu|160|24|Topaklanan;Lavantalı;Kokusuz|5 L=0.7;10 L=1.2;20 L=2.1",
    "Çiçek Toprağı|95|34|Torf;Humuslu;Kaktüs|5 L=0.6;10 L=1;20 L=1.7",
};

Kind parsed(const QString& line) {
    const QStringList part = line.split(u'|');
    Kind kind{part[0], part[1].toDouble(), part[2].toDouble() / 100, part[3].split(u';'), {}};
    for (const QString& entry : part[4].split(u';')) {
        const qsizetype sign = entry.indexOf(u'=');
        kind.sizes.push_back({entry.left(sign), entry.mid(sign + 1).toDouble()});
    }
    return kind;
}

}  // namespace

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> list = [] {
        std::vector<Kind> read;
        for (const char* line : kindTable)
            read.push_back(parsed(QString::fromUtf8(line)));
        return read;
    }();
    return list;
}

}  // namespace kovanix::demoshop
