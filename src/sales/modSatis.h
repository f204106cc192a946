#pragma once

#include <QString>

namespace kovanix {

class VSFlexGrid;

/// Resets the ticket grid to an empty ticket: the heading row and the empty entry row.
void gridhazirla(VSFlexGrid& grid);

/// The current purchase price of a product, in lira. 0 for an empty barcode, an unknown one, or when the
/// database isn't ready. @throws RuntimeError when the look-up fails
double alisfiyati(const QString& barcode);

/// The value of the stock: adds purchase price times stock and sale price times stock of every product to the
/// two totals (lira) and counts the products into count, from 0. Changes nothing but the count when the
/// database isn't ready.
/// @throws RuntimeError when the products can't be read to their end; those that could be are in the totals
void stokdegeri(double& purchaseTotal, double& saleTotal, int& count);

}  // namespace kovanix
