#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

#include "random.h"

namespace kovanix::demoshop {

/// A product as the shop's file holds it.
struct Product {
    QString barcode;  ///< EAN-13, or a four-character code for weighed goods
    QString name;     ///< at most 50 characters, all of them in Windows-1254
    double purchase;  ///< lira
    double sale;      ///< lira; always above the purchase price
    double stock;     ///< a whole number of pieces or kilograms
    bool weighed;
};

/// A filled quick-sale button.
struct QuickKey {
    int page;  ///< 1 to 4
    int slot;  ///< 0 to 7
    QString caption;
    QString barcode;
};

/// The products of a grocery by running number: the staples first, then packed goods in a shuffled order,
/// then the packed goods again with a number behind their names, as many as are wanted.
///
/// Only the figures are kept; names and barcodes are made when asked for, so that a million products fit
/// anywhere.
class Catalogue {
public:
    /// @param count  how many products; any number from 0 to some ten million
    Catalogue(qsizetype count, Random& random);

    qsizetype size() const { return qsizetype(figures.size()); }

    /// The product of a running number from 0 to size() - 1.
    Product at(qsizetype number) const;

    /// How often a product is bought beside the others; above 0.
    double popularity(qsizetype number) const;

    /// The quick-sale buttons whose products are among the catalogue's.
    std::vector<QuickKey> quickKeys() const;

    /// How many different products there are before names need a number.
    static qsizetype varietyCount();

private:
    struct Packed {
        int kind;
        int variety;
        int size;
    };
    struct Figures {
        double purchase;
        double sale;
        int stock;
    };

    QString nameOf(qsizetype number) const;
    QString barcodeOf(qsizetype number) const;
    double priceOf(qsizetype number, Random& random) const;
    double marginOf(qsizetype number) const;

    std::vector<Packed> packed;
    std::vector<Figures> figures;
    quint64 firstSerial;
};

}  // namespace kovanix::demoshop
