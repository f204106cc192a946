#pragma once

#include <QString>

namespace kovanix {

/// Process-wide copies of the keys that choose the looks of the sales screen; they live in the configuration
/// file.
inline int sonrenk = 0;             ///< last colour source of the total: 0 none, 1 or 2 a saved set
inline int kayitgetir1 = 0;         ///< saved set last fetched: 0 none, 1 or 2
inline int toplamtemadegisken = 0;  ///< 1: the total follows its own live colours
inline QString temakaydetme1;       ///< "True" or "False": the state of the keep switch

/// Full path of the configuration file.
QString temadosyayolu();

/// Reads the four values from the configuration; what is absent or no number counts as 0.
void temadegiskenlerioku();

}  // namespace kovanix
