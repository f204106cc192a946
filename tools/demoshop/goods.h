#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

namespace kovanix::demoshop {

/// Goods that every shop has, under the quick-sale button that sells them.
struct Staple {
    QStringView name;
    double price;         ///< sale price in lira, of a kilogram for weighed goods
    double margin;        ///< share of the purchase price that is added to it (0.2 is 20 %)
    bool weighed;         ///< sold by the kilogram under a four-character code
    int popularity;       ///< how often it is bought beside the others
    int page;             ///< quick-sale page 1 to 4, or 0 for none
    int slot;             ///< quick-sale button 0 to 7
    QStringView caption;  ///< caption of that button
};

/// The staples, those of the quick-sale buttons first.
const std::vector<Staple>& staples();

/// Captions of the quick-sale pages 1 to 4.
const QStringList& pageCaptions();

/// A kind of packed goods: every variety of it comes in every size.
struct Kind {
    QString name;
    double price;   ///< sale price in lira at the size with the factor 1
    double margin;  ///< as above
    QStringList varieties;
    struct Size {
        QString name;
        double factor;  ///< price beside the kind's
    };
    std::vector<Size> sizes;
};

/// All kinds of packed goods.
const std::vector<Kind>& kinds();

}  // namespace kovanix::demoshop
