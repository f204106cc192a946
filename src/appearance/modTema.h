#pragma once

#include <QString>

namespace kovanix {

/// Process-wide copies of the keys that choose the looks of the sales screen; they live in the configuration
/// file.
inline int sonrenk = 0;             ///< last colour source of the total: 0 none, 1 or 2 a saved set
inline int kayitgetir1 = 0;         ///< saved set last fetched: 0 none, 1 or 2
inline int kaydedilenigetir = 0;    ///< 0 after fetching set 1, 1 after fetching set 2
inline int toplamtemadegisken = 0;  ///< 1: the total follows its own live colours
inline QString temakaydetme1;       ///< "True" or "False": the state of the keep switch
inline bool temasessiz = false;     ///< while a palette is applied at start, without sound or question

/// Full path of the configuration file.
QString temadosyayolu();

/// One key of the configuration as a number, read leniently; what is absent or no number counts as 0.
int temasayisi(const QString& key);

/// Reads sonrenk, kayitgetir1, toplamtemadegisken and temakaydetme1 from the configuration.
void temadegiskenlerioku();

/// Gives `toplam` on the sales screen its private colours: the live ones, a saved set, or none.
void toplamtemauygula();

/// What the sales screen looks like from its start on: the palette first, the total's own colours second.
void temabaslangicuygula();

}  // namespace kovanix
