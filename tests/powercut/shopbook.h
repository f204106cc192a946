#pragma once

#include <QMap>
#include <QString>
#include <array>
#include <optional>
#include <vector>

#include "disk.h"

namespace kovanix {

/// A key that a file takes in place of a password: working one out of a password takes as long as many a
/// test.
inline const QString rawKey =
    QStringLiteral("x'2dd29ca851e7b56e4697b0e1f08507293d761a05ce4d1b628663f411a8086d99'");

/// A sold line as it is stored; each bit of its numbers counts.
struct SoldLine {
    QString moment;
    QString barcode;
    QString name;
    std::array<double, 6> numbers;  ///< adet, fiyat, alis, kar, toplam, satis

    bool operator==(const SoldLine&) const = default;
};

/// What a shop's file holds of trade.
struct ShopContents {
    QString trouble;              ///< why it can't be read, or what the engine finds wrong in it; empty: none
    std::vector<SoldLine> sales;  ///< by number
    QMap<QString, double> stock;  ///< of each product, by barcode
};

/// Opens a shop's file with the bare engine, has the engine check it and reads it.
/// @param files  of one folder; those of the database are written into a folder of their own
ShopContents readShop(const FolderFiles& files, const QString& password);
ShopContents readShop(const QString& file, const QString& password);

/// The books that are kept beside a till: what its statements make of the shop, one after the other. They are
/// kept from what the cashier sees and from the products as the test made them, not from the file.
class ShopBook {
public:
    explicit ShopBook(const ShopContents& start);

    void store(const SoldLine& sale);
    /// Takes from the stock of a product; there may be none.
    void take(const QString& barcode, double quantity);
    void setStock(const QString& barcode, double stock);
    void remove(const QString& barcode);

    /// How many statements there are so far.
    qsizetype statements() const { return static_cast<qsizetype>(m_states.size()) - 1; }
    /// Forgets the statements behind so many.
    void cutBack(qsizetype statements);

    /// Behind how many statements, of at least and at most so many, the shop looks like that; the smallest
    /// such number. Nothing where there is none.
    std::optional<qsizetype> find(const ShopContents& contents, qsizetype least, qsizetype most) const;
    /// In words how a shop differs from every state between the two; empty where it doesn't.
    QString difference(const ShopContents& contents, qsizetype least, qsizetype most) const;

private:
    struct State {
        std::size_t sales;
        QMap<QString, double> stock;
    };
    void add(std::size_t sales, const QMap<QString, double>& stock) { m_states.push_back({sales, stock}); }

    std::vector<SoldLine> m_sales;
    std::vector<State> m_states;  ///< ahead of all statements, then behind each
};

}  // namespace kovanix
