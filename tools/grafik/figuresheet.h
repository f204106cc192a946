#pragma once

#include <QImage>
#include <QString>

#include "grafik/salesreading.h"

namespace kovanix {

/// How many products have bars of their own; the others stand together behind them.
inline constexpr std::size_t bestSellers = 12;

/// What is drawn, and told beside the bars, of a picture.
FigureTable drawnTable(const SalesPicture& picture, Division division);

/// What a drawing is called: "Günlere göre satışlar".
QString drawingTitle(Division division);

/// The chart with its title, its range and its sums, 1600×1000.
QImage drawnImage(const SalesPicture& picture, Division division);

/// Writes that as a PNG; a file of that name is replaced, whole or not at all.
/// @throws RuntimeError where it can't be written
void writeImage(const SalesPicture& picture, Division division, const QString& path);

/// Prints the chart with its table below, behind it where the page has no room for both.
/// @throws RuntimeError (printerError) as PrintJob
void printSheet(const SalesPicture& picture, Division division);

}  // namespace kovanix
